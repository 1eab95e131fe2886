/// The ratio test of the dual simplex: which nonbasic variable enters, and which boxed ones go to
/// their other bound on the way there.
#pragma once

#include "Nuv/SparseSimplex/SimplexState.hpp"

#include <vector>

namespace nuv
{

/// As the duals move, reduced costs reach zero one after the other. A boxed variable whose reduced
/// cost passes zero goes to its other bound, which takes some of the violation that drives the
/// step; the step goes on for as long as any of it is left (Maros 2003, chapter 10).
class DualRatioTest
{
public:
    explicit DualRatioTest(const SimplexState& state) : m_state(state) {}

    /// `pivotRow` is the leaving variable's row of the tableau, `sign` is -1 if that variable must
    /// grow and +1 if it must fall, by `violation`.
    /// @return the entering variable; kNoIndex if there is none.
    [[nodiscard]] Index Choose(const WorkVector& pivotRow, double sign, double violation);

    /// The variables to be flipped before the pivot.
    [[nodiscard]] const std::vector<Index>& Flips() const noexcept
    {
        return m_flips;
    }

private:
    struct Candidate
    {
        Index variable;
        double pivot;     ///< positive
        double distance;  ///< of the reduced cost from zero
    };
    void Collect(const WorkVector& pivotRow, double sign);
    [[nodiscard]] double ViolationTaken(const Candidate& candidate) const;
    [[nodiscard]] double ShortestStep(std::size_t begin, std::size_t end) const;
    [[nodiscard]] std::size_t MoveToFront(std::size_t begin, std::size_t end, double step);
    [[nodiscard]] std::size_t Reachable(double violation);
    void Group(std::size_t end, double violation);
    [[nodiscard]] Index ChooseByPivot();

    const SimplexState& m_state;
    std::vector<Candidate> m_candidates;
    std::vector<std::size_t> m_groupEnd;
    std::vector<Index> m_flips;
};

}  // namespace nuv
