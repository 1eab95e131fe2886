// The steps on the inverse of the structured iteration, each with the proof that it gives the bits
// of the definition: sums over all m terms in increasing index, from +0, and a dense eta matrix.
#include "Nuv/Utils/Simplex/BasisInverse.h"

#include "Nuv/Utils/Kernels/Assert.h"
#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
/// The position of the first of the costed rows that is not before `row`.
NuvUint FindCosted(const CostedRows* costed, NuvUint row)
{
    NuvUint position = costed->count;
    while (position != 0 && costed->rows[position - 1] >= row)
        --position;
    return position;
}

template <class T>
void OpenGap(T* array, NuvUint position, NuvUint count)
{
    NuvMemMove(array + position + 1, array + position, (count - position) * sizeof *array);
}

template <class T>
void CloseGap(T* array, NuvUint position, NuvUint count)
{
    NuvMemMove(array + position, array + position + 1, (count - position - 1) * sizeof *array);
}

void InsertCosted(CostedRows* costed, NuvUint position, NuvUint row)
{
    NUV_ASSERT(costed->count != costed->capacity);
    NuvFloat32* const entries = costed->entries[costed->count];
    OpenGap(costed->rows, position, costed->count);
    OpenGap(costed->costs, position, costed->count);
    OpenGap(costed->entries, position, costed->count);
    ++costed->count;
    costed->rows[position] = row;
    costed->entries[position] = entries;
}

void RemoveCosted(CostedRows* costed, NuvUint position)
{
    NuvFloat32* const entries = costed->entries[position];
    CloseGap(costed->rows, position, costed->count);
    CloseGap(costed->costs, position, costed->count);
    CloseGap(costed->entries, position, costed->count);
    --costed->count;
    costed->entries[costed->count] = entries;
}

/// Lists a column among those that are stored.
void ListColumn(BasisInverse* x, NuvUint column, NuvUint slot)
{
    const NuvUint count = slot;
    NuvUint position = count;
    while (position != 0 && x->numbers[position - 1] > column)
        --position;
    OpenGap(x->elements, position, count);
    OpenGap(x->numbers, position, count);
    OpenGap(x->slots, position, count);
    OpenGap(x->storedB, position, count);
    x->elements[position] = x->columns[column];
    x->numbers[position] = column;
    x->slots[position] = slot;
    x->storedB[position] = x->unitB[column];
    x->unitB[column] = 0.0F;
}

/// Saves row r of the inverse as the multipliers of the rank-1 update and zeroes it, so that the
/// update, entry(i) += eta(i) · multiplier, gives eta(r) · v in row r without a special case: the
/// definition sums +0 + eta(r) · v.
void ExtractPivotRow(BasisInverse* x, NuvUint row)
{
    NuvFloat32* entry = x->storage + row;
    for (NuvUint slot = 0; slot != x->numStored; ++slot, entry += x->stride)
    {
        x->multipliersBySlot[slot] = *entry;
        *entry = 0.0F;
    }
    for (NuvUint k = 0; k != x->numStored; ++k)
        x->multipliers[k] = x->multipliersBySlot[x->slots[k]];
}

/// The length of rows by slot that may hold other than zeros.
NuvSizeT LengthInUse(const BasisInverse* x)
{
    return InTiles(x->numStored);
}

/// Adds an update to the costed rows, and sums the prices of the stored columns.
void SumPrices(BasisInverse* x, const NuvFloat32* update, NuvFloat32* prices)
{
    const CostedRows* const costed = &x->costed;
    const FusedProduct sums = {costed->entries,
                               nullptr,
                               costed->count,
                               costed->eta,
                               update,
                               {costed->costs, nullptr, x->pricesBySlot},
                               {},
                               LengthInUse(x)};
    x->kernels->updateAndMultiply(&sums);
    for (NuvUint slot = 0; slot != x->numStored; ++slot)
        prices[x->columnOfSlot[slot]] = x->pricesBySlot[slot];
}

/// Brings the costed rows and the prices, π(j) = Σ c(i) · inverse(i, j) over the rows with c(i) ≠
/// 0, up to date. The unit columns keep their prices, 0: an update leaves them as they are but in
/// the row that leaves, and stores that one's column.
void UpdateCostedRows(BasisInverse* x, NuvFloat32* prices)
{
    CostedRows* const costed = &x->costed;
    for (NuvUint k = 0; k != costed->count; ++k)
        costed->eta[k] = x->eta[costed->rows[k]];
    SumPrices(x, x->multipliersBySlot, prices);
}

/// Moves the elements that are the factors of stored columns out of the vector, and leaves those of
/// unit columns.
void SplitVector(BasisInverse* x, NuvFloat32* vector)
{
    for (NuvUint k = 0; k != x->numStored; ++k)
    {
        NuvFloat32* const element = vector + x->numbers[k];
        x->storedVector[k] = *element;
        *element = 0.0F;
    }
}
}  // namespace

void PlaceArrays(BasisInverse* x, NuvUint m, NuvUint maxCosted, WorkspaceLayout* layout)
{
    x->m = m;
    x->stride = PaddedLength(m);
    x->costed.capacity = maxCosted;
    layout->Place(m, &x->columns, &x->columnOfSlot, &x->elements, &x->numbers, &x->slots,
                  &x->storedB, &x->storedVector, &x->multipliers);
    layout->Place(maxCosted, &x->costed.rows, &x->costed.costs, &x->costed.entries, &x->costed.eta);
    layout->Place(x->stride, &x->unitB, &x->eta, &x->multipliersBySlot, &x->pricesBySlot);
    layout->Place(m * x->stride, &x->storage);
    layout->Place(maxCosted * x->stride, &x->costed.storage);
}

void SetToIdentity(BasisInverse* x, const NuvFloat32* b)
{
    x->numStored = 0;
    x->isPending = false;
    NuvMemZero(x->columns, x->m * sizeof *x->columns);
    NuvMemCopy(x->unitB, b, x->stride * sizeof *x->unitB);
    NuvMemZero(x->multipliersBySlot, x->stride * sizeof *x->multipliersBySlot);
    CostedRows* const costed = &x->costed;
    costed->count = 0;
    for (NuvUint k = 0; k != costed->capacity; ++k)
        costed->entries[k] = costed->storage + k * x->stride;
}

NuvFloat32* StoreColumn(BasisInverse* x, NuvUint column)
{
    if (x->columns[column])
        return x->columns[column];
    NUV_ASSERT(x->numStored != x->m);
    const NuvUint slot = x->numStored++;
    NuvFloat32* const elements = x->storage + slot * x->stride;
    NuvMemZero(elements, x->stride * sizeof *elements);
    elements[column] = 1.0F;
    x->columns[column] = elements;
    x->columnOfSlot[slot] = column;
    ListColumn(x, column, slot);
    return elements;
}

NuvFloat32 EntryOf(const BasisInverse* x, NuvUint row, NuvUint column)
{
    NUV_ASSERT(!x->isPending);
    if (x->columns[column])
        return x->columns[column][row];
    return row == column ? 1.0F : 0.0F;
}

void SetCost(BasisInverse* x, NuvUint row, NuvFloat32 cost)
{
    CostedRows* const costed = &x->costed;
    const NuvUint position = FindCosted(costed, row);
    const bool isCosted = position != costed->count && costed->rows[position] == row;
    // same bits: costs are no NaN here
    if (cost == 0.0F)
    {
        if (isCosted)
            RemoveCosted(costed, position);
        return;
    }
    if (!isCosted)
        InsertCosted(costed, position, row);
    costed->costs[position] = cost;
    // Entries of later slots are zero since the row was first costed.
    const NuvSizeT length = isCosted ? LengthInUse(x) : x->stride;
    NuvMemZero(costed->entries[position], length * sizeof **costed->entries);
}

void ComputePrices(BasisInverse* x, NuvFloat32* prices)
{
    const CostedRows* const costed = &x->costed;
    NuvMemZero(prices, x->stride * sizeof *prices);
    // A unit column's price would be the cost of its own row.
    for (NuvUint k = 0; k != costed->count; ++k)
        (void)StoreColumn(x, costed->rows[k]);
    for (NuvUint k = 0; k != costed->count; ++k)
        for (NuvUint slot = 0; slot != x->numStored; ++slot)
            costed->entries[k][slot] = x->columns[x->columnOfSlot[slot]][costed->rows[k]];
    SumPrices(x, nullptr, prices);
}

void MultiplyByInverse(BasisInverse* x, NuvFloat32* values, NuvFloat32* vector, NuvFloat32* result)
{
    ColumnProduct withB = {x->storedB, x->unitB, nullptr};
    withB.sums = values;
    ColumnProduct withVector = {};
    if (vector)
    {
        SplitVector(x, vector);
        withVector = {x->storedVector, vector, result};
    }
    const FusedProduct product = {
        x->elements, x->numbers, x->numStored, x->multipliers, x->isPending ? x->eta : nullptr,
        withB,       withVector, InTiles(x->m)};
    x->kernels->updateAndMultiply(&product);
    x->isPending = false;
}

bool FormEta(BasisInverse* x, const NuvFloat32* direction, NuvUint row)
{
    // The eta matrix is I − ((d − e) · eᵀ) · p with p = 1 / d(r). For finite d and p all of it but
    // column r is the identity's, as (d − e) · 0 = ±0 and 0 − (±0 · p) = 0.
    // 1 − (d(r) − 1) · p is finite where d(r) · p is: for a small d(r) it is 1 + p, else near 2^25
    // at most.
    return x->kernels->formEta(direction, row, x->eta, x->stride);
}

void Update(BasisInverse* x, NuvUint row, NuvFloat32 cost, NuvFloat32* prices)
{
    NUV_ASSERT(!x->isPending);
    (void)StoreColumn(x, row);
    ExtractPivotRow(x, row);
    SetCost(x, row, cost);
    UpdateCostedRows(x, prices);
    x->isPending = true;
}
}  // namespace nuv
