// What the benchmark programs found, read back from their files, for the tables and the picture.
#ifndef BENCH_RESULTS_HPP
#define BENCH_RESULTS_HPP

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace bench
{
struct Measurement
{
    std::string contender;
    std::string setting;
    std::string version;
    std::string verdict;
    double objective;
    /// The objective's relative distance from the median of those in double precision.
    double distance;
    double pivots;
    /// Seconds.
    double building;
    double solving;
};

struct ComparedInstance
{
    std::string family;
    std::size_t rows;
    std::size_t columns;
    double pivots;
    /// Seconds that a pass over what a pivot touches takes.
    double pass;
    std::vector<Measurement> measurements;

    /// @return the fastest setting of a contender that reached the optimum, or null.
    const Measurement* Find(std::string_view contender) const;
    /// @return the fastest library other than this one, or null.
    const Measurement* FastestLibrary() const;
    std::string Name() const;
};

struct TimePoint
{
    std::string sweep;
    double m;
    double n;
    double pivots;
    double secondsPerPivot;
};

/// Bytes: the model's own, then what a first solve needs above it at its peak and keeps, and what
/// the next solve needs above that.
struct MemoryPoint
{
    double m;
    double n;
    double model;
    double first;
    double kept;
    double next;
};

/// A benchmark of bench_lps or bench_kernels.
struct Step
{
    std::string name;
    double seconds;
    std::map<std::string, double> counters;
};

struct Results
{
    std::vector<ComparedInstance> instances;
    std::vector<TimePoint> times;
    std::vector<MemoryPoint> memory;
    std::vector<Step> lps;
    std::vector<Step> kernels;
};

/// Reads compare.tsv, growth.tsv, lps.tsv and kernels.tsv of a directory; what is missing stays
/// empty.
Results ReadResults(const std::string& directory);
}  // namespace bench

#endif
