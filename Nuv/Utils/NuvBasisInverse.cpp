// The steps on the inverse of the fast road, each with the proof that it gives the bits of the
// definition: sums over all m terms in increasing index, from +0, and a dense eta matrix.
#include "Nuv/Utils/NuvBasisInverse.h"

#include "Nuv/Utils/NuvFloatContract.h"
#include "Nuv/Utils/NuvStdCLibInline.h"

namespace nuv
{
namespace
{
constexpr NuvUint tile = Kernels::tile;

/// Up to this dimension all columns are stored from the beginning, each in the slot of its number:
/// walking a few more costs less than telling them apart.
constexpr NuvUint maxStoredAtOnce = 128;

bool IsStoredAtOnce(const BasisInverse* x)
{
    return x->m <= maxStoredAtOnce;
}

bool IsStoredColumn(const BasisInverse* x, NuvUint column)
{
    return (x->stored[column / tile] >> column % tile & 1U) != 0;
}

/// The bits of a tile all of whose columns are stored.
NuvUint WholeTile(const BasisInverse* x, NuvUint first)
{
    const NuvUint left = x->m - first;
    return left < tile ? (1U << left) - 1 : (1U << tile) - 1;
}

/// Whether a tile has an element that is not ±0: any bit but the signs.
bool HasNonzero(const NuvFloat32* x)
{
    NuvUint bits[tile];
    NuvMemCopy(bits, x, sizeof bits);
    NuvUint any = 0;
    for (const NuvUint element : bits)
        any |= element << 1U;
    return any != 0;
}

/// A walk over the columns of the inverse, from the first tile to the last: in each row the columns
/// come in increasing order, as the definition sums them.
struct ColumnWalk
{
    BasisInverse* inverse;
    const NuvFloat32* x;
    NuvFloat32* resultX;
    const NuvFloat32* y;
    NuvFloat32* resultY;

    NuvUint first;
    bool hasUpdate;
    bool hasY;
};

/// Finds out what there is to do in a tile. A column whose multiplier is 0 is not changed by the
/// update, and an element of y that is 0 adds ±0.
void LookAtTile(ColumnWalk* w)
{
    w->hasUpdate = w->inverse->isPending && HasNonzero(w->inverse->multipliers + w->first);
    w->hasY = w->y && HasNonzero(w->y + w->first);
}

/// The walk over columns that are given with their multipliers and factors; y may be null.
Walk WalkOver(const ColumnWalk* w, NuvFloat32* const* vectors, NuvSizeT count,
              const NuvFloat32* multipliers, const NuvFloat32* x, const NuvFloat32* y)
{
    return {vectors,     count,
            multipliers, w->hasUpdate ? w->inverse->eta : nullptr,
            x,           w->resultX,
            y,           w->resultY,
            0,           w->inverse->stride,
            false};
}

/// The tile at `first` and those after it that are wholly stored and ask for the same.
/// @return the column after them.
NuvUint WalkWholeTiles(ColumnWalk* w)
{
    const BasisInverse* const inverse = w->inverse;
    const NuvUint first = w->first;
    const bool hasUpdate = w->hasUpdate;
    const bool hasY = w->hasY;
    NuvUint end = first;
    do
    {
        end += tile;
        w->first = end;
        if (end >= inverse->m || inverse->stored[end / tile] != WholeTile(inverse, end))
            break;
        LookAtTile(w);
    } while (w->hasUpdate == hasUpdate && w->hasY == hasY);
    w->hasUpdate = hasUpdate;
    w->hasY = hasY;
    const NuvUint past = end < inverse->m ? end : inverse->m;
    const Walk walk =
        WalkOver(w, inverse->columns + first, past - first, inverse->multipliers + first,
                 w->x + first, w->hasY ? w->y + first : nullptr);
    inverse->kernels->walk(&walk);
    return end;
}

/// A unit column has only its 1 to add, in its own row.
void AddUnitColumns(ColumnWalk* w)
{
    for (NuvUint i = w->first; i != w->first + tile; ++i)
        w->resultX[i] = w->resultX[i] + w->x[i];
    for (NuvUint i = w->first; w->hasY && i != w->first + tile; ++i)
        w->resultY[i] = w->resultY[i] + w->y[i];
}

/// A tile of some stored columns and some unit columns. The latter stand between the former in the
/// tile's own rows, where they are read from a tile of the identity; elsewhere they add ±0.
void WalkMixedTile(const ColumnWalk* w)
{
    const BasisInverse* const inverse = w->inverse;
    const NuvUint first = w->first;
    NuvFloat32* vectors[tile];
    NuvFloat32 multipliers[tile];
    NuvFloat32 x[tile];
    NuvFloat32 y[tile];
    NuvUint count = 0;
    NuvUint bits = inverse->stored[first / tile];
    for (NuvUint column = first; bits != 0; ++column, bits >>= 1U)
    {
        if ((bits & 1U) == 0)
            continue;
        vectors[count] = inverse->columns[column];
        multipliers[count] = inverse->multipliers[column];
        x[count] = w->x[column];
        y[count] = w->hasY ? w->y[column] : 0.0F;
        ++count;
    }
    Walk walk = WalkOver(w, vectors, count, multipliers, x, w->hasY ? y : nullptr);
    walk.last = first;
    inverse->kernels->walk(&walk);
    walk.first = first + tile;
    walk.last = inverse->stride;
    inverse->kernels->walk(&walk);

    for (NuvUint k = 0; k != tile; ++k)
        vectors[k] = IsStoredColumn(inverse, first + k) ? inverse->columns[first + k] + first
                                                        : inverse->unitTile + k * tile;
    walk = WalkOver(w, vectors, tile, inverse->multipliers + first, w->x + first,
                    w->hasY ? w->y + first : nullptr);
    walk.update = w->hasUpdate ? inverse->eta + first : nullptr;
    walk.sumsX = w->resultX + first;
    walk.sumsY = w->hasY ? w->resultY + first : nullptr;
    walk.last = tile;
    inverse->kernels->walk(&walk);
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

/// Takes the entries of `row` for multipliers and leaves zeros in their place. Zero instead of the
/// old entry v makes the update eta(r) · v out of it: +0 + eta(r) · v is what the definition sums.
void TakeRow(BasisInverse* x, NuvUint row)
{
    if (IsStoredAtOnce(x))
    {
        for (NuvUint column = 0; column != x->m; ++column)
        {
            NuvFloat32* const entry = x->columns[column] + row;
            x->multipliers[column] = *entry;
            *entry = 0.0F;
        }
        return;
    }
    for (NuvUint slot = 0; slot != x->numStored; ++slot)
    {
        const NuvUint column = x->columnOfSlot[slot];
        NuvFloat32* const entry = x->columns[column] + row;
        x->multipliers[column] = *entry;
        x->multipliersBySlot[slot] = *entry;
        *entry = 0.0F;
    }
}

/// Adds the update to the priced rows in the tiles from `first` to `last`, and sums their prices.
void UpdatePricesOf(BasisInverse* x, NuvSizeT first, NuvSizeT last, NuvFloat32* prices)
{
    const PricedRows* const priced = &x->priced;
    const bool isInPlace = IsStoredAtOnce(x);
    const Walk walk = {priced->entries,
                       priced->count,
                       priced->eta,
                       isInPlace ? x->multipliers : x->multipliersBySlot,
                       priced->costs,
                       isInPlace ? prices : x->pricesBySlot,
                       nullptr,
                       nullptr,
                       first,
                       last,
                       true};
    x->kernels->walk(&walk);
    const NuvSizeT end = last < x->numStored ? last : x->numStored;
    for (NuvSizeT slot = first; !isInPlace && slot < end; ++slot)
        prices[x->columnOfSlot[slot]] = x->pricesBySlot[slot];
}

NuvSizeT LengthInUse(const BasisInverse* x)
{
    return (x->numStored + tile - 1) / tile * tile;
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
    if (IsStoredAtOnce(x))
    {
        UpdatePricesOf(x, 0, length, prices);
        return;
    }
    NuvSizeT first = 0;
    for (NuvSizeT next = 0; next != length; next += tile)
    {
        if (HasNonzero(x->multipliersBySlot + next))
            continue;
        if (first != next)
            UpdatePricesOf(x, first, next, prices);
        first = next + tile;
    }
    if (first != length)
        UpdatePricesOf(x, first, length, prices);
}
}  // namespace

NuvSizeT PaddedLength(NuvSizeT count)
{
    const NuvSizeT tiles = (count + tile - 1) / tile;
    return (tiles % tile == 0 ? tiles + 1 : tiles) * tile;
}

void LayOut(BasisInverse* x, NuvUint m, NuvUint maxPriced, Cutter* cutter)
{
    x->m = m;
    x->stride = PaddedLength(m);
    cutter->Take(&x->columns, m);
    cutter->Take(&x->stored, x->stride / tile);
    cutter->Take(&x->columnOfSlot, m);
    cutter->Take(&x->priced.rows, maxPriced);
    cutter->Take(&x->priced.costs, maxPriced);
    cutter->Take(&x->priced.entries, maxPriced);
    cutter->Take(&x->priced.eta, maxPriced);
    cutter->Take(&x->priced.spare, maxPriced);
    x->priced.numSpare = maxPriced;
    cutter->Take(&x->eta, x->stride);
    cutter->Take(&x->multipliers, x->stride);
    cutter->Take(&x->multipliersBySlot, x->stride);
    cutter->Take(&x->pricesBySlot, x->stride);
    cutter->Take(&x->unitTile, tile * tile);
    cutter->Take(&x->room, m * x->stride);
    cutter->Take(&x->priced.room, maxPriced * x->stride);
}

void SetToIdentity(BasisInverse* x)
{
    x->numStored = 0;
    x->isPending = false;
    NuvMemZero(x->stored, x->stride / tile * sizeof *x->stored);
    NuvMemZero(x->multipliers, x->stride * sizeof *x->multipliers);
    PricedRows* const priced = &x->priced;
    priced->count = 0;
    // The rows that are taken first lie first.
    for (NuvUint k = 0; k != priced->numSpare; ++k)
        priced->spare[k] = priced->room + (priced->numSpare - 1 - k) * x->stride;
    if (IsStoredAtOnce(x))
    {
        for (NuvUint column = 0; column != x->m; ++column)
            (void)StoreColumn(x, column);
        return;
    }
    NuvMemZero(x->multipliersBySlot, x->stride * sizeof *x->multipliersBySlot);
    NuvMemZero(x->unitTile, tile * tile * sizeof *x->unitTile);
    for (NuvUint i = 0; i != tile; ++i)
        x->unitTile[i * tile + i] = 1.0F;
}

NuvFloat32* StoreColumn(BasisInverse* x, NuvUint column)
{
    if (IsStoredColumn(x, column))
        return x->columns[column];
    NuvFloat32* const entries = x->room + x->numStored * x->stride;
    x->columns[column] = entries;
    x->columnOfSlot[x->numStored++] = column;
    x->stored[column / tile] |= 1U << column % tile;
    NuvMemZero(entries, x->stride * sizeof *entries);
    entries[column] = 1.0F;
    return entries;
}

NuvFloat32 EntryOf(const BasisInverse* x, NuvUint row, NuvUint column)
{
    if (IsStoredColumn(x, column))
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
    NuvMemZero(priced->entries[position], x->stride * sizeof **priced->entries);
}

void ComputePrices(BasisInverse* x, NuvFloat32* prices)
{
    const PricedRows* const priced = &x->priced;
    NuvMemZero(prices, x->stride * sizeof *prices);
    for (NuvUint k = 0; k != priced->count; ++k)
    {
        const NuvUint row = priced->rows[k];
        if (!IsStoredColumn(x, row))
            prices[row] = 0.0F + priced->costs[k];
        for (NuvUint slot = 0; slot != x->numStored; ++slot)
            priced->entries[k][slot] = x->columns[x->columnOfSlot[slot]][row];
    }
    NuvMemZero(priced->eta, priced->count * sizeof *priced->eta);
    if (x->numStored != 0)
        UpdatePricesOf(x, 0, LengthInUse(x), prices);
}

void MultiplyByInverse(BasisInverse* x, const NuvFloat32* vector, NuvFloat32* result,
                       const NuvFloat32* otherVector, NuvFloat32* otherResult)
{
    if (IsStoredAtOnce(x))
    {
        const Walk walk = {x->columns,
                           x->m,
                           x->multipliers,
                           x->isPending ? x->eta : nullptr,
                           vector,
                           result,
                           otherVector,
                           otherResult,
                           0,
                           x->stride,
                           true};
        x->kernels->walk(&walk);
        x->isPending = false;
        return;
    }
    NuvMemZero(result, x->stride * sizeof *result);
    if (otherVector)
        NuvMemZero(otherResult, x->stride * sizeof *otherResult);
    ColumnWalk walk = {x, vector, result, otherVector, otherResult, 0, false, false};
    while (walk.first < x->m)
    {
        LookAtTile(&walk);
        const NuvUint bits = x->stored[walk.first / tile];
        if (bits == WholeTile(x, walk.first))
        {
            walk.first = WalkWholeTiles(&walk);
            continue;
        }
        if (bits == 0)
            AddUnitColumns(&walk);
        else
            WalkMixedTile(&walk);
        walk.first += tile;
    }
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
    x->isPending = true;
}
}  // namespace nuv
