/// The bounded-variable primal simplex in doubles: a composite first phase that minimises the sum
/// of violations from whatever basis it is given, devex pricing (Harris 1973), a ratio test that
/// walks through breakpoints in phase one and Harris's two passes in phase two. When it stalls it
/// pushes the bounds of basic variables outwards by small pseudo-random amounts; the caller takes
/// them back and solves on.
#pragma once

#include "Nuv/SparseSimplex/SimplexState.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <cstdint>
#include <vector>

namespace nuv
{

enum class SimplexVerdict : std::uint8_t
{
    Optimal,
    Infeasible,
    Unbounded,
    Stopped,    ///< by the control
    Numerical,  ///< no progress in doubles from here
};

class PrimalSimplex
{
public:
    PrimalSimplex(SimplexState& state, SolveControl& control);

    /// Runs to a verdict on the working bounds. `perturb` allows pushing bounds.
    SimplexVerdict Run(bool perturb);

    /// Whether working bounds differ from those of the form.
    [[nodiscard]] bool BoundsWereMoved() const noexcept
    {
        return m_boundsMoved;
    }

private:
    struct Step
    {
        enum class Kind : std::uint8_t
        {
            Pivot,
            Flip,
            Unbounded,
            Reject,  ///< only pivots too small to trust
        };
        Kind kind = Kind::Reject;
        Index position = kNoIndex;
        double length = 0.0;  // same bits: of a step that is rejected nobody asks
        BasisStatus leavingStatus = BasisStatus::AtLower;
    };
    struct Breakpoint
    {
        double at;
        double slope;
        Index position;
        bool atUpper;
    };

    /// Puts the columns that no row uses on their better bounds, all at once instead of by a pivot
    /// each.
    void FixEmptyColumns();
    void StartAfresh();
    /// The sum of violations in phase one, then the objective without the form's constant.
    [[nodiscard]] double ProgressValue() const;
    [[nodiscard]] bool FindViolations();
    void ResetWeights();
    [[nodiscard]] Index ChooseEntering() const;
    [[nodiscard]] double EnteringCost(Index entering) const;
    [[nodiscard]] Step TestRatiosFeasible(Index entering, double direction) const;
    [[nodiscard]] Step TestRatiosInfeasible(Index entering, double direction);
    void CollectBreakpoints(double direction);
    [[nodiscard]] Step WalkBreakpoints(double slope, double flip);
    void Move(Index entering, double direction, double length);
    void Pivot(Index entering, const Step& step);
    void UpdateReducedCosts(Index entering, Index leaving, double pivot);
    void UpdateViolations();
    [[nodiscard]] int ViolationOf(Index position) const;
    void NoteProgress(double gain);
    void PushBoundsApart();
    [[nodiscard]] bool Iterate(SimplexVerdict& verdict);
    [[nodiscard]] bool Conclude(SimplexVerdict& verdict);
    [[nodiscard]] bool GetsAnywhere() const noexcept;

    SimplexState& m_state;
    SolveControl& m_control;
    bool m_perturb = false;  // same bits: set by each run
    bool m_boundsMoved = false;
    /// Nothing happened since the last refactorisation.
    bool m_fresh = false;  // same bits: set by each run
    /// The last pivot's row and column disagreed about it.
    bool m_inaccurate = false;  // same bits: set by each run
    bool m_phaseOne = false;    // same bits: set by each run
    int m_stalled = 0;          // same bits: set by each run
    /// How often a feasible basis turned out not to be.
    int m_relapses = 0;  // same bits: set by each run
    /// How often factors were made anew in this run.
    std::uint64_t m_starts = 0;      // same bits: set by each run
    std::uint64_t m_firstPivot = 0;  // same bits: set by each run
    std::uint64_t m_random = 0x9E3779B97F4A7C15u;
    std::vector<signed char> m_violation;  ///< by position: -1 below, +1 above, 0 within bounds
    std::vector<double> m_weight;
    std::vector<signed char> m_banned;
    /// How many basic variables are.
    Index m_violated = 0;  // same bits: set by each run
    WorkVector m_column;
    WorkVector m_row;
    WorkVector m_change;
    std::vector<Breakpoint> m_breakpoints;
    WorkVector m_pivotRow;
};

}  // namespace nuv
