// The steps on the inverse of the fast road, each with the proof that it gives the bits of the
// definition: sums over all m terms in increasing index, from +0, and a dense eta matrix.
#include "Nuv/Utils/Simplex/BasisInverse.h"

#include <initializer_list>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
constexpr NuvUint tile = Kernels::tile;

/// The length of so many elements in whole tiles.
NuvSizeT InTiles(NuvSizeT count)
{
    return (count + tile - 1) / tile * tile;
}

/// The position of the first priced row that is not before `row`.
NuvUint FindPriced(const PricedRows* priced, NuvUint row)
{
    NuvUint position = priced->count;
    while (position != 0 && priced->rows[position - 1] >= row)
        --position;
    return position;
}

template <class T>
void MakeRoom(T* array, NuvUint position, NuvUint count)
{
    NuvMemMove(array + position + 1, array + position, (count - position) * sizeof *array);
}

template <class T>
void CloseGap(T* array, NuvUint position, NuvUint count)
{
    NuvMemMove(array + position, array + position + 1, (count - position - 1) * sizeof *array);
}

void InsertPriced(PricedRows* priced, NuvUint position, NuvUint row)
{
    MakeRoom(priced->rows, position, priced->count);
    MakeRoom(priced->costs, position, priced->count);
    MakeRoom(priced->entries, position, priced->count);
    ++priced->count;
    priced->rows[position] = row;
    priced->entries[position] = priced->spare[--priced->numSpare];
}

void RemovePriced(PricedRows* priced, NuvUint position)
{
    priced->spare[priced->numSpare++] = priced->entries[position];
    CloseGap(priced->rows, position, priced->count);
    CloseGap(priced->costs, position, priced->count);
    CloseGap(priced->entries, position, priced->count);
    --priced->count;
}

/// Lists a column among those that are stored.
void ListColumn(BasisInverse* x, NuvUint column, NuvUint slot)
{
    const NuvUint count = slot;
    NuvUint position = count;
    while (position != 0 && x->numbers[position - 1] > column)
        --position;
    MakeRoom(x->elements, position, count);
    MakeRoom(x->numbers, position, count);
    MakeRoom(x->slots, position, count);
    MakeRoom(x->storedB, position, count);
    x->elements[position] = x->columns[column];
    x->numbers[position] = column;
    x->slots[position] = slot;
    x->storedB[position] = x->unitB[column];
    x->unitB[column] = 0.0F;
}

/// Takes the entries of `row` for multipliers and leaves zeros in their place. Zero instead of the
/// old entry v makes the update eta(r) · v out of it: +0 + eta(r) · v is what the definition sums.
void TakeRow(BasisInverse* x, NuvUint row)
{
    NuvFloat32* entry = x->room + row;
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

/// Adds an update to the priced rows, and sums the prices of the stored columns.
void SumPrices(BasisInverse* x, const NuvFloat32* update, NuvFloat32* prices)
{
    const PricedRows* const priced = &x->priced;
    const FusedProduct sums = {priced->entries,
                               nullptr,
                               priced->count,
                               priced->eta,
                               update,
                               {priced->costs, nullptr, x->pricesBySlot},
                               {},
                               LengthInUse(x)};
    x->kernels->updateAndMultiply(&sums);
    for (NuvUint slot = 0; slot != x->numStored; ++slot)
        prices[x->columnOfSlot[slot]] = x->pricesBySlot[slot];
}

/// Brings the priced rows and the prices of the stored columns up to date. The unit columns keep
/// their prices: an update leaves them as they are but in the row that leaves, and stores that
/// one's column. Rows without a cost add ±0.
void UpdatePrices(BasisInverse* x, NuvFloat32* prices)
{
    PricedRows* const priced = &x->priced;
    for (NuvUint k = 0; k != priced->count; ++k)
        priced->eta[k] = x->eta[priced->rows[k]];
    SumPrices(x, x->multipliersBySlot, prices);
}

/// Takes the factors of the stored columns out of a vector, and leaves those of the unit columns.
void TakeStored(BasisInverse* x, NuvFloat32* vector)
{
    for (NuvUint k = 0; k != x->numStored; ++k)
    {
        NuvFloat32* const element = vector + x->numbers[k];
        x->storedVector[k] = *element;
        *element = 0.0F;
    }
}
}  // namespace

NuvSizeT PaddedLength(NuvSizeT count)
{
    const NuvSizeT length = InTiles(count);
    return length / tile % tile == 0 ? length + tile : length;
}

void LayOut(BasisInverse* x, NuvUint m, NuvUint maxPriced, Cutter* cutter)
{
    x->m = m;
    x->stride = PaddedLength(m);
    cutter->Take(&x->columns, m);
    cutter->Take(&x->columnOfSlot, m);
    cutter->Take(&x->priced.rows, maxPriced);
    cutter->Take(&x->priced.costs, maxPriced);
    cutter->Take(&x->priced.entries, maxPriced);
    cutter->Take(&x->priced.eta, maxPriced);
    cutter->Take(&x->priced.spare, maxPriced);
    x->priced.numSpare = maxPriced;
    cutter->Take(&x->elements, m);
    cutter->Take(&x->numbers, m);
    cutter->Take(&x->slots, m);
    for (NuvFloat32** const array : {&x->storedB, &x->unitB, &x->storedVector, &x->eta,
                                     &x->multipliers, &x->multipliersBySlot, &x->pricesBySlot})
        cutter->Take(array, x->stride);
    cutter->Take(&x->room, m * x->stride);
    cutter->Take(&x->priced.room, maxPriced * x->stride);
}

void SetToIdentity(BasisInverse* x)
{
    x->numStored = 0;
    x->isPending = false;
    NuvMemZero(x->columns, x->m * sizeof *x->columns);
    NuvMemCopy(x->unitB, x->b, x->stride * sizeof *x->unitB);
    NuvMemZero(x->multipliersBySlot, x->stride * sizeof *x->multipliersBySlot);
    PricedRows* const priced = &x->priced;
    priced->count = 0;
    // The rows that are taken first lie first.
    for (NuvUint k = 0; k != priced->numSpare; ++k)
        priced->spare[k] = priced->room + (priced->numSpare - 1 - k) * x->stride;
}

NuvFloat32* StoreColumn(BasisInverse* x, NuvUint column)
{
    if (x->columns[column])
        return x->columns[column];
    const NuvUint slot = x->numStored++;
    NuvFloat32* const elements = x->room + slot * x->stride;
    NuvMemZero(elements, x->stride * sizeof *elements);
    elements[column] = 1.0F;
    x->columns[column] = elements;
    x->columnOfSlot[slot] = column;
    ListColumn(x, column, slot);
    return elements;
}

NuvFloat32 EntryOf(const BasisInverse* x, NuvUint row, NuvUint column)
{
    if (x->columns[column])
        return x->columns[column][row];
    return row == column ? 1.0F : 0.0F;
}

void SetCost(BasisInverse* x, NuvUint row, NuvFloat32 cost)
{
    PricedRows* const priced = &x->priced;
    const NuvUint position = FindPriced(priced, row);
    const bool isPriced = position != priced->count && priced->rows[position] == row;
    if (cost == 0.0F)
    {
        if (isPriced)
            RemovePriced(priced, position);
        return;
    }
    if (!isPriced)
        InsertPriced(priced, position, row);
    priced->costs[position] = cost;
    // What is behind is zero since the row was first priced.
    const NuvSizeT length = isPriced ? LengthInUse(x) : x->stride;
    NuvMemZero(priced->entries[position], length * sizeof **priced->entries);
}

void ComputePrices(BasisInverse* x, NuvFloat32* prices)
{
    const PricedRows* const priced = &x->priced;
    NuvMemZero(prices, x->stride * sizeof *prices);
    // From here on no unit column has a price: it would be the cost of its own row.
    for (NuvUint k = 0; k != priced->count; ++k)
        (void)StoreColumn(x, priced->rows[k]);
    for (NuvUint k = 0; k != priced->count; ++k)
        for (NuvUint slot = 0; slot != x->numStored; ++slot)
            priced->entries[k][slot] = x->columns[x->columnOfSlot[slot]][priced->rows[k]];
    SumPrices(x, nullptr, prices);
}

void MultiplyByInverse(BasisInverse* x, NuvFloat32* values, NuvFloat32* vector, NuvFloat32* result)
{
    ColumnProduct other = {};
    if (vector)
    {
        TakeStored(x, vector);
        other = {x->storedVector, vector, result};
    }
    const FusedProduct product = {x->elements,
                                  x->numbers,
                                  x->numStored,
                                  x->multipliers,
                                  x->isPending ? x->eta : nullptr,
                                  {x->storedB, x->unitB, values},
                                  other,
                                  InTiles(x->m)};
    x->kernels->updateAndMultiply(&product);
    x->isPending = false;
}

bool FormEta(BasisInverse* x, const NuvFloat32* direction, NuvUint row)
{
    // The eta matrix is I − ((d − e) · eᵀ) · p with p = 1 / d(r). For finite d and p all of it but
    // column r is the identity's, as (d − e) · 0 = ±0 and 0 − (±0 · p) = 0.
    const NuvFloat32 reciprocal = 1.0F / direction[row];
    const bool isFinite = x->kernels->formEta(direction, reciprocal, x->eta, x->stride);
    // 1 − (d(r) − 1) · p is finite where d(r) · p is: for a small d(r) it is 1 + p, else near 2^25
    // at most.
    x->eta[row] = 1.0F - (direction[row] - 1.0F) * reciprocal;
    return isFinite;
}

void Update(BasisInverse* x, NuvUint row, NuvFloat32 cost, NuvFloat32* prices)
{
    (void)StoreColumn(x, row);
    TakeRow(x, row);
    SetCost(x, row, cost);
    UpdatePrices(x, prices);
    x->pivotRow = row;
    x->isPending = true;
}
}  // namespace nuv
