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

/// Solves and proves with the strength of SolveCertified. What one problem leaves to the next is
/// storage: the answer depends on the problem alone.
class DenseSolver
{
public:
    /// Neither in doubles nor exactly are more than `mostPivots` pivots made.
    void Solve(const DenseProblem& problem, std::uint64_t mostPivots, DenseAnswer& answer);

private:
    [[nodiscard]] bool TakeForm(const DenseProblem& problem);
    [[nodiscard]] bool SolveInWords(const DenseProblem& problem, SolveControl& control,
                                    DenseAnswer& answer);

    DenseForm m_form;
    DenseSimplex m_simplex;
    DenseProof m_proof;
};

}  // namespace nuv
