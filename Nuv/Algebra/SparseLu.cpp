/// Factors from an elimination: its vectors turned so that each solve walks them in one direction.
#include "Nuv/Algebra/SparseLu.hpp"

#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"

#include <algorithm>

namespace nuv
{

template <class Field>
std::vector<Replacement> SparseLu<Field>::Factorise(const SparseVectors<Value>& columns,
                                                    std::vector<Index>& position)
{
    const Index size = columns.Count();
    SparseElimination<Field> elimination(m_field, columns);
    elimination.Run();

    position.assign(size, kNoIndex);
    m_pivotInverse.clear();
    for (std::size_t step = 0; step < elimination.pivotRow.size(); ++step)
    {
        position[elimination.pivotColumn[step]] = elimination.pivotRow[step];
        m_pivotInverse.push_back(m_field.Inverse(elimination.pivotValue[step]));
    }
    // A replaced column met no elimination: the logical of a row that never pivoted is untouched by
    // the multipliers, and what the dropped column left in U goes with it.
    m_upperRows.Clear();
    for (Index step = 0; step < elimination.upper.Count(); ++step)
    {
        for (const auto [column, entry] : elimination.upper[step])
        {
            if (position[column] != kNoIndex)
                m_upperRows.Append(position[column], entry);
        }
        m_upperRows.Close();
    }
    m_lowerColumns = std::move(elimination.lower);
    m_order = elimination.pivotRow;
    std::vector<Replacement> replacements = elimination.PairLeftovers(position);
    for (const Replacement& replacement : replacements)
    {
        m_order.push_back(replacement.row);
        m_pivotInverse.push_back(m_field.MinusOne());
        m_upperRows.Close();
        m_lowerColumns.Close();
    }
    m_upperColumns = Flipped(m_upperRows);
    m_lowerRows = Flipped(m_lowerColumns);

    m_etaPivot.clear();
    m_etaInverse.clear();
    m_etas.Clear();
    return replacements;
}

/// The triangular factor whose vector of step k is vectors[k], by the other direction.
template <class Field>
SparseVectors<typename SparseLu<Field>::Value>
SparseLu<Field>::Flipped(const SparseVectors<Value>& vectors) const
{
    const Index size = vectors.Count();
    // Transposed numbers entries by step and vectors by row; both are brought to the other.
    SparseVectors<Value> flipped = Selected(Transposed(vectors, size), m_order);
    for (Index& index : flipped.index)
        index = m_order[index];
    return flipped;
}

/// Solves T x = b for a triangular T given by its columns, or T' x = b by its rows; `across` holds
/// the same entries along the other direction.
template <class Field>
template <typename SparseLu<Field>::Direction direction,
          typename SparseLu<Field>::Diagonal diagonal>
void SparseLu<Field>::Substitute(const SparseVectors<Value>& vectors,
                                 [[maybe_unused]] const SparseVectors<Value>& across,
                                 std::vector<Value>& vector) const
{
    // Residues are the same whichever way they are summed; numbers of other fields need not be.
    if constexpr (requires { typename Field::ProductSum; })
    {
        if (IsDense(vector))  // same bits: as said above
        {
            SubstituteBySums<direction, diagonal>(across, vector);
            return;
        }
    }
    SubstituteByEntries<direction, diagonal>(vectors, vector);
}

/// Whether so much is not zero that sums over all, of which an entry costs a third, are faster.
template <class Field>
bool SparseLu<Field>::IsDense(const std::vector<Value>& vector) const
{
    const auto zeros = static_cast<std::size_t>(std::ranges::count_if(
        vector, [this](const Value& entry) { return m_field.IsZero(entry); }));
    return 4 * (vector.size() - zeros) >= vector.size();  // same bits: either is right
}

/// Unknown k is what is left of b there once the products with the unknowns before it are gone.
template <class Field>
template <typename SparseLu<Field>::Direction direction,
          typename SparseLu<Field>::Diagonal diagonal>
void SparseLu<Field>::SubstituteBySums(const SparseVectors<Value>& across,
                                       std::vector<Value>& vector) const
{
    const Index size = across.Count();
    for (Index done = 0; done < size; ++done)
    {
        Index step = done;
        if constexpr (direction == Direction::LastToFirst)
            step = size - 1 - done;
        Value& unknown = vector[m_order[step]];
        typename Field::ProductSum sum(m_field);
        const std::size_t end = across.start[step + 1];
        for (std::size_t at = across.start[step]; at < end;)
        {
            for (const std::size_t fold = std::min(end, at + Field::ProductSum::kFold); at < fold;
                 ++at)
                sum.Add(across.value[at], vector[across.index[at]]);
            sum.Fold();
        }
        unknown = m_field.Sum(unknown, m_field.Negated(sum.Result()));
        if constexpr (diagonal == Diagonal::Pivots)
            unknown = m_field.Product(unknown, m_pivotInverse[step]);
    }
}

/// Once the steps before k are done vector[order[k]] holds what is left of b there, the unknown
/// follows by the pivot, and its multiple of vector k is taken from the entries of later steps.
template <class Field>
template <typename SparseLu<Field>::Direction direction,
          typename SparseLu<Field>::Diagonal diagonal>
void SparseLu<Field>::SubstituteByEntries(const SparseVectors<Value>& vectors,
                                          std::vector<Value>& vector) const
{
    const Index size = vectors.Count();
    for (Index done = 0; done < size; ++done)
    {
        Index step = done;
        if constexpr (direction == Direction::LastToFirst)
            step = size - 1 - done;
        Value& unknown = vector[m_order[step]];
        // same bits: multiples of zero are subtracted
        if (m_field.IsZero(unknown))
            continue;
        if constexpr (diagonal == Diagonal::Pivots)
        {
            // same bits (in RationalField, in PrimeField): what is next to zero is zero there
            if (m_field.Negligible(unknown))
            {
                unknown = m_field.Zero();
                continue;
            }
            unknown = m_field.Product(unknown, m_pivotInverse[step]);
        }
        // same bits (always, never): a walk over no entries needs no copy
        if (vectors.start[step] == vectors.start[step + 1])
            continue;
        const Value factor = unknown;
        for (const auto [row, entry] : vectors[step])
            m_field.SubtractProduct(vector[row], entry, factor);
    }
}

template <class Field>
void SparseLu<Field>::SolveForward(std::vector<Value>& vector) const
{
    Substitute<Direction::FirstToLast, Diagonal::Ones>(m_lowerColumns, m_lowerRows, vector);
    Substitute<Direction::LastToFirst, Diagonal::Pivots>(m_upperColumns, m_upperRows, vector);
    for (Index k = 0; k < m_etas.Count(); ++k)
    {
        Value& pivot = vector[m_etaPivot[k]];
        if (m_field.IsZero(pivot))  // same bits: a multiple of zero is subtracted
            continue;
        pivot = m_field.Product(pivot, m_etaInverse[k]);
        const Value factor = pivot;
        for (const auto [row, entry] : m_etas[k])
            m_field.SubtractProduct(vector[row], entry, factor);
    }
}

template <class Field>
void SparseLu<Field>::SolveBackward(std::vector<Value>& vector) const
{
    for (Index k = m_etas.Count(); k-- > 0;)
    {
        Value sum = vector[m_etaPivot[k]];
        for (const auto [row, entry] : m_etas[k])
            m_field.SubtractProduct(sum, entry, vector[row]);
        vector[m_etaPivot[k]] = m_field.Product(sum, m_etaInverse[k]);
    }
    Substitute<Direction::FirstToLast, Diagonal::Pivots>(m_upperRows, m_upperColumns, vector);
    Substitute<Direction::LastToFirst, Diagonal::Ones>(m_lowerRows, m_lowerColumns, vector);
}

template <class Field>
void SparseLu<Field>::Update(Index position, const std::vector<Value>& solved)
{
    for (Index k = 0; k < solved.size(); ++k)
    {
        // same bits (in RationalField, in PrimeField): a multiple of zero is subtracted
        if (k != position && !m_field.Negligible(solved[k]))
            m_etas.Append(k, solved[k]);
    }
    m_etas.Close();
    m_etaPivot.push_back(position);
    m_etaInverse.push_back(m_field.Inverse(solved[position]));
}

template class SparseLu<RealField>;
template class SparseLu<PrimeField>;
template class SparseLu<RationalField>;

}  // namespace nuv
