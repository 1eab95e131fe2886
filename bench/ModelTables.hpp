// What bench_models finds, in Markdown: the measured blocks of docs/netlib.md.
#ifndef BENCH_MODELTABLES_HPP
#define BENCH_MODELTABLES_HPP

#include <cstddef>
#include <string>
#include <vector>

#include "Nuv/Solve/Solution.hpp"
#include "tests/support/KnownModels.hpp"

namespace bench
{
struct Run
{
    nuv::Solution solution;
    double seconds = 0.0;       ///< of processor time
    double proofSeconds = 0.0;  ///< of these, what the stages behind the core and the check take
};

struct SolvedModel
{
    nuv::test::KnownModel known;
    std::size_t rows;
    std::size_t columns;
    Run asStored;
    Run asWritten;

    /// Whether both verdicts are the known one and proved.
    bool IsAsKnown() const;
};

/// How many are as known, and the longest times.
std::string SummaryText(const std::vector<SolvedModel>& netlib,
                        const std::vector<SolvedModel>& infeasible,
                        const std::vector<SolvedModel>& textbook);
/// Models with an optimum, and how far from the known one it is.
std::string OptimaTable(const std::vector<SolvedModel>& models);
std::string InfeasibleTable(const std::vector<SolvedModel>& models);
/// Textbook models, and what the proof adds to the time of the float stage.
std::string TextbookTable(const std::vector<SolvedModel>& models);
}  // namespace bench

#endif
