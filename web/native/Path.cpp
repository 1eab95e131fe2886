// The way of a solve from vertex to vertex, for those who ask for it: that of the dense simplex
// method in doubles. The solve goes on from where it ends, so that it is the way to the answer.
#include "Nuv/Exact/Dense/DenseSimplex.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "Nuv/Solve/SinglePrecisionSolve.hpp"

namespace
{

/// Beyond, there is no room for a dictionary, and nobody looks at the way.
constexpr std::size_t kMostEntries = std::size_t{1} << 22;

nuv::PathStep StepAt(const nuv::DenseSimplex& simplex, bool isFeasible,
                     const nuv::BoundedForm& form, double sign)
{
    nuv::PathStep step;
    step.phase = isFeasible ? 2 : 1;
    step.values = simplex.Point();
    double objective = form.constant;
    for (nuv::Index j = 0; j < form.columns; ++j)
        objective += form.cost[j] * step.values[j];
    step.objective = sign * objective;
    return step;
}

}  // namespace

std::optional<nuv::Basis> nuv::FindStart(const BoundedForm& form, double sign,
                                         const SolveOptions& options, SolveControl& control,
                                         Solution& solution)
{
    if (!options.recordPath || FindCrossedBounds(form) != kNoIndex ||
        std::size_t{form.rows} * form.columns > kMostEntries)
        return std::nullopt;
    DenseForm dense;
    TakeForm(form, dense);
    DenseSimplex simplex;
    const DenseSimplex::End end = simplex.Run(
        dense, control,
        [&](bool isFeasible) { solution.path.push_back(StepAt(simplex, isFeasible, form, sign)); });
    if (end != DenseSimplex::End::Optimal)
        return std::nullopt;
    Basis basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = simplex.Status()[v];
    return basis;
}
