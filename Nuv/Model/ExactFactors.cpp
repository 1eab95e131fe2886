#include "Nuv/Model/ExactFactors.hpp"

namespace nuv
{
namespace
{

/// The largest primes below 2^62. One that divides the determinant makes a regular matrix look
/// singular, so a matrix is believed singular only if it is modulo all of them.
constexpr std::uint64_t kPrimes[] = {4611686018427387847u, 4611686018427387817u,
                                     4611686018427387787u};

SparseVectors<std::uint64_t> Residues(const SparseVectors<Dyadic>& columns, const PrimeField& field)
{
    SparseVectors<std::uint64_t> result;
    result.start = columns.start;
    result.index = columns.index;
    result.value.reserve(columns.value.size());
    int lastExponent = 0;
    std::uint64_t power = field.One();
    for (const Dyadic& entry : columns.value)
    {
        if (entry.exponent != lastExponent)
        {
            lastExponent = entry.exponent;
            power = field.PowerOfTwo(lastExponent);
        }
        result.value.push_back(field.Product(field.FromSigned(entry.mantissa), power));
    }
    return result;
}

}  // namespace

SparseVectors<Dyadic> ExactFactors::BasisColumns(const std::vector<Index>& head) const
{
    SparseVectors<Dyadic> columns;
    for (const Index variable : head)
    {
        if (m_form.IsLogical(variable))
        {
            columns.Append(variable - m_form.columns, {-1, 0});
        }
        else
        {
            const std::span<const Index> rows = m_form.byColumn.Indices(variable);
            const std::span<const double> values = m_form.byColumn.Values(variable);
            for (std::size_t at = 0; at < rows.size(); ++at)
            {
                if (values[at] != 0.0)
                    columns.Append(rows[at], TakeApart(values[at]));
            }
        }
        columns.Close();
    }
    return columns;
}

std::vector<Index> ExactFactors::Factorise(std::vector<Index>& head)
{
    const SparseVectors<Dyadic> columns = BasisColumns(head);
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
        sorted[replacement.row] = m_form.columns + replacement.row;
    }
    head = std::move(sorted);
    m_columns = BasisColumns(head);
    m_forward.reset();
    m_backward.reset();
    return dropped;
}

bool ExactFactors::SolveForward(const DyadicVector& rightSide, ExactVector& solution, Watch& watch)
{
    if (!m_forward)
    {
        m_forward =
            std::make_unique<PadicLifting>(m_columns, *m_factors, PadicLifting::Side::Forward);
    }
    return m_forward->Solve(rightSide, solution, watch);
}

bool ExactFactors::SolveBackward(const DyadicVector& rightSide, ExactVector& solution, Watch& watch)
{
    if (!m_backward)
    {
        m_backward = std::make_unique<PadicLifting>(Transposed(m_columns, m_form.rows), *m_factors,
                                                    PadicLifting::Side::Backward);
    }
    return m_backward->Solve(rightSide, solution, watch);
}

}  // namespace nuv
