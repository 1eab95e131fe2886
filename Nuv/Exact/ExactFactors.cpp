#include "Nuv/Exact/ExactFactors.hpp"

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
    SparseVectors<std::uint64_t> result;
    result.start = columns.start;
    result.index = columns.index;
    result.value.reserve(columns.value.size());
    Scale last;
    std::uint64_t power = field.One();
    for (const ExactNumber& entry : columns.value)
    {
        if (!(entry.scale == last))
        {
            last = entry.scale;
            power = field.PowerOf(last);
        }
        result.value.push_back(field.Product(field.FromSigned(entry.mantissa), power));
    }
    return result;
}

}  // namespace

SparseVectors<ExactNumber> ExactFactors::BasisColumns(const std::vector<Index>& head) const
{
    const BoundedForm& form = m_exact.form;
    SparseVectors<ExactNumber> columns;
    for (const Index variable : head)
    {
        if (form.IsLogical(variable))
        {
            columns.Append(variable - form.columns, {-1, {}});
        }
        else
        {
            for (std::size_t at = form.byColumn.start[variable];
                 at < form.byColumn.start[variable + 1]; ++at)
            {
                if (m_exact.entries[at].mantissa != 0)
                    columns.Append(form.byColumn.index[at], m_exact.entries[at]);
            }
        }
        columns.Close();
    }
    return columns;
}

std::vector<Index> ExactFactors::Factorise(std::vector<Index>& head)
{
    const SparseVectors<ExactNumber> columns = BasisColumns(head);
    std::vector<SparseLu<PrimeField>::Replacement> replacements;
    std::vector<Index> position;
    std::size_t fewest = head.size() + 1;
    for (const std::uint64_t prime : kPrimes)
    {
        auto factors = std::make_unique<SparseLu<PrimeField>>(PrimeField(prime));
        std::vector<Index> place;
        auto replaced = factors->Factorise(Residues(columns, factors->GetField()), place);
        if (replaced.size() < fewest)
        {
            fewest = replaced.size();
            m_factors = std::move(factors);
            replacements = std::move(replaced);
            position = std::move(place);
        }
        if (fewest == 0)
            break;
    }
    std::vector<Index> sorted(head.size());
    for (Index k = 0; k < head.size(); ++k)
        sorted[position[k]] = head[k];
    std::vector<Index> dropped;
    for (const auto& replacement : replacements)
    {
        dropped.push_back(head[replacement.column]);
        sorted[replacement.row] = m_exact.form.columns + replacement.row;
    }
    head = std::move(sorted);
    m_columns = BasisColumns(head);
    m_forward.reset();
    m_backward.reset();
    return dropped;
}

bool ExactFactors::SolveForward(const ScaledVector& rightSide, ExactVector& solution, Watch& watch)
{
    if (!m_forward)
    {
        m_forward =
            std::make_unique<PadicLifting>(m_columns, *m_factors, PadicLifting::Side::Forward);
    }
    return m_forward->Solve(rightSide, solution, [&watch] { return watch.TimeIsUp(); });
}

bool ExactFactors::SolveBackward(const ScaledVector& rightSide, ExactVector& solution, Watch& watch)
{
    if (!m_backward)
    {
        m_backward = std::make_unique<PadicLifting>(Transposed(m_columns, m_exact.form.rows),
                                                    *m_factors, PadicLifting::Side::Backward);
    }
    return m_backward->Solve(rightSide, solution, [&watch] { return watch.TimeIsUp(); });
}

}  // namespace nuv
