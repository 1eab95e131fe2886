/// The exact stage. Evaluates a basis in rational arithmetic; if it is not optimal, looks for a
/// better one in doubles by refinement, and where that finds none pivots itself: by the dual
/// simplex from a dual feasible basis, by the primal simplex from a primal feasible one, and by the
/// primal simplex on the sum of violations from any other, each keeping its kind of feasibility.
/// Degenerate pivots in a row switch to Bland's rule (Bland 1977) until a step has a length, so no
/// basis comes back and the stage ends.
#pragma once

#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/Exact/ExactEvaluation.hpp"
#include "Nuv/Exact/Refinement.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <optional>
#include <vector>

namespace nuv
{

class ExactSimplex
{
public:
    /// `rounds`: how often to look for a better basis in doubles. `evaluation`, of the same form,
    /// spares what it knows if it is of the start, and is of the last basis afterwards.
    ExactSimplex(ScalableForm& form, ExactEvaluation& evaluation, const Basis& start, int rounds,
                 SolveControl& control);

    /// Ends with the evaluation of the start: Optimal, or else Stopped.
    void ForbidPivots() noexcept
    {
        m_mayPivot = false;
    }

    /// Looks for better bases in doubles, but makes no pivot itself.
    void OnlyRefine() noexcept
    {
        m_onlyRefines = true;
    }

    /// Runs to a verdict or until the control stops it, and fills in the proof's status,
    /// certificate, doubles and basis. Whether it is proved is for the check to say.
    /// @return Infeasible or Unbounded if it gave up because the form seems to be that, which is
    /// proved faster in another way; Optimal otherwise.
    SimplexVerdict Run(CertifiedResult& proof);

private:
    struct Blocking
    {
        Index position = kNoIndex;
        bool atUpper = false;  // same bits: set with the position
        Integer room;          ///< distance to the bound * denominator / BoundScale
        Integer speed;         ///< of the basic variable, positive
    };

    // Evaluating the basis.
    [[nodiscard]] bool Factorise();
    [[nodiscard]] bool ComputeValues();
    [[nodiscard]] bool ComputeDuals(bool phaseOne);
    [[nodiscard]] bool FindViolations();
    [[nodiscard]] bool IsDualFeasible();
    [[nodiscard]] const Rational& NonbasicValue(Index variable) const noexcept;
    [[nodiscard]] int ImprovingDirection(Index variable, int sign) const;

    // One pivot of each kind, or many of them in doubles. @return how it ended, nothing while it
    // has not.
    [[nodiscard]] std::optional<Status> Step();
    [[nodiscard]] bool Refine();
    [[nodiscard]] std::optional<Status> PrimalStep(bool phaseOne);
    [[nodiscard]] Index ChooseEntering(bool phaseOne, int& direction) const;
    [[nodiscard]] Blocking TestRatios(int direction) const;
    [[nodiscard]] bool FlipsFirst(Index entering, const Blocking& blocking) const;
    [[nodiscard]] std::optional<Status> DualStep();
    [[nodiscard]] Index ChooseLeaving() const;
    [[nodiscard]] Index ChooseDualEntering(bool toLower, bool& degenerate);
    [[nodiscard]] Integer RoomTo(Index position, bool atUpper) const;
    void Exchange(Index position, Index entering, bool atUpper);
    void NoteStep(bool degenerate);

    // Writing the outcome down.
    void WritePoint(ExactVector& point) const;
    void WriteRay(ExactVector& ray) const;
    void WriteFarkas(ExactVector& multipliers) const;
    void WriteDoubles(CertifiedResult& proof) const;
    [[nodiscard]] Rational Objective(const ExactVector& point) const;

    ScalableForm& m_scalable;
    const BoundedForm& m_form;
    SolveControl& m_control;
    ExactEvaluation& m_evaluation;
    const ExactForm& m_exact;
    ExactFactors& m_factors;
    std::vector<BasisStatus> m_status;
    std::vector<Index> m_head;  ///< sorted by position, if that of the evaluation is the same
    std::optional<Refinement> m_refinement;  ///< made when it is needed
    int m_rounds;
    bool m_mayPivot = true;
    bool m_onlyRefines = false;
    SimplexVerdict m_hint = SimplexVerdict::Optimal;
    int m_degenerate = 0;

    ExactVector& m_values;                 ///< of the basic variables, by position
    ExactVector& m_duals;                  ///< of the true cost, or of the violations, by row
    std::vector<signed char> m_violation;  ///< by position: -1 below, +1 above
    ExactVector m_column;                  ///< the entering column by position
    ExactVector m_row;                     ///< the row of the inverse behind a Farkas certificate
    Index m_entering = kNoIndex;
    int m_direction = 0;  // same bits: set with what enters
    /// 0: the duals are the multipliers; otherwise this times m_row.
    int m_farkasSign = 0;  // same bits: set with that verdict
};

}  // namespace nuv
