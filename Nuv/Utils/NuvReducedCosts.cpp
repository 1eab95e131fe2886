// Pricing. Every sum over a column of A starts at +0 and runs in increasing row; a price or an
// element that is 0 adds ±0, as all others are finite, and is left out.
#include "Nuv/Utils/NuvReducedCosts.h"

#include <limits>

#include "Nuv/Utils/NuvBasisInverse.h"
#include "Nuv/Utils/NuvFloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// How many elements are tested at once for being zero.
constexpr NuvUint blankLength = 16;

constexpr NuvFloat32 basicCost = -std::numeric_limits<NuvFloat32>::infinity();

void LayOut(NonbasicCosts* x, NuvUint count, Cutter* cutter)
{
    x->length = PaddedLength(count);
    cutter->Take(&x->costs, x->length);
    cutter->Take(&x->reducedCosts, x->length);
    cutter->Take(&x->positions, x->length);
}

void MakeAllBasic(NonbasicCosts* x)
{
    for (NuvSizeT j = 0; j != x->length; ++j)
        x->costs[j] = basicCost;
    NuvMemZero(x->positions, x->length * sizeof *x->positions);
}

/// Where a variable's cost and position are kept.
struct Place
{
    NuvFloat32* cost;
    NuvUint* position;
};

Place PlaceOf(const ReducedCosts* x, NuvUint label)
{
    const NonbasicCosts* const kind = label <= x->n ? &x->structurals : &x->slacks;
    const NuvUint j = label <= x->n ? label - 1 : label - x->n - 1;
    return {kind->costs + j, kind->positions + j};
}

const NuvFloat32* RowOfA(const ReducedCosts* x, NuvUint row)
{
    return x->A + row * x->numColumns;
}

/// Whether the next elements are all +0; most of a sparse row is passed over by this.
bool IsBlank(const NuvFloat32* x)
{
    NuvSizeT bits[blankLength / 2];
    NuvMemCopy(bits, x, sizeof bits);
    NuvSizeT any = 0;
    for (const NuvSizeT pair : bits)
        any |= pair;
    return any == 0;
}

/// Calls visit(row, column, element) for each non-zero of a row of A's first columns.
template <class Visit>
void ForEachNonzero(const ReducedCosts* x, NuvUint i, Visit visit)
{
    const NuvFloat32* const row = RowOfA(x, i);
    for (NuvUint j = 0; j != x->n;)
    {
        if (x->n - j >= blankLength && IsBlank(row + j))
        {
            j += blankLength;
            continue;
        }
        const NuvUint end = x->n - j >= blankLength ? j + blankLength : x->n;
        for (; j != end; ++j)
            if (row[j] != 0.0F)
                visit(j, row[j]);
    }
}

void ReadNonzeros(ReducedCosts* x)
{
    NuvUint* const starts = x->sparse.starts;
    NuvMemZero(starts, (static_cast<NuvSizeT>(x->n) + 1) * sizeof *starts);
    // First the lengths, then the ends, which run down to the beginnings as the columns are filled
    // from the last row up.
    for (NuvUint i = 0; i != x->m; ++i)
        ForEachNonzero(x, i, [starts](NuvUint j, NuvFloat32) { ++starts[j]; });
    NuvUint end = 0;
    for (NuvUint j = 0; j != x->n; ++j)
    {
        end += starts[j];
        starts[j] = end;
    }
    starts[x->n] = end;
    for (NuvUint i = x->m; i != 0; --i)
        ForEachNonzero(x, i - 1,
                       [x, i](NuvUint j, NuvFloat32 element)
                       {
                           const NuvUint at = --x->sparse.starts[j];
                           x->sparse.rows[at] = i - 1;
                           x->sparse.elements[at] = element;
                       });
}

/// The row with padding, copied when it is first needed.
const NuvFloat32* PaddedRow(ReducedCosts* x, NuvUint i)
{
    if (!x->rows[i])
    {
        const NuvSizeT length = x->structurals.length;
        NuvFloat32* const copy = x->copies + i * length;
        NuvMemCopy(copy, RowOfA(x, i), x->n * sizeof *copy);
        NuvMemZero(copy + x->n, (length - x->n) * sizeof *copy);
        x->rows[i] = copy;
    }
    return x->rows[i];
}

void SumRows(ReducedCosts* x, const NuvFloat32* prices)
{
    NuvSizeT count = 0;
    for (NuvUint i = 0; i != x->m; ++i)
    {
        if (prices[i] == 0.0F)
            continue;
        x->vectors[count] = PaddedRow(x, i);
        x->multipliers[count] = prices[i];
        ++count;
    }
    NuvMemZero(x->sums, x->structurals.length * sizeof *x->sums);
    x->kernels->addMultiples(x->vectors, x->multipliers, count, x->sums, 0, x->structurals.length);
}

void SumColumns(ReducedCosts* x, const NuvFloat32* prices)
{
    const SparseColumns* const sparse = &x->sparse;
    for (NuvUint j = 0; j != x->n; ++j)
    {
        NuvFloat32 sum = 0.0F;
        for (NuvUint k = sparse->starts[j]; k != sparse->starts[j + 1]; ++k)
            sum = sum + prices[sparse->rows[k]] * sparse->elements[k];
        x->sums[j] = sum;
    }
}

NuvFloat32 Reduce(const Kernels* kernels, NonbasicCosts* x, const NuvFloat32* sums)
{
    return kernels->subtractAndFindLargest(x->costs, sums, x->reducedCosts, x->length);
}

NuvUint LastPosition(const Kernels* kernels, const NonbasicCosts* x, NuvFloat32 value)
{
    return kernels->largestWhereEqual(x->reducedCosts, value, x->positions, x->length);
}
}  // namespace

bool IsSparse(NuvSizeT m, NuvSizeT n, NuvSizeT nonzeros)
{
    // A non-zero by itself costs about as much as a tile of a dense row.
    return nonzeros <= m * n / Kernels::tile;
}

void LayOut(ReducedCosts* x, NuvUint m, NuvUint n, NuvSizeT nonzeros, Cutter* cutter)
{
    x->m = m;
    x->n = n;
    x->numColumns = static_cast<NuvSizeT>(n) + m;
    x->isSparse = IsSparse(m, n, nonzeros);
    LayOut(&x->structurals, n, cutter);
    LayOut(&x->slacks, m, cutter);
    cutter->Take(&x->sums, x->structurals.length);
    const NuvSizeT numRows = x->isSparse ? 0 : m;
    cutter->Take(&x->rows, numRows);
    cutter->Take(&x->vectors, numRows);
    cutter->Take(&x->multipliers, numRows);
    const NuvSizeT numElements = x->isSparse ? nonzeros : 0;
    cutter->Take(&x->sparse.starts, x->isSparse ? static_cast<NuvSizeT>(n) + 1 : 0);
    cutter->Take(&x->sparse.rows, numElements);
    cutter->Take(&x->sparse.elements, numElements);
}

void BeginReducedCosts(ReducedCosts* x, NuvFloat32* copies)
{
    x->copies = copies;
    MakeAllBasic(&x->structurals);
    MakeAllBasic(&x->slacks);
    NuvMemZero(x->sums, x->structurals.length * sizeof *x->sums);
    if (x->isSparse)
        ReadNonzeros(x);
    else
        NuvMemZero(x->rows, x->m * sizeof *x->rows);
}

bool MarkPlaced(ReducedCosts* x, NuvUint label)
{
    NuvUint* const position = PlaceOf(x, label).position;
    if (*position != 0)
        return false;
    *position = UINT32_MAX;
    return true;
}

void MakeBasic(ReducedCosts* x, NuvUint label)
{
    *PlaceOf(x, label).cost = basicCost;
}

void MakeNonbasic(ReducedCosts* x, NuvUint label, NuvFloat32 cost, NuvUint position)
{
    const Place place = PlaceOf(x, label);
    *place.cost = cost;
    *place.position = position + 1;
}

NuvFloat32 FindLargestReducedCost(ReducedCosts* x, const NuvFloat32* prices, NuvUint* position)
{
    if (x->isSparse)
        SumColumns(x, prices);
    else
        SumRows(x, prices);
    // A slack's sum is +0 + price · 1: the price itself, which is a sum from +0 and never −0.
    const NuvFloat32 ofStructurals = Reduce(x->kernels, &x->structurals, x->sums);
    const NuvFloat32 ofSlacks = Reduce(x->kernels, &x->slacks, prices);
    const NuvFloat32 largest = ofStructurals > ofSlacks ? ofStructurals : ofSlacks;
    if (largest == 0.0F)
        return largest;
    const NuvUint structural = LastPosition(x->kernels, &x->structurals, largest);
    const NuvUint slack = LastPosition(x->kernels, &x->slacks, largest);
    *position = (structural > slack ? structural : slack) - 1;
    return largest;
}

void CopyColumn(const ReducedCosts* x, NuvUint label, NuvFloat32* column, NuvSizeT length)
{
    NuvMemZero(column, length * sizeof *column);
    if (label > x->n)
        column[label - x->n - 1] = 1.0F;
    else if (x->isSparse)
        for (NuvUint k = x->sparse.starts[label - 1]; k != x->sparse.starts[label]; ++k)
            column[x->sparse.rows[k]] = x->sparse.elements[k];
    else
        for (NuvUint i = 0; i != x->m; ++i)
            column[i] = (x->rows[i] ? x->rows[i] : RowOfA(x, i))[label - 1];
}
}  // namespace nuv
