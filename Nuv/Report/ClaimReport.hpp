/// What became of a claim: the judgement, the numbers that disagree, and what proved the truth.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Report/Claim.hpp"

#include <cstdint>
#include <string>
#include <vector>

namespace nuv
{

enum class Judgement : std::uint8_t
{
    Confirmed,
    Refuted,
    Undecided,  ///< a limit was met before the truth was proved
};

/// What proved the truth about the model.
enum class Evidence : std::uint8_t
{
    None,
    Values,       ///< only feasibility was claimed
    Certificate,  ///< duals, multipliers or a ray of the file, exact as they stand
    Basis,        ///< a solve from the file's basis
    Iis,          ///< a solve of the rows and bounds that the file names
    Solve,
};

/// One thing that is not as claimed. The code is stable and meant for programs.
struct Disagreement
{
    std::string code;
    std::string text;
};

struct ClaimReport
{
    static constexpr std::size_t kMostKept = 20;

    Judgement judgement = Judgement::Undecided;
    ClaimedStatus claimed = ClaimedStatus::Optimal;
    CoefficientMeaning numbers = CoefficientMeaning::ShortestDecimal;  ///< of which it was judged
    /// The first kMostKept of them, and how many there were.
    std::vector<Disagreement> disagreements;
    std::size_t disagreementCount = 0;

    // The point, if the claim has one.
    bool hasPoint = false;
    std::uint32_t unnamed = 0;  ///< variables without a value, which count as 0
    double violation = 0.0;  ///< the largest, in the row's or variable's own unit; 0 only if none
    std::string violated;    ///< where: "row 'wood'"
    Rational objective = 0;  ///< of the point, in the model's sense

    // The truth.
    Status truth = Status::Stopped;
    Evidence evidence = Evidence::None;
    Rational optimum = 0;      ///< if that is Optimal
    std::uint64_t pivots = 0;  ///< that its proof took
    StopReason stopReason = StopReason::None;
    double seconds = 0.0;  ///< of wall time, for the whole check
};

}  // namespace nuv
