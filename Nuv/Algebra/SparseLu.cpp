#include "Nuv/Algebra/SparseLu.hpp"

#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseElimination.hpp"

namespace nuv
{
namespace
{

/// Pairs the columns without a pivot with the rows without one.
template <class Field>
std::vector<typename SparseLu<Field>::Replacement>
PairLeftovers(const SparseElimination<Field>& elimination, std::vector<Index>& position)
{
    std::vector<bool> rowTaken(position.size(), false);
    for (const Index row : elimination.pivotRow)
        rowTaken[row] = true;
    std::vector<typename SparseLu<Field>::Replacement> replacements;
    Index row = 0;
    for (Index column = 0; column < position.size(); ++column)
    {
        if (position[column] != kNoIndex)
            continue;
        while (rowTaken[row])
            ++row;
        rowTaken[row] = true;
        position[column] = row;
        replacements.push_back({column, row});
    }
    return replacements;
}

/// The same vectors, vector k renumbered to name[k] of `count`; a name left out has no entries.
template <class Value>
SparseVectors<Value> Renumbered(const SparseVectors<Value>& vectors, const std::vector<Index>& name,
                                Index count)
{
    std::vector<Index> holder(count, kNoIndex);
    for (Index k = 0; k < vectors.Count(); ++k)
        holder[name[k]] = k;
    SparseVectors<Value> result;
    for (Index k = 0; k < count; ++k)
    {
        if (holder[k] != kNoIndex)
        {
            for (std::size_t at = vectors.start[holder[k]]; at < vectors.start[holder[k] + 1]; ++at)
                result.Append(vectors.index[at], vectors.value[at]);
        }
        result.Close();
    }
    return result;
}

}  // namespace

template <class Field>
std::vector<typename SparseLu<Field>::Replacement>
SparseLu<Field>::Factorise(const SparseVectors<Value>& columns, std::vector<Index>& position)
{
    const Index size = columns.Count();
    SparseElimination<Field> elimination(m_field, columns);
    elimination.Run();

    position.assign(size, kNoIndex);
    m_pivotInverse.assign(size, m_field.MinusOne());
    for (std::size_t step = 0; step < elimination.pivotRow.size(); ++step)
    {
        position[elimination.pivotColumn[step]] = elimination.pivotRow[step];
        m_pivotInverse[elimination.pivotRow[step]] = m_field.Inverse(elimination.pivotValue[step]);
    }
    // A replaced column met no elimination: the logical of a row that never pivoted is untouched by
    // the multipliers, and what the dropped column left in U goes with it.
    SparseVectors<Value> upper;
    for (Index step = 0; step < elimination.upper.Count(); ++step)
    {
        for (std::size_t at = elimination.upper.start[step]; at < elimination.upper.start[step + 1];
             ++at)
        {
            if (position[elimination.upper.index[at]] != kNoIndex)
                upper.Append(position[elimination.upper.index[at]], elimination.upper.value[at]);
        }
        upper.Close();
    }
    m_upperRows = Renumbered(upper, elimination.pivotRow, size);
    m_upperColumns = Transposed(m_upperRows, size);

    m_lowerPivot = elimination.pivotRow;
    m_lower = std::move(elimination.lower);
    m_lowerRows = Transposed(Renumbered(m_lower, m_lowerPivot, size), size);
    m_order = elimination.pivotRow;
    std::vector<Replacement> replacements = PairLeftovers<Field>(elimination, position);
    for (const Replacement& replacement : replacements)
        m_order.push_back(replacement.row);

    m_etaPivot.clear();
    m_etaInverse.clear();
    m_etas.Clear();
    return replacements;
}

template <class Field>
void SparseLu<Field>::SolveForward(std::vector<Value>& vector) const
{
    SolveLower(vector);
    SolveUpper(vector);
    for (Index k = 0; k < m_etas.Count(); ++k)
    {
        Value& pivot = vector[m_etaPivot[k]];
        if (m_field.IsZero(pivot))
            continue;
        pivot = m_field.Product(pivot, m_etaInverse[k]);
        const Value factor = pivot;
        for (std::size_t at = m_etas.start[k]; at < m_etas.start[k + 1]; ++at)
            m_field.SubtractProduct(vector[m_etas.index[at]], m_etas.value[at], factor);
    }
}

template <class Field>
void SparseLu<Field>::SolveBackward(std::vector<Value>& vector) const
{
    for (Index k = m_etas.Count(); k-- > 0;)
    {
        Value sum = vector[m_etaPivot[k]];
        for (std::size_t at = m_etas.start[k]; at < m_etas.start[k + 1]; ++at)
            m_field.SubtractProduct(sum, m_etas.value[at], vector[m_etas.index[at]]);
        vector[m_etaPivot[k]] = m_field.Product(sum, m_etaInverse[k]);
    }
    SolveUpperTransposed(vector);
    SolveLowerTransposed(vector);
}

template <class Field>
void SparseLu<Field>::Update(Index position, const std::vector<Value>& solved)
{
    for (Index k = 0; k < solved.size(); ++k)
    {
        if (k != position && !m_field.Negligible(solved[k]))
            m_etas.Append(k, solved[k]);
    }
    m_etas.Close();
    m_etaPivot.push_back(position);
    m_etaInverse.push_back(m_field.Inverse(solved[position]));
}

template <class Field>
void SparseLu<Field>::SolveLower(std::vector<Value>& vector) const
{
    for (Index k = 0; k < m_lower.Count(); ++k)
    {
        const std::size_t begin = m_lower.start[k];
        const std::size_t end = m_lower.start[k + 1];
        if (begin == end || m_field.IsZero(vector[m_lowerPivot[k]]))
            continue;
        const Value factor = vector[m_lowerPivot[k]];
        for (std::size_t at = begin; at < end; ++at)
            m_field.SubtractProduct(vector[m_lower.index[at]], m_lower.value[at], factor);
    }
}

template <class Field>
void SparseLu<Field>::SolveUpper(std::vector<Value>& vector) const
{
    for (std::size_t k = m_order.size(); k-- > 0;)
    {
        const Index row = m_order[k];
        if (m_field.IsZero(vector[row]))
            continue;
        if (m_field.Negligible(vector[row]))
        {
            vector[row] = m_field.Zero();
            continue;
        }
        vector[row] = m_field.Product(vector[row], m_pivotInverse[row]);
        const Value factor = vector[row];
        for (std::size_t at = m_upperColumns.start[row]; at < m_upperColumns.start[row + 1]; ++at)
            m_field.SubtractProduct(vector[m_upperColumns.index[at]], m_upperColumns.value[at],
                                    factor);
    }
}

template <class Field>
void SparseLu<Field>::SolveUpperTransposed(std::vector<Value>& vector) const
{
    for (const Index row : m_order)
    {
        if (m_field.IsZero(vector[row]))
            continue;
        if (m_field.Negligible(vector[row]))
        {
            vector[row] = m_field.Zero();
            continue;
        }
        vector[row] = m_field.Product(vector[row], m_pivotInverse[row]);
        const Value factor = vector[row];
        for (std::size_t at = m_upperRows.start[row]; at < m_upperRows.start[row + 1]; ++at)
            m_field.SubtractProduct(vector[m_upperRows.index[at]], m_upperRows.value[at], factor);
    }
}

template <class Field>
void SparseLu<Field>::SolveLowerTransposed(std::vector<Value>& vector) const
{
    for (std::size_t k = m_order.size(); k-- > 0;)
    {
        const Index row = m_order[k];
        const std::size_t begin = m_lowerRows.start[row];
        const std::size_t end = m_lowerRows.start[row + 1];
        if (begin == end || m_field.IsZero(vector[row]))
            continue;
        const Value factor = vector[row];
        for (std::size_t at = begin; at < end; ++at)
            m_field.SubtractProduct(vector[m_lowerRows.index[at]], m_lowerRows.value[at], factor);
    }
}

template class SparseLu<RealField>;
template class SparseLu<PrimeField>;
template class SparseLu<RationalField>;

}  // namespace nuv
