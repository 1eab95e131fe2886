// Every sum starts at +0 and runs in increasing row; an element or a price that is 0 adds ±0, as
// all others are finite, and is left out.
#include "Nuv/Utils/Simplex/SparsePricing.h"

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/Kernels/Zeros.inl"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// How many elements are tested at once for being zero: most of a sparse row is passed over by
/// this.
constexpr NuvUint kBlankLength = 16;

/// Appends the non-zeros of the first n elements of a row to a list.
/// @return the end of the list.
NuvUint* ListNonzeros(const NuvFloat32* row, NuvUint n, NuvUint* columns)
{
    for (NuvUint j = 0; j != n;)
    {
        if (n - j >= kBlankLength && !HasNonzero<kBlankLength>(row + j))
        {
            j += kBlankLength;
            continue;
        }
        const NuvUint end = n - j >= kBlankLength ? j + kBlankLength : n;
        for (; j != end; ++j)
            // same bits: elements of A are no NaN here, and a price that is one leads to the dense
            // iteration
            if (row[j] != 0.0F)
                *columns++ = j;
    }
    return columns;
}

/// Sorts the non-zeros, which are listed row after row, by column.
void SortByColumn(SparsePricing* x, const StandardForm* form)
{
    NuvUint* const starts = x->starts;
    NuvMemZero(starts, (static_cast<NuvSizeT>(x->n) + 1) * sizeof *starts);
    for (NuvUint k = 0; k != x->rowStarts[x->m]; ++k)
        ++starts[x->columns[k]];
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
        for (NuvUint k = x->rowStarts[i]; k != x->rowStarts[i + 1]; ++k)
        {
            const NuvUint at = --starts[x->columns[k]];
            x->rows[at] = i;
            x->elements[at] = RowOf(form, i)[x->columns[k]];
        }
}

NuvFloat32 SumColumn(const SparsePricing* x, const NuvFloat32* prices, NuvUint j)
{
    NuvFloat32 sum = 0.0F;
    for (NuvUint k = x->starts[j]; k != x->starts[j + 1]; ++k)
        sum = sum + prices[x->rows[k]] * x->elements[k];
    return sum;
}

/// Sums the columns that have an element in the row and were not summed in this visit.
void SumColumnsOfRow(SparsePricing* x, const NuvFloat32* prices, NuvUint row, NuvFloat32* sums)
{
    for (NuvUint k = x->rowStarts[row]; k != x->rowStarts[row + 1]; ++k)
    {
        const NuvUint j = x->columns[k];
        // same bits: a column that is summed again has the same sum, a row that is read again the
        // same non-zeros
        if (x->visits[j] == x->visit)
            continue;
        x->visits[j] = x->visit;
        sums[j] = SumColumn(x, prices, j);
    }
}

/// Lists the rows whose prices are not those that were summed last.
/// @return how many non-zeros they have.
NuvUint FindChangedRows(SparsePricing* x, const NuvFloat32* prices, const NuvUint* rows,
                        NuvUint numRows, NuvUint* numChanged)
{
    NuvUint nonzeros = 0;
    NuvUint count = 0;
    for (NuvUint k = 0; k != numRows; ++k)
    {
        const NuvUint i = rows[k];
        // same bits: a column that is summed again has the same sum, a row that is read again the
        // same non-zeros; elements of A are no NaN here, and a price that is one leads to the dense
        // iteration
        if (prices[i] == x->prices[i])
            continue;
        x->prices[i] = prices[i];
        x->changedRows[count++] = i;
        // same bits: how many non-zeros there are chooses between two ways to the same sums
        nonzeros += x->rowStarts[i + 1] - x->rowStarts[i];
    }
    *numChanged = count;
    return nonzeros;
}
}  // namespace

bool IsSparse(const StandardForm* form)
{
    // A non-zero by itself costs about as much as a tile of a dense row.
    // same bits: how many non-zeros there are chooses between two ways to the same sums
    return form->maxNonzeros <= static_cast<NuvSizeT>(form->m) * form->n / Kernels::kTile;
}

void PlaceArrays(SparsePricing* x, const StandardForm* form, WorkspaceLayout* layout)
{
    layout->Place(static_cast<NuvSizeT>(form->n) + 1, &x->starts);
    layout->Place(form->maxNonzeros, &x->rows, &x->elements, &x->columns);
    layout->Place(static_cast<NuvSizeT>(form->m) + 1, &x->rowStarts);
    layout->Place(form->m, &x->prices, &x->changedRows);
    layout->Place(form->n, &x->visits);
}

void StartPricing(SparsePricing* x, const StandardForm* form)
{
    x->m = form->m;
    x->n = form->n;
    NuvUint* end = x->columns;
    for (NuvUint i = 0; i != x->m; ++i)
    {
        x->rowStarts[i] = static_cast<NuvUint>(end - x->columns);
        end = ListNonzeros(RowOf(form, i), x->n, end);
    }
    x->rowStarts[x->m] = static_cast<NuvUint>(end - x->columns);
    NUV_ASSERT(x->rowStarts[x->m] <= form->maxNonzeros);
    SortByColumn(x, form);
    NuvMemZero(x->prices, x->m * sizeof *x->prices);
    NuvMemZero(x->visits, x->n * sizeof *x->visits);
    x->visit = 0;
}

void SumColumns(SparsePricing* x, const NuvFloat32* prices, const NuvUint* rows, NuvUint count,
                NuvFloat32* sums)
{
    NuvUint numChanged;
    const NuvUint nonzeros = FindChangedRows(x, prices, rows, count, &numChanged);
    // To find columns by rows costs about three times as much as to take them one after the other.
    // same bits: a dense or a sparse row, a short or a long walk, with the same sums
    if (nonzeros > x->starts[x->n] / 3 || !switches.incrementalSums)
    {
        for (NuvUint j = 0; j != x->n; ++j)
            sums[j] = SumColumn(x, prices, j);
        return;
    }
    // same bits: stamps that count down differ from each other as well
    if (++x->visit == 0)
    {
        NuvMemZero(x->visits, x->n * sizeof *x->visits);
        // same bits: any stamp but 0 differs from those that were set to zero
        x->visit = 1;
    }
    // A column in none of whose rows the price has changed keeps its sum: the same terms are
    // summed.
    for (NuvUint k = 0; k != numChanged; ++k)
        SumColumnsOfRow(x, prices, x->changedRows[k], sums);
}

void CopyColumn(const SparsePricing* x, NuvUint j, NuvFloat32* column)
{
    for (NuvUint k = x->starts[j]; k != x->starts[j + 1]; ++k)
        column[x->rows[k]] = x->elements[k];
}
}  // namespace nuv
