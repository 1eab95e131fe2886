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
constexpr NuvUint wholeTile = (1U << tile) - 1;

bool IsStoredColumn(const BasisInverse* x, NuvUint column)
{
    return (x->stored[column / tile] >> column % tile & 1U) != 0;
}

NuvFloat32* ColumnAt(const BasisInverse* x, NuvUint slot)
{
    return x->columns + slot * x->stride;
}

/// One tile of columns on its way through a walk.
struct TileWalk
{
    BasisInverse* inverse;
    const NuvFloat32* x;
    NuvFloat32* resultX;
    const NuvFloat32* y;
    NuvFloat32* resultY;

    NuvUint first;
    NuvUint count;
    bool hasUpdate;
    bool hasY;
    NuvFloat32* vectors[tile];
    NuvFloat32 multipliers[tile];
    NuvFloat32 weightsX[tile];
    NuvFloat32 weightsY[tile];
};

void Append(TileWalk* walk, NuvFloat32* vector, NuvFloat32 multiplier, NuvUint column)
{
    walk->vectors[walk->count] = vector;
    walk->multipliers[walk->count] = multiplier;
    walk->weightsX[walk->count] = walk->x[column];
    walk->weightsY[walk->count] = walk->hasY ? walk->y[column] : 0.0F;
    ++walk->count;
}

/// Walks the rows [first, last) behind `base`, from where the gathered vectors begin.
void Run(const TileWalk* w, NuvSizeT base, NuvSizeT first, NuvSizeT last)
{
    const Kernels* const kernels = w->inverse->kernels;
    const NuvFloat32* const eta = w->inverse->eta + base;
    NuvFloat32* const x = w->resultX + base;
    if (w->hasUpdate && w->hasY)
        kernels->updateAndAddToTwo(w->vectors, w->multipliers, eta, w->weightsX, w->weightsY,
                                   w->count, x, w->resultY + base, first, last);
    else if (w->hasUpdate)
        kernels->updateAndAdd(w->vectors, w->multipliers, eta, w->weightsX, w->count, x, first,
                              last);
    else if (w->hasY)
        kernels->addMultiplesToTwo(w->vectors, w->weightsX, w->weightsY, w->count, x,
                                   w->resultY + base, first, last);
    else
        kernels->addMultiples(w->vectors, w->weightsX, w->count, x, first, last);
}

bool HasNonzero(const NuvFloat32* x)
{
    bool hasNonzero = false;
    for (NuvUint i = 0; i != tile; ++i)
        hasNonzero |= x[i] != 0.0F;
    return hasNonzero;
}

/// A unit column has only its 1 to add, in its own row.
void AddUnitColumns(TileWalk* walk)
{
    for (NuvUint i = walk->first; i != walk->first + tile; ++i)
    {
        walk->resultX[i] = walk->resultX[i] + walk->x[i];
        if (walk->hasY)
            walk->resultY[i] = walk->resultY[i] + walk->y[i];
    }
}

/// Gathers the tile's stored columns from row `base` on.
void GatherStored(TileWalk* walk, NuvUint base)
{
    const BasisInverse* const inverse = walk->inverse;
    walk->count = 0;
    walk->hasUpdate = false;
    NuvUint bits = inverse->stored[walk->first / tile];
    for (NuvUint column = walk->first; bits != 0; ++column, bits >>= 1U)
    {
        if ((bits & 1U) == 0)
            continue;
        const NuvUint slot = inverse->slotOf[column];
        const NuvFloat32 multiplier = inverse->isPending ? inverse->multipliers[slot] : 0.0F;
        walk->hasUpdate |= multiplier != 0.0F;
        Append(walk, ColumnAt(inverse, slot) + base, multiplier, column);
    }
}

/// Gathers all of the tile's columns from the tile's own rows on; the unit columns among them stand
/// as a tile of the identity.
void GatherAll(TileWalk* walk)
{
    const BasisInverse* const inverse = walk->inverse;
    const NuvUint bits = inverse->stored[walk->first / tile];
    walk->count = 0;
    for (NuvUint k = 0; k != tile; ++k)
    {
        const NuvUint column = walk->first + k;
        const bool isStored = (bits >> k & 1U) != 0;
        const NuvUint slot = isStored ? inverse->slotOf[column] : 0;
        Append(walk,
               isStored ? ColumnAt(inverse, slot) + walk->first : inverse->unitTile + k * tile,
               isStored && inverse->isPending ? inverse->multipliers[slot] : 0.0F, column);
    }
}

/// Adds what a tile of columns has to add. In each row the columns come in increasing order: only
/// in the tile's own rows do unit columns stand between the stored ones.
void WalkTile(TileWalk* walk)
{
    const NuvUint bits = walk->inverse->stored[walk->first / tile];
    const NuvSizeT stride = walk->inverse->stride;
    walk->hasY = walk->y && HasNonzero(walk->y + walk->first);
    if (bits == 0)
    {
        AddUnitColumns(walk);
        return;
    }
    GatherStored(walk, 0);
    if (bits == wholeTile)
    {
        Run(walk, 0, 0, stride);
        return;
    }
    Run(walk, 0, 0, walk->first);
    Run(walk, 0, walk->first + tile, stride);
    GatherAll(walk);
    Run(walk, walk->first, 0, tile);
}

/// The position of the first priced row that is not before `row`.
NuvUint FindPriced(const BasisInverse* x, NuvUint row)
{
    NuvUint first = 0;
    NuvUint last = x->numPriced;
    while (first != last)
    {
        const NuvUint middle = first + (last - first) / 2;
        if (x->priced[middle].row < row)
            first = middle + 1;
        else
            last = middle;
    }
    return first;
}

/// Takes the entries of `row` for multipliers and leaves zeros in their place. Zero instead of the
/// old entry v makes the update eta(r) · v out of it: +0 + eta(r) · v is what the definition sums.
void TakeRow(BasisInverse* x, NuvUint row)
{
    for (NuvUint slot = 0; slot != x->numStored; ++slot)
    {
        NuvFloat32* const entry = ColumnAt(x, slot) + row;
        x->multipliers[slot] = *entry;
        *entry = 0.0F;
    }
}

/// Adds the update to the priced rows and sums the prices of the stored columns anew. The others
/// keep theirs: an update leaves a unit column as it is but in the row that leaves, and stores that
/// one's column. Rows without a cost add ±0, and so do costs in rows where a column holds 0.
void UpdatePrices(BasisInverse* x, NuvFloat32* prices)
{
    for (NuvUint k = 0; k != x->numPriced; ++k)
    {
        x->vectors[k] = x->priced[k].entries;
        x->weights[k] = x->priced[k].cost;
        x->etaOfPriced[k] = x->eta[x->priced[k].row];
    }
    const NuvSizeT length = (x->numStored + tile - 1) / tile * tile;
    NuvMemZero(x->pricesBySlot, length * sizeof *x->pricesBySlot);
    x->kernels->updateAndAdd(x->vectors, x->etaOfPriced, x->multipliers, x->weights, x->numPriced,
                             x->pricesBySlot, 0, length);
    for (NuvUint slot = 0; slot != x->numStored; ++slot)
        prices[x->columnOf[slot]] = x->pricesBySlot[slot];
}
}  // namespace

NuvSizeT PaddedLength(NuvSizeT count)
{
    return ((count + tile - 1) / tile | 1U) * tile;
}

void LayOut(BasisInverse* x, NuvUint m, NuvUint maxPriced, Cutter* cutter)
{
    x->m = m;
    x->stride = PaddedLength(m);
    x->numSpare = maxPriced;
    cutter->Take(&x->slotOf, m);
    cutter->Take(&x->columnOf, m);
    cutter->Take(&x->stored, x->stride / tile);
    cutter->Take(&x->priced, maxPriced);
    cutter->Take(&x->spare, maxPriced);
    cutter->Take(&x->eta, x->stride);
    cutter->Take(&x->multipliers, x->stride);
    cutter->Take(&x->unitTile, tile * tile);
    cutter->Take(&x->vectors, maxPriced);
    cutter->Take(&x->weights, x->stride);
    cutter->Take(&x->etaOfPriced, x->stride);
    cutter->Take(&x->pricesBySlot, x->stride);
    cutter->Take(&x->columns, m * x->stride);
    cutter->Take(&x->rows, maxPriced * x->stride);
}

void SetToIdentity(BasisInverse* x)
{
    x->numStored = 0;
    x->numPriced = 0;
    x->isPending = false;
    NuvMemZero(x->stored, x->stride / tile * sizeof *x->stored);
    NuvMemZero(x->multipliers, x->stride * sizeof *x->multipliers);
    NuvMemZero(x->unitTile, tile * tile * sizeof *x->unitTile);
    for (NuvUint i = 0; i != tile; ++i)
        x->unitTile[i * tile + i] = 1.0F;
    // The rows that are taken first lie first.
    for (NuvUint k = 0; k != x->numSpare; ++k)
        x->spare[k] = x->rows + (x->numSpare - 1 - k) * x->stride;
}

NuvFloat32* StoreColumn(BasisInverse* x, NuvUint column)
{
    const NuvUint slot = x->numStored++;
    x->slotOf[column] = slot;
    x->columnOf[slot] = column;
    x->stored[column / tile] |= 1U << column % tile;
    NuvFloat32* const entries = ColumnAt(x, slot);
    NuvMemZero(entries, x->stride * sizeof *entries);
    entries[column] = 1.0F;
    return entries;
}

NuvFloat32 EntryOf(const BasisInverse* x, NuvUint row, NuvUint column)
{
    if (IsStoredColumn(x, column))
        return ColumnAt(x, x->slotOf[column])[row];
    return row == column ? 1.0F : 0.0F;
}

void SetCost(BasisInverse* x, NuvUint row, NuvFloat32 cost)
{
    const NuvUint position = FindPriced(x, row);
    PricedRow* const at = x->priced + position;
    const bool isPriced = position != x->numPriced && at->row == row;
    const NuvSizeT following = (x->numPriced - position) * sizeof *at;
    if (cost != 0.0F && !isPriced)
    {
        NuvMemMove(at + 1, at, following);
        ++x->numPriced;
        *at = {row, cost, x->spare[--x->numSpare]};
    }
    else if (cost == 0.0F && isPriced)
    {
        x->spare[x->numSpare++] = at->entries;
        NuvMemMove(at, at + 1, following - sizeof *at);
        --x->numPriced;
        return;
    }
    else if (cost == 0.0F)
        return;
    at->cost = cost;
    NuvMemZero(at->entries, x->stride * sizeof *at->entries);
}

void MultiplyByInverse(BasisInverse* x, const NuvFloat32* vector, NuvFloat32* result,
                       const NuvFloat32* otherVector, NuvFloat32* otherResult)
{
    TileWalk walk;
    walk.inverse = x;
    walk.x = vector;
    walk.resultX = result;
    walk.y = otherVector;
    walk.resultY = otherResult;
    NuvMemZero(result, x->stride * sizeof *result);
    if (otherVector)
        NuvMemZero(otherResult, x->stride * sizeof *otherResult);
    for (walk.first = 0; walk.first < x->m; walk.first += tile)
        WalkTile(&walk);
    x->isPending = false;
}

bool FormEta(BasisInverse* x, const NuvFloat32* direction, NuvUint row)
{
    // The eta matrix is I − ((d − e) · eᵀ) · p with p = 1 / d(r). For finite d and p all of it but
    // column r is the identity's, as (d − e) · 0 = ±0 and 0 − (±0 · p) = 0.
    const NuvFloat32 reciprocal = 1.0F / direction[row];
    const bool isFinite = x->kernels->formEta(direction, reciprocal, x->eta, x->stride);
    const NuvFloat32 pivot = 1.0F - (direction[row] - 1.0F) * reciprocal;
    x->eta[row] = pivot;
    return isFinite && pivot * 0.0F == 0.0F;
}

void ComputePrices(BasisInverse* x, NuvFloat32* prices)
{
    NuvMemZero(prices, x->stride * sizeof *prices);
    for (NuvUint k = 0; k != x->numPriced; ++k)
    {
        const PricedRow* const priced = x->priced + k;
        if (!IsStoredColumn(x, priced->row))
            prices[priced->row] = 0.0F + priced->cost;
        for (NuvUint slot = 0; slot != x->numStored; ++slot)
            priced->entries[slot] = ColumnAt(x, slot)[priced->row];
    }
    NuvMemZero(x->multipliers, x->stride * sizeof *x->multipliers);
    NuvMemZero(x->eta, x->stride * sizeof *x->eta);
    UpdatePrices(x, prices);
}

void Update(BasisInverse* x, NuvUint row, NuvFloat32 cost, NuvFloat32* prices)
{
    if (!IsStoredColumn(x, row))
        (void)StoreColumn(x, row);
    TakeRow(x, row);
    SetCost(x, row, cost);
    UpdatePrices(x, prices);
    x->isPending = true;
}
}  // namespace nuv
