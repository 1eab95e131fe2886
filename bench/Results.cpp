// Reads the files: lines of cells, separated by tabs.
#include "bench/Results.hpp"

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace bench
{
namespace
{
using Cells = std::vector<std::string>;

/// How far an objective may lie from the reference to count as the optimum.
constexpr double agreement = 1e-4;

std::vector<Cells> ReadLines(const std::string& path)
{
    std::vector<Cells> lines;
    std::ifstream file(path);
    for (std::string line; std::getline(file, line);)
    {
        Cells cells;
        std::istringstream rest(line);
        for (std::string cell; std::getline(rest, cell, '\t');)
            cells.push_back(cell);
        lines.push_back(cells);
    }
    return lines;
}

double Number(const std::string& cell)
{
    return std::strtod(cell.c_str(), nullptr);
}

std::vector<ComparedInstance> ReadComparison(const std::string& path)
{
    std::vector<ComparedInstance> instances;
    for (const Cells& cells : ReadLines(path))
    {
        if (cells.size() != 14)
            continue;
        const auto rows = static_cast<std::size_t>(Number(cells[1]));
        const auto columns = static_cast<std::size_t>(Number(cells[2]));
        const bool isNext = instances.empty() || instances.back().family != cells[0] ||
                            instances.back().rows != rows || instances.back().columns != columns;
        if (isNext)
            instances.push_back({cells[0], rows, columns, Number(cells[3]), Number(cells[4]), {}});
        instances.back().measurements.push_back(
            {cells[5], cells[6], cells[7], cells[8], Number(cells[9]), Number(cells[10]),
             Number(cells[11]), Number(cells[12]), Number(cells[13])});
    }
    return instances;
}

void ReadGrowth(const std::string& path, Results* results)
{
    for (const Cells& cells : ReadLines(path))
    {
        if (cells.size() == 6 && cells[0] == "time")
            results->times.push_back(
                {cells[1], Number(cells[2]), Number(cells[3]), Number(cells[4]), Number(cells[5])});
        if (cells.size() == 7 && cells[0] == "memory")
            results->memory.push_back({Number(cells[1]), Number(cells[2]), Number(cells[3]),
                                       Number(cells[4]), Number(cells[5]), Number(cells[6])});
    }
}

std::vector<Step> ReadSteps(const std::string& path)
{
    std::vector<Step> steps;
    for (const Cells& cells : ReadLines(path))
    {
        if (cells.size() < 2)
            continue;
        Step step = {cells[0], Number(cells[1]), {}};
        for (std::size_t i = 2; i < cells.size(); ++i)
        {
            const std::size_t equals = cells[i].find('=');
            step.counters[cells[i].substr(0, equals)] = Number(cells[i].substr(equals + 1));
        }
        // The mean of times taken by hand has the interruptions in it.
        if (const auto median = step.counters.find("median"); median != step.counters.end())
            step.seconds = median->second;
        steps.push_back(step);
    }
    return steps;
}

bool IsFaster(const Measurement& x, const Measurement* y)
{
    return x.verdict == "optimal" && x.distance <= agreement && (!y || x.solving < y->solving);
}
}  // namespace

const Measurement* ComparedInstance::Find(std::string_view contender) const
{
    const Measurement* found = nullptr;
    for (const Measurement& candidate : measurements)
        if (candidate.contender == contender && IsFaster(candidate, found))
            found = &candidate;
    return found;
}

const Measurement* ComparedInstance::FastestLibrary() const
{
    const Measurement* found = nullptr;
    for (const Measurement& candidate : measurements)
        if (candidate.contender != "nuv" && !candidate.contender.starts_with("tableau") &&
            IsFaster(candidate, found))
            found = &candidate;
    return found;
}

std::string ComparedInstance::Name() const
{
    return family + ", " + std::to_string(rows) + " × " + std::to_string(columns);
}

Results ReadResults(const std::string& directory)
{
    Results results;
    results.instances = ReadComparison(directory + "/compare.tsv");
    ReadGrowth(directory + "/growth.tsv", &results);
    results.lps = ReadSteps(directory + "/lps.tsv");
    results.kernels = ReadSteps(directory + "/kernels.tsv");
    return results;
}
}  // namespace bench
