/// Factors of a basis modulo a prime, and Dixon's solver over them for either side.
#include "Nuv/Exact/ExactFactors.hpp"

#include "Nuv/SparseSimplex/BasisFactors.hpp"

#include <utility>

namespace nuv
{
namespace
{

/// The largest primes below 2^62. One that divides the determinant makes a regular matrix look
/// singular, so a matrix is believed singular only if it is modulo all of them.
constexpr std::uint64_t kPrimes[] = {4611686018427387847u, 4611686018427387817u,
                                     4611686018427387787u};

SparseVectors<std::uint64_t> Residues(const SparseVectors<ExactNumber>& columns,
                                      const PrimeField& field)
{
    Scale last;
    std::uint64_t power = field.One();
    return Mapped<std::uint64_t>(columns,
                                 [&](Index, Index, const ExactNumber& entry)
                                 {
                                     if (!(entry.scale == last))
                                     {
                                         last = entry.scale;
                                         power = field.PowerOf(last);
                                     }
                                     return field.Product(field.FromSigned(entry.mantissa), power);
                                 });
}

}  // namespace

std::vector<Index> ExactFactors::Factorise(std::vector<Index>& head)
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
    m_columns = Selected(m_exact.byVariable, head);
    m_forward.reset();
    m_backward.reset();
    std::vector<Index> dropped;
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
            std::make_unique<DixonSolver>(m_columns, *m_factors, DixonSolver::Side::Forward);
    }
    return m_forward->Solve(rightSide, solution, [&control] { return control.IsStopped(); });
}

bool ExactFactors::SolveBackward(const ScaledVector& rightSide, ExactVector& solution,
                                 SolveControl& control)
{
    if (!m_backward)
    {
        m_backward = std::make_unique<DixonSolver>(Transposed(m_columns, m_exact.form.rows),
                                                   *m_factors, DixonSolver::Side::Backward);
    }
    return m_backward->Solve(rightSide, solution, [&control] { return control.IsStopped(); });
}

}  // namespace nuv
