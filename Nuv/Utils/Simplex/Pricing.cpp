// Pricing. Every sum over a column of A starts at +0 and runs in increasing row; a price or an
// element that is 0 adds ±0, as all others are finite, and is left out.
#include "Nuv/Utils/Simplex/Pricing.h"

#include <limits>

#include "Nuv/Utils/Simplex/BasisInverse.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/Kernels/Zeros.inl"

namespace nuv
{
namespace
{
/// How many elements are tested at once for being zero: most of a sparse row is passed over by
/// this.
constexpr NuvUint blankLength = 16;

constexpr NuvFloat32 basicCost = -std::numeric_limits<NuvFloat32>::infinity();

/// Where a variable's cost and position are kept.
struct Place
{
    NuvFloat32* cost;
    NuvUint* position;
};

Place PlaceOf(const ReducedCosts* x, NuvUint label)
{
    const NuvSizeT j = label <= x->n ? label - 1 : x->firstSlack + (label - x->n - 1);
    return {x->costs + j, x->positions + j};
}

const NuvFloat32* RowOfA(const ReducedCosts* x, NuvUint row)
{
    return x->A + row * x->numColumns;
}

/// Lists the non-zeros of a row of A's first columns.
/// @return the end of the list.
NuvUint* ListNonzeros(const ReducedCosts* x, NuvUint i, NuvUint* columns)
{
    const NuvFloat32* const row = RowOfA(x, i);
    for (NuvUint j = 0; j != x->n;)
    {
        if (x->n - j >= blankLength && !HasNonzero<blankLength>(row + j))
        {
            j += blankLength;
            continue;
        }
        const NuvUint end = x->n - j >= blankLength ? j + blankLength : x->n;
        for (; j != end; ++j)
            if (row[j] != 0.0F)
                *columns++ = j;
    }
    return columns;
}

/// Sorts the non-zeros, which are listed row after row, by column.
void SortByColumn(ReducedCosts* x)
{
    SparseColumns* const sparse = &x->sparse;
    NuvUint* const starts = sparse->starts;
    NuvMemZero(starts, (static_cast<NuvSizeT>(x->n) + 1) * sizeof *starts);
    for (NuvUint k = 0; k != sparse->rowStarts[x->m]; ++k)
        ++starts[sparse->columns[k]];
    // First the lengths, then the ends, which run down to the beginnings as the columns are filled
    // from the last row up.
    NuvUint end = 0;
    for (NuvUint j = 0; j != x->n; ++j)
    {
        end += starts[j];
        starts[j] = end;
    }
    starts[x->n] = end;
    for (NuvUint i = x->m; i-- != 0;)
        for (NuvUint k = sparse->rowStarts[i]; k != sparse->rowStarts[i + 1]; ++k)
        {
            const NuvUint at = --starts[sparse->columns[k]];
            sparse->rows[at] = i;
            sparse->elements[at] = RowOfA(x, i)[sparse->columns[k]];
        }
}

void ReadNonzeros(ReducedCosts* x)
{
    SparseColumns* const sparse = &x->sparse;
    NuvUint* end = sparse->columns;
    for (NuvUint i = 0; i != x->m; ++i)
    {
        sparse->rowStarts[i] = static_cast<NuvUint>(end - sparse->columns);
        end = ListNonzeros(x, i, end);
    }
    sparse->rowStarts[x->m] = static_cast<NuvUint>(end - sparse->columns);
    SortByColumn(x);
    NuvMemZero(sparse->prices, x->m * sizeof *sparse->prices);
    NuvMemZero(sparse->turns, x->n * sizeof *sparse->turns);
    sparse->turn = 0;
}

/// Copies a row with padding, in whose place it is read from then on.
void CopyRow(ReducedCosts* x, NuvUint i)
{
    const NuvSizeT length = x->firstSlack;
    NuvFloat32* const copy = x->copies + i * length;
    NuvMemCopy(copy, RowOfA(x, i), x->n * sizeof *copy);
    NuvMemZero(copy + x->n, (length - x->n) * sizeof *copy);
    x->rows[i] = copy;
    x->isCopied[i] = true;
}

void SumRows(ReducedCosts* x, const NuvUint* rows, NuvUint count)
{
    const NuvFloat32* const prices = PricesOf(x);
    NuvSizeT numPriced = 0;
    for (NuvUint k = 0; k != count; ++k)
    {
        const NuvUint i = rows[k];
        if (!x->isCopied[i])
            CopyRow(x, i);
        // Without a branch, which nobody could predict.
        x->vectors[numPriced] = x->rows[i];
        x->multipliers[numPriced] = prices[i];
        numPriced += prices[i] != 0.0F ? 1 : 0;
    }
    const FusedProduct sums = {x->vectors, nullptr,      numPriced,
                               nullptr,    nullptr,      {x->multipliers, nullptr, x->sums},
                               {},         x->firstSlack};
    x->kernels->updateAndMultiply(&sums);
}

void SumColumn(ReducedCosts* x, const NuvFloat32* prices, NuvUint j)
{
    const SparseColumns* const sparse = &x->sparse;
    NuvFloat32 sum = 0.0F;
    for (NuvUint k = sparse->starts[j]; k != sparse->starts[j + 1]; ++k)
        sum = sum + prices[sparse->rows[k]] * sparse->elements[k];
    x->sums[j] = sum;
}

/// Sums the columns that have an element in the row and were not summed in this turn.
void SumColumnsOfRow(ReducedCosts* x, const NuvFloat32* prices, NuvUint row)
{
    SparseColumns* const sparse = &x->sparse;
    for (NuvUint k = sparse->rowStarts[row]; k != sparse->rowStarts[row + 1]; ++k)
    {
        const NuvUint j = sparse->columns[k];
        if (sparse->turns[j] == sparse->turn)
            continue;
        sparse->turns[j] = sparse->turn;
        SumColumn(x, prices, j);
    }
}

/// Lists the rows whose prices are not those that were summed last.
/// @return how many non-zeros they have.
NuvUint FindChangedRows(ReducedCosts* x, const NuvUint* rows, NuvUint numRows, NuvUint* numChanged)
{
    SparseColumns* const sparse = &x->sparse;
    const NuvFloat32* const prices = PricesOf(x);
    NuvUint nonzeros = 0;
    NuvUint count = 0;
    for (NuvUint k = 0; k != numRows; ++k)
    {
        const NuvUint i = rows[k];
        if (prices[i] == sparse->prices[i])
            continue;
        sparse->prices[i] = prices[i];
        sparse->changedRows[count++] = i;
        nonzeros += sparse->rowStarts[i + 1] - sparse->rowStarts[i];
    }
    *numChanged = count;
    return nonzeros;
}

/// A column in none of whose rows the price has changed keeps its sum: the same terms are summed.
void SumColumns(ReducedCosts* x, const NuvUint* rows, NuvUint count)
{
    const NuvFloat32* const prices = PricesOf(x);
    SparseColumns* const sparse = &x->sparse;
    NuvUint numChanged;
    const NuvUint nonzeros = FindChangedRows(x, rows, count, &numChanged);
    // Walking rows costs about three times as much as walking columns.
    if (nonzeros > sparse->starts[x->n] / 3 || !switches.incrementalSums)
    {
        for (NuvUint j = 0; j != x->n; ++j)
            SumColumn(x, prices, j);
        return;
    }
    if (++sparse->turn == 0)
    {
        NuvMemZero(sparse->turns, x->n * sizeof *sparse->turns);
        sparse->turn = 1;
    }
    for (NuvUint k = 0; k != numChanged; ++k)
        SumColumnsOfRow(x, prices, sparse->changedRows[k]);
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
    x->isSparse = switches.sparsePricing && IsSparse(m, n, nonzeros);
    x->firstSlack = PaddedLength(n);
    x->length = x->firstSlack + PaddedLength(m);
    cutter->Take(&x->costs, x->length);
    cutter->Take(&x->sums, x->length);
    cutter->Take(&x->differences, x->length);
    cutter->Take(&x->positions, x->length);
    const NuvSizeT numRows = x->isSparse ? 0 : m;
    cutter->Take(&x->rows, numRows);
    cutter->Take(&x->isCopied, numRows);
    cutter->Take(&x->vectors, numRows);
    cutter->Take(&x->multipliers, numRows);
    const NuvSizeT numElements = x->isSparse ? nonzeros : 0;
    cutter->Take(&x->sparse.starts, x->isSparse ? static_cast<NuvSizeT>(n) + 1 : 0);
    cutter->Take(&x->sparse.rows, numElements);
    cutter->Take(&x->sparse.elements, numElements);
    cutter->Take(&x->sparse.columns, numElements);
    cutter->Take(&x->sparse.rowStarts, x->isSparse ? static_cast<NuvSizeT>(m) + 1 : 0);
    cutter->Take(&x->sparse.prices, x->isSparse ? m : 0);
    cutter->Take(&x->sparse.changedRows, x->isSparse ? m : 0);
    cutter->Take(&x->sparse.turns, x->isSparse ? n : 0);
}

void BeginReducedCosts(ReducedCosts* x, NuvFloat32* copies)
{
    x->copies = copies;
    for (NuvSizeT j = 0; j != x->length; ++j)
        x->costs[j] = basicCost;
    NuvMemZero(x->positions, x->length * sizeof *x->positions);
    NuvMemZero(x->sums, x->firstSlack * sizeof *x->sums);
    if (x->isSparse)
    {
        ReadNonzeros(x);
        return;
    }
    for (NuvUint i = 0; i != x->m; ++i)
    {
        // Only read, like A.
        x->rows[i] = const_cast<NuvFloat32*>(RowOfA(x, i));
        x->isCopied[i] = false;
    }
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

NuvFloat32* PricesOf(ReducedCosts* x)
{
    return x->sums + x->firstSlack;
}

Choice FindLargestReducedCost(ReducedCosts* x, const NuvUint* rows, NuvUint count)
{
    if (x->isSparse)
        SumColumns(x, rows, count);
    else
        SumRows(x, rows, count);
    // A slack's sum is +0 + price · 1: the price itself, which is a sum from +0 and never −0.
    return x->kernels->findLargest(x->costs, x->sums, x->positions, x->differences, x->length);
}

void CopyColumn(const ReducedCosts* x, NuvUint label, NuvFloat32* column, NuvSizeT length)
{
    const bool isDense = label <= x->n && !x->isSparse;
    if (!isDense)
        NuvMemZero(column, length * sizeof *column);
    if (label > x->n)
        column[label - x->n - 1] = 1.0F;
    else if (x->isSparse)
        for (NuvUint k = x->sparse.starts[label - 1]; k != x->sparse.starts[label]; ++k)
            column[x->sparse.rows[k]] = x->sparse.elements[k];
    else
        for (NuvUint i = 0; i != x->m; ++i)
            column[i] = x->rows[i][label - 1];
}
}  // namespace nuv
