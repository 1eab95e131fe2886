// The walk along the columns of a matrix most of whose columns are the identity's. Few rows are
// walked tile by tile, past all columns; many along a few columns at a time, whose elements lie in
// a row. Either way a row's own column, if it is the identity's, adds its factor in its turn. In
// all other rows it would add ±0, as numbers are finite, and is left out.
#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Kernels/Lanes.inl"
#include "Nuv/Utils/Kernels/Switches.h"
#include "Nuv/Utils/Kernels/Zeros.inl"

namespace nuv
{
namespace
{
/// How many vectors are walked side by side: as many as there are registers for.
constexpr NuvSizeT vectorsAtOnce = lanes == 16 ? 8 : 4;

/// Up to so many rows are walked tile by tile.
constexpr NuvSizeT maxTiled = 4 * Kernels::tile;

/// Some rows or columns of a matrix.
struct Range
{
    NuvSizeT first;
    NuvSizeT last;
};

/// The whole vectors of lanes that hold the rows, among those of the walk.
Range LanesOver(const ColumnWalk& w, Range rows)
{
    const NuvSizeT first = rows.first / lanes * lanes;
    const NuvSizeT last = (rows.last + lanes - 1) / lanes * lanes;
    if (rows.first >= rows.last || last <= w.first || first >= w.last)
        return {w.last, w.last};
    return {first > w.first ? first : w.first, last < w.last ? last : w.last};
}

/// The factors of the identity's columns `first` to `first + gap` in the rows at `i`, and 0 in the
/// other rows there.
NUV_LANES_INLINE Lanes LoadAmong(const NuvFloat32* factors, NuvSizeT i, NuvUint first, NuvUint gap)
{
    const UintLanes rows = CountFrom(static_cast<NuvUint>(i));
    return rows - first < SpreadUint(gap) ? Load(factors + i) : Lanes{};
}

/// One vector of rows on its way past the columns.
template <bool hasUpdate, bool hasTwo>
struct RowLanes
{
    Lanes update;
    Lanes sumX;
    Lanes sumY;

    NUV_LANES_INLINE void Begin(const ColumnWalk& w, NuvSizeT i)
    {
        update = hasUpdate ? Load(w.update + i) : Lanes{};
        sumX = Lanes{};
        sumY = Lanes{};
    }

    NUV_LANES_INLINE void GoOn(const ColumnWalk& w, NuvSizeT i)
    {
        update = hasUpdate ? Load(w.update + i) : Lanes{};
        sumX = Load(w.product.sums + i);
        sumY = hasTwo ? Load(w.other.sums + i) : Lanes{};
    }

    NUV_LANES_INLINE void Add(NuvFloat32* at, const Lanes& multiplier, const Lanes& x,
                              const Lanes& y)
    {
        Lanes elements = Load(at);
        if constexpr (hasUpdate)
        {
            elements = elements + multiplier * update;
            Store(at, elements);
        }
        sumX = sumX + x * elements;
        if constexpr (hasTwo)
            sumY = sumY + y * elements;
    }

    NUV_LANES_INLINE void AddUnits(const ColumnWalk& w, NuvSizeT i, NuvUint first, NuvUint gap)
    {
        sumX = sumX + LoadAmong(w.product.unitFactors, i, first, gap);
        if constexpr (hasTwo)
            sumY = sumY + LoadAmong(w.other.unitFactors, i, first, gap);
    }

    NUV_LANES_INLINE void Finish(const ColumnWalk& w, NuvSizeT i) const
    {
        Store(w.product.sums + i, sumX);
        if constexpr (hasTwo)
            Store(w.other.sums + i, sumY);
    }
};

// Tile by tile
// --------------------------------------------------------------------------------------------

template <bool hasUpdate, bool hasTwo>
struct TileWalk
{
    static constexpr NuvSizeT count = Kernels::tile / lanes;

    RowLanes<hasUpdate, hasTwo> rows[count];

    /// Goes past columns; with units also past the identity's columns that are right before them.
    template <bool hasUnits>
    NUV_LANES_INLINE void GoPast(const ColumnWalk& w, NuvSizeT row, Range columns)
    {
        for (NuvSizeT c = columns.first; c < columns.last; ++c)
        {
            const Lanes multiplier = Spread(hasUpdate ? w.multipliers[c] : 0.0F);
            const Lanes x = Spread(w.product.factors[c]);
            const Lanes y = Spread(hasTwo ? w.other.factors[c] : 0.0F);
            if constexpr (hasUnits)
                AddUnits(w, row, w.columns.firsts[c], w.columns.gaps[c]);
            for (NuvSizeT k = 0; k != count; ++k)
                rows[k].Add(w.columns.elements[c] + row + k * lanes, multiplier, x, y);
        }
    }

    NUV_LANES_INLINE void AddUnits(const ColumnWalk& w, NuvSizeT row, NuvUint first, NuvUint gap)
    {
        for (NuvSizeT k = 0; k != count; ++k)
            rows[k].AddUnits(w, row + k * lanes, first, gap);
    }
};

/// Each tile goes past the columns that come before its own, those among its own with the next one,
/// and those behind.
template <bool hasUpdate, bool hasTwo>
void WalkTiles(const ColumnWalk& w)
{
    const NuvSizeT all = w.columns.count;
    const NuvUint end = all == 0 ? 0 : w.columns.numbers[all - 1] + 1;
    for (NuvSizeT row = w.first; row != w.last; row += Kernels::tile)
    {
        TileWalk<hasUpdate, hasTwo> walk;
        for (NuvSizeT k = 0; k != walk.count; ++k)
            walk.rows[k].Begin(w, row + k * lanes);
        const NuvSizeT from = w.columns.below[row / Kernels::tile];
        const NuvSizeT next = w.columns.below[row / Kernels::tile + 1];
        const NuvSizeT to = next < all ? next + 1 : all;
        walk.template GoPast<false>(w, row, {0, from});
        walk.template GoPast<true>(w, row, {from, to});
        walk.template GoPast<false>(w, row, {to, all});
        walk.AddUnits(w, row, end, UINT32_MAX - end);
        for (NuvSizeT k = 0; k != walk.count; ++k)
            walk.rows[k].Finish(w, row + k * lanes);
    }
}

// Along the columns
// ---------------------------------------------------------------------------------------

/// A few columns from the one at `from` on, in rows that none of the identity's columns between
/// them has.
template <bool hasUpdate, bool hasTwo, NuvSizeT count>
NUV_LANES_INLINE void AddColumns(const ColumnWalk& w, NuvSizeT from, Range rows)
{
    if (rows.first == rows.last)
        return;
    NuvFloat32* at[count];
    Lanes multipliers[count];
    Lanes x[count];
    Lanes y[count];
    for (NuvSizeT c = 0; c != count; ++c)
    {
        at[c] = w.columns.elements[from + c];
        multipliers[c] = Spread(hasUpdate ? w.multipliers[from + c] : 0.0F);
        x[c] = Spread(w.product.factors[from + c]);
        y[c] = Spread(hasTwo ? w.other.factors[from + c] : 0.0F);
    }
    for (NuvSizeT i = rows.first; i != rows.last; i += lanes)
    {
        RowLanes<hasUpdate, hasTwo> sums;
        sums.GoOn(w, i);
        for (NuvSizeT c = 0; c != count; ++c)
            sums.Add(at[c] + i, multipliers[c], x[c], y[c]);
        sums.Finish(w, i);
    }
}

/// The same in rows of the identity's columns between them.
template <bool hasUpdate, bool hasTwo, NuvSizeT count>
NUV_LANES_INLINE void AddColumnsAndUnits(const ColumnWalk& w, NuvSizeT from, Range rows)
{
    for (NuvSizeT i = rows.first; i != rows.last; i += lanes)
    {
        RowLanes<hasUpdate, hasTwo> sums;
        sums.GoOn(w, i);
        for (NuvSizeT c = from; c != from + count; ++c)
        {
            sums.AddUnits(w, i, w.columns.firsts[c], w.columns.gaps[c]);
            sums.Add(w.columns.elements[c] + i, Spread(hasUpdate ? w.multipliers[c] : 0.0F),
                     Spread(w.product.factors[c]), Spread(hasTwo ? w.other.factors[c] : 0.0F));
        }
        sums.Finish(w, i);
    }
}

template <bool hasUpdate, bool hasTwo, NuvSizeT count>
void WalkGroup(const ColumnWalk& w, NuvSizeT from, Range units)
{
    AddColumns<hasUpdate, hasTwo, count>(w, from, {w.first, units.first});
    AddColumnsAndUnits<hasUpdate, hasTwo, count>(w, from, units);
    AddColumns<hasUpdate, hasTwo, count>(w, from, {units.last, w.last});
}

/// Adds the identity's columns of the range to a product.
void AddUnits(const ColumnWalk& w, const ColumnProduct& product, Range units)
{
    const Range rows = LanesOver(w, units);
    for (NuvSizeT i = rows.first; i != rows.last; i += lanes)
        Store(product.sums + i,
              Load(product.sums + i) + LoadAmong(product.unitFactors, i,
                                                 static_cast<NuvUint>(units.first),
                                                 static_cast<NuvUint>(units.last - units.first)));
}

/// Up to which number the identity's columns are added to each product.
struct Progress
{
    NuvSizeT x;
    NuvSizeT y;
};

/// Adds the identity's columns that are left up to `first`, and notes that those up to `next` will
/// be.
void CatchUp(const ColumnWalk& w, const ColumnProduct& product, NuvSizeT* done, NuvSizeT first,
             NuvSizeT next)
{
    if (*done != first)
        AddUnits(w, product, {*done, first});
    *done = next;
}

/// Takes the next few columns. One whose multiplier is 0 is not changed by the update, and one
/// whose factor is 0 adds ±0: what none of them needs is left out.
template <NuvSizeT count>
void WalkNext(const ColumnWalk& w, NuvSizeT from, Progress* done)
{
    const bool hasUpdate = w.update && HasNonzero<count>(w.multipliers + from);
    const bool hasTwo = w.other.factors && HasNonzero<count>(w.other.factors + from);
    if (!hasUpdate && !hasTwo && !HasNonzero<count>(w.product.factors + from))
        return;
    const NuvSizeT first = w.columns.firsts[from];
    const NuvSizeT last = w.columns.numbers[from + count - 1];
    CatchUp(w, w.product, &done->x, first, last + 1);
    if (hasTwo)
        CatchUp(w, w.other, &done->y, first, last + 1);
    NuvUint gaps = 0;
    for (NuvSizeT c = from; c != from + count; ++c)
        gaps |= w.columns.gaps[c];
    const Range units = LanesOver(w, {first, gaps == 0 ? first : last});
    if (hasUpdate && hasTwo)
        WalkGroup<true, true, count>(w, from, units);
    else if (hasUpdate)
        WalkGroup<true, false, count>(w, from, units);
    else if (hasTwo)
        WalkGroup<false, true, count>(w, from, units);
    else
        WalkGroup<false, false, count>(w, from, units);
}

void WalkGroups(const ColumnWalk& w)
{
    for (NuvSizeT i = w.first; i != w.last; i += lanes)
    {
        Store(w.product.sums + i, Lanes{});
        if (w.other.factors)
            Store(w.other.sums + i, Lanes{});
    }
    Progress done = {0, 0};
    NuvSizeT c = 0;
    for (; w.columns.count - c >= vectorsAtOnce; c += vectorsAtOnce)
        WalkNext<vectorsAtOnce>(w, c, &done);
    if (c != w.columns.count)
        WalkNext<StoredColumns::block>(w, c, &done);
    AddUnits(w, w.product, {done.x, w.last});
    if (w.other.factors)
        AddUnits(w, w.other, {done.y, w.last});
}

void WalkColumns(const ColumnWalk* w)
{
    const bool isLong = w->last - w->first > maxTiled;
    if ((isLong && switches.groups) || !switches.tiles)
        WalkGroups(*w);
    else if (w->update && w->other.factors)
        WalkTiles<true, true>(*w);
    else if (w->update)
        WalkTiles<true, false>(*w);
    else if (w->other.factors)
        WalkTiles<false, true>(*w);
    else
        WalkTiles<false, false>(*w);
}
}  // namespace
}  // namespace nuv
