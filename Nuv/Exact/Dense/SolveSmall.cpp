#include "Nuv/Exact/Dense/SolveSmall.hpp"

#include "Nuv/Exact/CertifiedStages.hpp"
#include "Nuv/Exact/Dense/DenseProof.hpp"
#include "Nuv/Exact/Dense/DenseSimplex.hpp"

#include <utility>

namespace nuv
{
namespace
{

/// Larger ones, and those of which less than a fourth is there, are left to sparse factors.
bool IsSmallAndDense(const BoundedForm& form)
{
    constexpr std::size_t kMostEntries = 2500;
    const std::size_t entries = std::size_t{form.rows} * form.columns;
    return entries <= kMostEntries && 4 * form.matrix.EntryCount() >= entries;
}

std::vector<BasisStatus> FittedStatus(const BoundedForm& form, const Basis& start)
{
    Basis fitted = start;
    FitBasis(form, fitted);
    std::vector<BasisStatus> status = std::move(fitted.columns);
    status.insert(status.end(), fitted.rows.begin(), fitted.rows.end());
    return status;
}

/// A nonbasic variable has the double of its bound, all others the nearest one.
void WriteRecord(const BoundedForm& form, const DenseProof& proof,
                 const std::vector<BasisStatus>& status, CertifiedResult& result)
{
    SolveRecord& record = result.record;
    const auto columns = static_cast<std::ptrdiff_t>(form.columns);
    record.basis.columns.assign(status.begin(), status.begin() + columns);
    record.basis.rows.assign(status.begin() + columns, status.end());
    for (Index j = 0; j < form.columns; ++j)
    {
        record.value.push_back(proof.Value(j));
        record.reduced.push_back(proof.ReducedCost(j));
    }
    for (Index i = 0; i < form.rows; ++i)
    {
        record.value.push_back(proof.Activity(i));
        record.reduced.push_back(proof.Dual(i));
    }
    record.objectiveValue = ToDouble(result.certificate.objective);
    record.proved = true;
}

}  // namespace

void TakeForm(const BoundedForm& form, DenseForm& dense)
{
    dense.rows = form.rows;
    dense.columns = form.columns;
    dense.numbers = form.numbers;
    dense.matrix.assign(std::size_t{form.rows} * form.columns, 0.0);
    for (Index j = 0; j < form.columns; ++j)
    {
        for (const auto [row, entry] : form.matrix.Column(j))
            dense.matrix[std::size_t{row} * form.columns + j] = entry;
    }
    dense.cost = form.cost;
    dense.lower = form.columnLower;
    dense.lower.insert(dense.lower.end(), form.rowLower.begin(), form.rowLower.end());
    dense.upper = form.columnUpper;
    dense.upper.insert(dense.upper.end(), form.rowUpper.begin(), form.rowUpper.end());
}

bool SolveSmall(const BoundedForm& form, const Basis* start, SolveControl& control,
                CertifiedResult& result)
{
    if (!form.exact.Empty() || !IsSmallAndDense(form))
        return false;
    const double begin = control.Seconds();
    DenseForm dense;
    TakeForm(form, dense);
    DenseSimplex simplex;
    const DenseSimplex::End end = start != nullptr
                                      ? simplex.RunFrom(dense, FittedStatus(form, *start), control)
                                      : simplex.Run(dense, control);
    if (end != DenseSimplex::End::Optimal)
        return false;
    const double solved = control.Seconds();
    DenseProof proof;
    if (control.IsStopped() || !proof.ProveOptimal(dense, simplex.Status()))
        return false;
    LogDoubles(SimplexVerdict::Optimal, control);
    proof.WriteCertificate(form.ExactConstant(), result.certificate);
    WriteRecord(form, proof, simplex.Status(), result);
    result.record.stages[Stage::Double] = {true, control.Pivots(Stage::Double), solved - begin};
    result.record.stages[Stage::Exact] = {true, 0, control.Seconds() - solved};
    control.Log("exact", [] { return "proved optimal after 0 pivots"; });
    return true;
}

}  // namespace nuv
