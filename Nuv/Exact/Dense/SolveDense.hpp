/// Solving and proving small dense problems one after the other.
#pragma once

#include "Nuv/Exact/Dense/DenseProblem.hpp"
#include "Nuv/Exact/Dense/DenseProof.hpp"
#include "Nuv/Exact/Dense/DenseSimplex.hpp"
#include "Nuv/SparseSimplex/BoundedForm.hpp"

#include <cstdint>

namespace nuv
{

/// The same problem as a form.
[[nodiscard]] BoundedForm FormOf(const DenseProblem& problem);

/// Solves, and proves with the strength of SolveCertified unless told otherwise. What one problem
/// leaves to the next is storage: the answer depends on the problem alone.
class DenseSolver
{
public:
    /// What becomes of a problem whose answer machine words do not prove: it is proved as
    /// SolveCertified does, or the simplex in doubles is believed.
    enum class Otherwise : std::uint8_t
    {
        Prove,
        Believe
    };

    explicit DenseSolver(Otherwise otherwise = Otherwise::Prove) noexcept : m_otherwise(otherwise)
    {
    }

    /// Neither in doubles nor exactly are more than `mostPivots` pivots made.
    void Solve(const DenseProblem& problem, std::uint64_t mostPivots, DenseAnswer& answer);

private:
    [[nodiscard]] bool TakeForm(const DenseProblem& problem);
    [[nodiscard]] bool SolveInWords(const DenseProblem& problem, SolveControl& control,
                                    DenseAnswer& answer);

    Otherwise m_otherwise;
    DenseForm m_form;
    DenseSimplex m_simplex;
    DenseProof m_proof;
};

}  // namespace nuv
