/// Certified solves of a form that changes in between, each starting from what the last one left:
/// its basis, the scaled form, and of that basis the exact factors, values and duals as far as the
/// changes leave them true. What is proved is checked as after any other solve, so a kept number
/// that is wrong would cost time and not truth.
#pragma once

#include "Nuv/Certificate/RepeatedCheck.hpp"
#include "Nuv/Exact/CertifiedResult.hpp"
#include "Nuv/Exact/ExactEvaluation.hpp"
#include "Nuv/SparseSimplex/DoubleSimplex.hpp"
#include "Nuv/SparseSimplex/PrimalSimplex.hpp"
#include "Nuv/SparseSimplex/ScaledForm.hpp"
#include "Nuv/SparseSimplex/SimplexState.hpp"
#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <memory>
#include <optional>
#include <vector>

namespace nuv
{

/// A number of a form: the double that stands for it, and what it is where that does not say it.
struct FormNumber
{
    FormNumber(double number) noexcept : nearest(number) {}

    double nearest;
    std::optional<Rational> exact;
};

class CertifiedSession
{
public:
    /// `start`, if there is one, is made to fit.
    CertifiedSession(BoundedForm form, std::optional<Basis> start);
    CertifiedSession(const CertifiedSession&) = delete;
    CertifiedSession& operator=(const CertifiedSession&) = delete;

    [[nodiscard]] const BoundedForm& Form() const noexcept
    {
        return m_form;
    }
    /// Of the last solve, or the start; nothing before both.
    [[nodiscard]] const std::optional<Basis>& LastBasis() const noexcept
    {
        return m_basis;
    }

    void SetBounds(Index variable, const FormNumber& lower, const FormNumber& upper);
    void SetCost(Index column, const FormNumber& cost);
    void SetConstant(const FormNumber& constant);
    /// The next solve starts there.
    void StartFrom(const Basis& start);

    /// Solves as SolveUnproved does, from the last basis.
    [[nodiscard]] std::shared_ptr<const CertifiedResult> SolveUnproved(SolveControl& control);

    /// Solves, and proves with the strength of SolveCertified. The result is never changed
    /// afterwards.
    [[nodiscard]] std::shared_ptr<const CertifiedResult> Solve(SolveControl& control);

private:
    /// @return whether it is another number then.
    bool Replace(const FormPlace& place, double& held, const FormNumber& number);
    void TakeCosts();
    void KeepOfEvaluation(const ExactForm& before);
    [[nodiscard]] bool StillHolds(const CertifiedResult& last, CertifiedResult& result) const;
    /// The basis in doubles, with the factors of the last one if it is the same.
    [[nodiscard]] SimplexState& StateOfBasis();
    [[nodiscard]] bool IsWorthALook();
    [[nodiscard]] bool LookAtBasis(SolveControl& control, CertifiedResult& result);
    [[nodiscard]] SimplexVerdict SolveInDoubles(SolveControl& control, CertifiedResult& result,
                                                BlockedRow& blocked);

    BoundedForm m_form;
    ScalableForm m_scalable;
    RepeatedCheck m_check;
    std::optional<ExactEvaluation> m_evaluation;
    std::optional<SimplexState> m_state;  ///< of the last basis that was looked at in doubles
    /// It is of this basis and of the form as it is.
    bool m_stateStands = false;  // same bits: set by each solve
    std::optional<Basis> m_basis;
    std::shared_ptr<const CertifiedResult> m_last;
    std::vector<Index> m_newCosts;  ///< columns whose cost has changed since the last solve
};

}  // namespace nuv
