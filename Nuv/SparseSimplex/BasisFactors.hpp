/// The factorisation of a basis over any field: what becomes of the list of basic variables when
/// its columns are brought into pivot order, and what stands in for columns that depend on others.
#pragma once

#include "Nuv/Algebra/SparseMatrix.hpp"

#include <vector>

namespace nuv
{

/// A variable that left the basis because its column depended on the others, and the logical that
/// took its place.
struct BasisReplacement
{
    Index dropped;
    Index logical;
};

/// Factorises the basis whose variables are `head` and whose columns, in that order, are `columns`.
/// Sorts `head` by position: variable head[k] is the unknown k of SolveForward from then on. The
/// logical of row i is the variable firstLogical + i.
/// @return what was replaced because the matrix is singular; nothing if it is not.
template <class Lu, class Value>
std::vector<BasisReplacement> FactoriseBasis(Lu& lu, const SparseVectors<Value>& columns,
                                             Index firstLogical, std::vector<Index>& head)
{
    std::vector<Index> position;
    const auto replacements = lu.Factorise(columns, position);
    std::vector<Index> sorted(head.size());
    for (Index k = 0; k < head.size(); ++k)
        sorted[position[k]] = head[k];
    std::vector<BasisReplacement> result;
    for (const auto& replacement : replacements)
    {
        const Index logical = firstLogical + replacement.row;
        result.push_back({head[replacement.column], logical});
        sorted[replacement.row] = logical;
    }
    head = std::move(sorted);
    return result;
}

}  // namespace nuv
