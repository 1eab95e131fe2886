// The steps on the inverse of the fast road, each with the proof that it gives the bits of the
// definition: sums over all m terms in increasing index, from +0, and a dense eta matrix.
#include "Nuv/Utils/Simplex/BasisInverse.h"

#include <initializer_list>

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/NuvStdCLibInline.h"
#include "Nuv/Utils/Kernels/Zeros.inl"

namespace nuv
{
namespace
{
constexpr NuvUint tile = Kernels::tile;

/// Up to this length an update is taken to change everything: to look costs more than it saves.
constexpr NuvSizeT maxUnseen = 64;

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

/// Lists what is missing in the last block of stored columns.
void FillBlock(BasisInverse* x)
{
    StoredColumns* const stored = &x->stored;
    const NuvUint last = x->numStored - 1;
    stored->count =
        (x->numStored + StoredColumns::block - 1) / StoredColumns::block * StoredColumns::block;
    for (NuvSizeT k = x->numStored; k != stored->count; ++k)
    {
        stored->elements[k] = x->noColumn;
        stored->numbers[k] = stored->numbers[last];
        stored->firsts[k] = stored->numbers[last];
        stored->gaps[k] = 0;
        x->storedB[k] = 0.0F;
        x->storedVector[k] = 0.0F;
        x->multipliers[k] = 0.0F;
    }
}

/// Lists a column among those that are stored.
void ListColumn(BasisInverse* x, NuvUint column, NuvUint slot)
{
    StoredColumns* const stored = &x->stored;
    const NuvUint count = slot;
    NuvUint position = count;
    while (position != 0 && stored->numbers[position - 1] > column)
        --position;
    MakeRoom(stored->elements, position, count);
    MakeRoom(stored->numbers, position, count);
    MakeRoom(stored->firsts, position, count);
    MakeRoom(stored->gaps, position, count);
    MakeRoom(x->slots, position, count);
    MakeRoom(x->storedB, position, count);
    const NuvUint first = position == 0 ? 0 : stored->numbers[position - 1] + 1;
    stored->elements[position] = x->columns[column];
    stored->numbers[position] = column;
    stored->firsts[position] = first;
    stored->gaps[position] = column - first;
    if (position != count)
    {
        stored->firsts[position + 1] = column + 1;
        stored->gaps[position + 1] = stored->numbers[position + 1] - column - 1;
    }
    for (NuvSizeT t = column / tile + 1; t <= x->stride / tile; ++t)
        ++stored->below[t];
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

/// Adds the update to the priced rows in the tiles from `first` to `last`, and sums their prices.
void UpdatePricesOf(BasisInverse* x, NuvSizeT first, NuvSizeT last, NuvFloat32* prices)
{
    const PricedRows* const priced = &x->priced;
    const Walk walk = {priced->entries, priced->count,   priced->eta, x->multipliersBySlot,
                       priced->costs,   x->pricesBySlot, first,       last};
    x->kernels->walk(&walk);
    const NuvSizeT end = last < x->numStored ? last : x->numStored;
    for (NuvSizeT slot = first; slot < end; ++slot)
        prices[x->columnOfSlot[slot]] = x->pricesBySlot[slot];
}

NuvSizeT LengthInUse(const BasisInverse* x)
{
    return InTiles(x->numStored);
}

/// Brings the priced rows and the prices of the stored columns up to date. A column whose
/// multiplier is 0 keeps its entries, and holds 0 in the row of the pivot, whose cost alone
/// changes: the same terms are summed. The unit columns keep their prices too: an update leaves
/// them as they are but in the row that leaves, and stores that one's column. Rows without a cost
/// add ±0, and so do costs in rows where a column holds 0.
void UpdatePrices(BasisInverse* x, NuvFloat32* prices)
{
    PricedRows* const priced = &x->priced;
    for (NuvUint k = 0; k != priced->count; ++k)
        priced->eta[k] = x->eta[priced->rows[k]];
    const NuvSizeT length = LengthInUse(x);
    NuvSizeT first = 0;
    const bool isLong = length > maxUnseen && switches.tileSkipping;
    for (NuvSizeT next = 0; isLong && next != length; next += tile)
    {
        if (HasNonzero<tile>(x->multipliersBySlot + next))
            continue;
        if (first != next)
            UpdatePricesOf(x, first, next, prices);
        first = next + tile;
    }
    if (first != length)
        UpdatePricesOf(x, first, length, prices);
}

/// Whether the pending update changes rows of a tile. Where eta is 0 it adds ±0, and only in its
/// own row are there zeros in place of the old entries.
bool IsTouched(const BasisInverse* x, NuvSizeT first)
{
    return !x->isPending || x->pivotRow / tile == first / tile || HasNonzero<tile>(x->eta + first);
}

/// The places of the non-zeros of a vector that has few of them.
struct FewNonzeros
{
    static constexpr NuvUint most = 4;

    NuvUint count;
    NuvUint places[most];
};

/// @return whether the vector has but few.
bool FindFewNonzeros(const NuvFloat32* vector, NuvUint length, FewNonzeros* found)
{
    found->count = 0;
    for (NuvUint i = 0; i < length; ++i)
    {
        if (i % tile == 0 && !HasNonzero<tile>(vector + i))
        {
            i += tile - 1;
            continue;
        }
        if (vector[i] == 0.0F)
            continue;
        if (found->count == FewNonzeros::most)
            return false;
        found->places[found->count++] = i;
    }
    return true;
}

/// result = inverse · vector with no update pending, one column after the other: x − y · (−z) is
/// x + y · z, as the rounding of a product does not depend on its sign.
void MultiplyByFew(const BasisInverse* x, const NuvFloat32* vector, const FewNonzeros* few,
                   NuvFloat32* result)
{
    NuvMemZero(result, x->stride * sizeof *result);
    for (NuvUint k = 0; k != few->count; ++k)
    {
        const NuvUint column = few->places[k];
        if (x->columns[column])
            x->kernels->subtractMultiple(result, x->columns[column], -vector[column], x->stride);
        else
            result[column] = result[column] + vector[column];
    }
}

/// Takes the factors of the stored columns out of a vector, and leaves those of the unit columns.
void TakeStored(BasisInverse* x, NuvFloat32* vector)
{
    for (NuvUint k = 0; k != x->numStored; ++k)
    {
        NuvFloat32* const element = vector + x->stored.numbers[k];
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
    cutter->Take(&x->stored.elements, x->stride);
    cutter->Take(&x->stored.numbers, x->stride);
    cutter->Take(&x->stored.firsts, x->stride);
    cutter->Take(&x->stored.gaps, x->stride);
    cutter->Take(&x->stored.below, x->stride / tile + 1);
    cutter->Take(&x->slots, x->stride);
    for (NuvFloat32** const array :
         {&x->storedB, &x->unitB, &x->noColumn, &x->storedVector, &x->eta, &x->multipliers,
          &x->multipliersBySlot, &x->pricesBySlot})
        cutter->Take(array, x->stride);
    cutter->Take(&x->room, m * x->stride);
    cutter->Take(&x->priced.room, maxPriced * x->stride);
}

void SetToIdentity(BasisInverse* x)
{
    x->numStored = 0;
    x->stored.count = 0;
    NuvMemZero(x->stored.below, (x->stride / tile + 1) * sizeof *x->stored.below);
    x->isPending = false;
    NuvMemZero(x->columns, x->m * sizeof *x->columns);
    NuvMemCopy(x->unitB, x->b, x->stride * sizeof *x->unitB);
    NuvMemZero(x->noColumn, x->stride * sizeof *x->noColumn);
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
    FillBlock(x);
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
    NuvMemZero(priced->eta, priced->count * sizeof *priced->eta);
    if (x->numStored != 0)
        UpdatePricesOf(x, 0, LengthInUse(x), prices);
}

void MultiplyByInverse(BasisInverse* x, NuvFloat32* values, NuvFloat32* vector, NuvFloat32* result)
{
    const NuvSizeT length = InTiles(x->m);
    const ColumnProduct none = {nullptr, nullptr, nullptr};
    ColumnProduct product = {x->storedB, x->unitB, nullptr};
    product.sums = values;
    ColumnProduct other = none;
    FewNonzeros few;
    const bool isShort = length <= maxUnseen || !switches.tileSkipping;
    const bool hasFew =
        vector && switches.fewNonzeros && length > maxUnseen && FindFewNonzeros(vector, x->m, &few);
    if (vector && !hasFew)
    {
        TakeStored(x, vector);
        other = {x->storedVector, vector, result};
    }
    for (NuvSizeT first = 0, last; first != length; first = last)
    {
        const bool isTouched = isShort || IsTouched(x, first);
        last = isShort ? length : first + tile;
        while (last != length && IsTouched(x, last) == isTouched)
            last += tile;
        // Rows that no update has changed have the values that they had.
        const ColumnWalk walk = {x->stored,
                                 x->multipliers,
                                 x->isPending && isTouched ? x->eta : nullptr,
                                 isTouched ? product : other,
                                 isTouched ? other : none,
                                 first,
                                 last};
        if (walk.product.factors)
            x->kernels->walkColumns(&walk);
    }
    x->isPending = false;
    if (hasFew)
        MultiplyByFew(x, vector, &few, result);
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
