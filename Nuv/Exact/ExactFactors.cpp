/// Factors of a basis modulo a prime, and Dixon's solver over them for either side.
#include "Nuv/Exact/ExactFactors.hpp"

#include "Nuv/Algebra/Lifting/Residues.hpp"
#include "Nuv/Algebra/Singletons/SingletonOrder.hpp"
#include "Nuv/SparseSimplex/BasisFactors.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace nuv
{
namespace
{

/// The largest primes below 2^62. One that divides the determinant makes a regular matrix look
/// singular, so a matrix is believed singular only if it is modulo all of them.
constexpr std::uint64_t kPrimes[] = {4611686018427387847u, 4611686018427387817u,
                                     4611686018427387787u};

}  // namespace

std::vector<Index> ExactFactors::Factorise(std::vector<Index>& head)
{
    m_forward.reset();
    m_backward.reset();
    std::vector<Index> dropped;
    if (!FactoriseBump(head))
        dropped = FactoriseWhole(head);
    // same bits: nobody asks for it otherwise
    if (!m_exact.HasNoQuotient())
        m_head = head;
    return dropped;
}

/// Singletons pivot where they stand; what is left is factorised by itself.
/// @return whether it seems regular.
bool ExactFactors::FactoriseBump(std::vector<Index>& head)
{
    const SparseVectors<ExactNumber> columns = Selected(m_exact.byVariable, head);
    const SingletonOrder order = FindSingletons(columns);
    m_factors = std::make_unique<SparseLu<PrimeField>>(PrimeField(kPrimes[0]));
    std::vector<Index> position;
    const auto bump = Residues(BumpOf(columns, order), m_factors->GetField());
    if (!m_factors->Factorise(bump, position).empty())
        return false;
    const std::vector<Index> columnAt = ColumnsByPivotRow(order, position);
    std::vector<Index> sorted(head.size());
    for (Index k = 0; k < head.size(); ++k)
        sorted[k] = head[columnAt[k]];
    m_matrix = PeeledMatrix(Selected(m_exact.byVariable, sorted), order);
    head = std::move(sorted);
    return true;
}

/// As one bump, a singular one repaired. @return the variables that were replaced.
std::vector<Index> ExactFactors::FactoriseWhole(std::vector<Index>& head)
{
    const SparseVectors<ExactNumber> columns = Selected(m_exact.byVariable, head);
    const std::vector<Index> unsorted = head;
    std::vector<BasisReplacement> fewest;
    for (const std::uint64_t prime : kPrimes)
    {
        auto factors = std::make_unique<SparseLu<PrimeField>>(PrimeField(prime));
        std::vector<Index> sorted = unsorted;
        auto replaced = FactoriseBasis(*factors, Residues(columns, factors->GetField()),
                                       m_exact.form.columns, sorted);
        if (prime == kPrimes[0] || replaced.size() < fewest.size())
        {
            fewest = std::move(replaced);
            m_factors = std::move(factors);
            head = std::move(sorted);
        }
        if (fewest.empty())
            break;
    }
    m_matrix = {};
    m_matrix.columns = Selected(m_exact.byVariable, head);
    m_matrix.bump.resize(head.size());
    std::iota(m_matrix.bump.begin(), m_matrix.bump.end(), Index{0});
    std::vector<Index> dropped;
    dropped.reserve(fewest.size());
    for (const BasisReplacement& replacement : fewest)
        dropped.push_back(replacement.dropped);
    return dropped;
}

bool ExactFactors::SolveForward(const ScaledVector& rightSide, ExactVector& solution,
                                SolveControl& control)
{
    if (!m_forward)
    {
        m_forward =
            std::make_unique<PeeledSolver>(m_matrix, *m_factors, DixonSolver::Side::Forward);
        // The denominators of both sides divide the determinant, and mostly they are about that.
        if (m_backward)
            m_forward->Lifting().ExpectDenominator(m_backward->Lifting().Denominator());
    }
    if (!m_forward->Solve(rightSide, solution, [&control] { return control.IsStopped(); }))
        return false;
    // Unknown k was solved for with its column times the divisor, and so came out divided by it.
    for (Index k = 0; k < m_head.size(); ++k)
        solution.numerator[k] *= m_exact.ColumnDivisor(m_head[k]);
    return true;
}

bool ExactFactors::SolveBackward(const ScaledVector& rightSide, ExactVector& solution,
                                 SolveControl& control)
{
    if (!m_backward)
    {
        m_backward =
            std::make_unique<PeeledSolver>(m_matrix, *m_factors, DixonSolver::Side::Backward);
        if (m_forward)
            m_backward->Lifting().ExpectDenominator(m_forward->Lifting().Denominator());
    }
    const auto stop = [&control] { return control.IsStopped(); };
    if (m_head.empty())
        return m_backward->Solve(rightSide, solution, stop);
    // Equation k, that of column k, has been multiplied by its divisor.
    ScaledVector scaled = rightSide;
    for (Index k = 0; k < m_head.size(); ++k)
        scaled.value[k] *= m_exact.ColumnDivisor(m_head[k]);
    return m_backward->Solve(scaled, solution, stop);
}

bool RowOfInverse(const ExactForm& exact, const BlockedRow& blocked, SolveControl& control,
                  ExactVector& row)
{
    std::vector<Index> head;
    for (Index v = 0; v < exact.form.Variables(); ++v)
    {
        if (blocked.basis[v] == BasisStatus::Basic)
            head.push_back(v);
    }
    ExactFactors factors(exact);
    if (!factors.Factorise(head).empty())
        return false;
    const auto position = std::ranges::find(head, blocked.variable) - head.begin();
    ScaledVector unit{std::vector<Integer>(exact.form.rows), {}};
    unit.value[static_cast<Index>(position)] = 1;
    return factors.SolveBackward(unit, row, control);
}

}  // namespace nuv
