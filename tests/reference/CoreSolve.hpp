// The library's side of a comparison with the yardstick: enters a reference::Problem into a
// NuvLinearProgramming, solves it with or without a monitor, and reads everything back in the
// yardstick's own types.
//
// Invariant: the model holds every coefficient that is not +0, each with its bits.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"
#include "tests/reference/NaiveSimplex.hpp"

namespace reference
{
/// A model of the library, entered by index with row i under number i + 1.
class CoreModel
{
public:
    CoreModel(const Problem& problem, NuvAllocator* allocator);
    ~CoreModel();
    CoreModel(const CoreModel&) = delete;
    CoreModel& operator=(const CoreModel&) = delete;

    /// The problem with its rows in the order in which the map of constraints is walked, which is
    /// their order in the standard form.
    const Problem& InRowOrder() const
    {
        return ordered;
    }

    /// Solves without a monitor; no pivots are recorded.
    Solution Solve();
    /// Solves under a monitor that records the pivots and stops the solve before one more than
    /// `maxPivots`, by default far more than a small model needs.
    Solution SolveMonitored(std::size_t maxPivots = 5000);
    /// Status, objective and values as they stand in the record.
    Solution Read(NuvLinearProgrammingResultType result) const;

    NuvLinearProgramming lp;

private:
    Problem ordered;
};

/// Enters the problem's rows and objective into a model with as many variables.
/// @return false when the library refuses a row.
bool EnterModel(NuvLinearProgramming* lp, const Problem& problem);
/// Fills the standard form that the phases work on, without the model.
void EnterStandardForm(NuvLinearProgramming* lp, const StandardForm& form);

/// A monitor that records pivots as the yardstick does.
struct Recorder
{
    explicit Recorder(std::size_t limit = kUnlimited);
    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    NuvLinearProgrammingMonitor monitor;
    std::size_t maxPivots;
    std::vector<Pivot> pivots;
    /// Whether every call came with the next number and the size of the basis.
    bool isNumberedInOrder = true;
};

/// Whether both have the same bits, or both are NaN.
bool IsSame(float x, float y);
bool IsSame(const std::vector<float>& x, const std::vector<float>& y);
std::string BitsOf(float x);

/// Describes the first difference, or is empty.
std::string Difference(const Solution& expected, const Solution& found);
/// The same without the pivots.
std::string DifferenceOfResults(const Solution& expected, const Solution& found);
std::string Difference(const Matrix& expected, const NuvMatrix_NuvFloat32& found);
}  // namespace reference
