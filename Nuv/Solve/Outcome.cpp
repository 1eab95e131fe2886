// What a solve came to, in words.
#include "Nuv/Solve/Solution.hpp"

#include <string>

namespace nuv
{
namespace
{

/// Why single precision alone came to no verdict.
std::string SinglePrecisionWords(const SinglePrecisionResult& stage)
{
    const std::string pivots = std::to_string(stage.pivots) + " pivots";
    switch (stage.outcome)
    {
    case SinglePrecisionOutcome::Cycling:
        return ": basis repeated after " + pivots + ", a cycle of " + std::to_string(stage.period);
    case SinglePrecisionOutcome::PivotBudget:
        return ": no end after " + pivots + ", 50 for each row and column of the canonical form";
    case SinglePrecisionOutcome::Memory:
        return stage.pivots == 0
                   ? ": too large for the dense matrices of single precision"
                   : ": the dense matrices of single precision take too much memory after " +
                         pivots;
    case SinglePrecisionOutcome::Empty:
        return ": there is no row or no variable for single precision to work on";
    case SinglePrecisionOutcome::OutOfRange:
        return ": a number of the model is beyond single precision";
    default:
        return "";
    }
}

std::string StopWords(const Solution& solution)
{
    switch (solution.stopReason)
    {
    case StopReason::TimeLimit:
        return " by the time limit";
    case StopReason::PivotLimit:
        return " by the pivot limit";
    case StopReason::Cancelled:
        return " by an interrupt";
    case StopReason::None:
        break;
    }
    return SinglePrecisionWords(solution.singlePrecision);
}

}  // namespace

std::string Solution::Outcome() const
{
    const std::string word(WordOf(status));
    if (status == Status::Invalid)
        return word + ": " + failure.text;
    return status == Status::Stopped ? word + StopWords(*this) : word;
}

}  // namespace nuv
