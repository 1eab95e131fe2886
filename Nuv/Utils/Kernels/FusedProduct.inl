// A rank-1 update of some columns and one or two products with them, in one pass over the columns
// (the BLAS would say GER and GEMV). Eight columns are taken at a time, with narrow vectors four,
// so that each is read in order and the sums of a row wait in a register; then, of those that are
// left, half as many at a time, down to one. A unit column adds its factor in its own row, in its
// turn, so that each sum keeps the order of the full product.
#include "Nuv/Utils/Kernels/Kernels.h"
#include "Nuv/Utils/Kernels/Lanes.inl"
#include "Nuv/Utils/Kernels/Zeros.inl"

namespace nuv
{
namespace
{
/// How many columns are taken at a time: as many as there are registers for, or fewer where the
/// program has to be small.
#if defined(NUV_COLUMNS_AT_ONCE)
constexpr NuvSizeT kColumnsAtOnce = NUV_COLUMNS_AT_ONCE;
#else
constexpr NuvSizeT kColumnsAtOnce = kLanes == 16 ? 8 : 4;
#endif
static_assert((kColumnsAtOnce & (kColumnsAtOnce - 1)) == 0, "the remainder is taken by halves");

/// Some rows or columns of a matrix.
struct Range
{
    NuvSizeT first;
    NuvSizeT last;
};

/// Whether the columns that are not given are the identity's.
bool HasUnits(const FusedProduct& p)
{
    return p.product.unitFactors != nullptr;
}

/// `count` columns in a row, with their numbers and factors.
template <NuvSizeT count>
struct Group
{
    NuvFloat32* const* columns;
    const NuvFloat32* multipliers;
    const NuvFloat32* x;
    const NuvFloat32* y;
    const NuvUint* numbers;
    /// From the first of the unit columns that are right before these or among them to the last of
    /// these, and whether there are any.
    Range span;
    bool hasUnits;
};

template <NuvSizeT count>
Group<count> GroupAt(const FusedProduct& p, NuvSizeT from)
{
    Group<count> group = {p.columns + from,
                          p.update ? p.multipliers + from : nullptr,
                          p.product.factors + from,
                          p.other.factors ? p.other.factors + from : nullptr,
                          HasUnits(p) ? p.numbers + from : nullptr,
                          {0, 0},
                          false};
    if (HasUnits(p))
    {
        group.span = {from == 0 ? 0 : p.numbers[from - 1] + NuvSizeT(1), group.numbers[count - 1]};
        group.hasUnits = group.span.last - group.span.first != count - 1;
    }
    return group;
}

/// The whole vectors of lanes that hold some rows.
Range LanesOver(Range rows)
{
    return {rows.first / kLanes * kLanes, (rows.last + kLanes - 1) / kLanes * kLanes};
}

/// The factors of the unit columns `first` to `first + count` in the rows at `i`, and 0 in the
/// other rows there.
NUV_LANES_INLINE Lanes MaskedLoad(const NuvFloat32* factors, NuvSizeT i, NuvUint first,
                                  NuvUint count)
{
    const UintLanes rows = CountFrom(static_cast<NuvUint>(i));
    return rows - first < BroadcastUint(count) ? Load(factors + i) : Lanes{};
}

/// Adds a group to the rows. A unit column adds its factor in its own row, in its turn; in all
/// other rows it would add ±0, and is left out.
template <bool hasUpdate, bool hasTwo, bool hasUnits, NuvSizeT count>
NUV_LANES_INLINE void AddGroup(const FusedProduct& p, const Group<count>& group, Range rows)
{
    if (rows.first == rows.last)
        return;
    NuvFloat32* at[count];
    Lanes multipliers[count];
    Lanes x[count];
    Lanes y[count];
    for (NuvSizeT c = 0; c != count; ++c)
    {
        at[c] = group.columns[c];
        multipliers[c] = Broadcast(hasUpdate ? group.multipliers[c] : 0.0F);
        x[c] = Broadcast(group.x[c]);
        y[c] = Broadcast(hasTwo ? group.y[c] : 0.0F);
    }
    const NuvFloat32* const update = p.update;
    NuvFloat32* const sumsX = p.product.sums;
    NuvFloat32* const sumsY = p.other.sums;
    for (NuvSizeT i = rows.first; i != rows.last; i += kLanes)
    {
        const Lanes updateLanes = hasUpdate ? Load(update + i) : Lanes{};
        Lanes sumX = Load(sumsX + i);
        Lanes sumY = hasTwo ? Load(sumsY + i) : Lanes{};
        for (NuvSizeT c = 0; c != count; ++c)
        {
            if constexpr (hasUnits)
            {
                const NuvUint first =
                    c == 0 ? static_cast<NuvUint>(group.span.first) : group.numbers[c - 1] + 1;
                const NuvUint units = group.numbers[c] - first;
                sumX = sumX + MaskedLoad(p.product.unitFactors, i, first, units);
                if constexpr (hasTwo)
                    sumY = sumY + MaskedLoad(p.other.unitFactors, i, first, units);
            }
            Lanes elements = Load(at[c] + i);
            if constexpr (hasUpdate)
            {
                elements = elements + multipliers[c] * updateLanes;
                Store(at[c] + i, elements);
            }
            sumX = sumX + x[c] * elements;
            if constexpr (hasTwo)
                sumY = sumY + y[c] * elements;
        }
        Store(sumsX + i, sumX);
        if constexpr (hasTwo)
            Store(sumsY + i, sumY);
    }
}

template <bool hasUpdate, bool hasTwo, NuvSizeT count>
void AddGroup(const FusedProduct& p, const Group<count>& group)
{
    const Range units = group.hasUnits ? LanesOver(group.span) : Range{p.length, p.length};
    AddGroup<hasUpdate, hasTwo, false>(p, group, {0, units.first});
    AddGroup<hasUpdate, hasTwo, true>(p, group, units);
    AddGroup<hasUpdate, hasTwo, false>(p, group, {units.last, p.length});
}

/// Adds the unit columns of the range to a product.
void AddUnits(const ColumnProduct& product, Range units)
{
    const Range rows = LanesOver(units);
    for (NuvSizeT i = rows.first; i != rows.last; i += kLanes)
        Store(product.sums + i,
              Load(product.sums + i) + MaskedLoad(product.unitFactors, i,
                                                  static_cast<NuvUint>(units.first),
                                                  static_cast<NuvUint>(units.last - units.first)));
}

/// A product on its way past the columns, and up to which number it has the unit columns.
struct Progress
{
    const ColumnProduct* product;
    NuvSizeT done;

    /// Adds the unit columns that are left up to `first`; those up to `next` are the caller's.
    void CatchUp(const FusedProduct& p, NuvSizeT first, NuvSizeT next)
    {
        if (HasUnits(p) && done < first)
            AddUnits(*product, {done, first});
        done = next;
    }
};

/// Takes the next few columns. The update is left out if all multipliers are 0, and a product if
/// all its factors are. But a product with a column that is updated never is, factor 0 or not: the
/// caller notices an overflow of the update by 0 · inf = NaN in that sum.
template <NuvSizeT count>
void AddNext(const FusedProduct& p, const Group<count>& group, Progress* x, Progress* y)
{
    const bool hasUpdate = group.multipliers && HasNonzero<count>(group.multipliers);
    const bool hasTwo = group.y && HasNonzero<count>(group.y);
    if (!hasUpdate && !hasTwo && !HasNonzero<count>(group.x))
        return;
    x->CatchUp(p, group.span.first, group.span.last + 1);
    if (hasTwo)
        y->CatchUp(p, group.span.first, group.span.last + 1);
    if (hasUpdate && hasTwo)
        AddGroup<true, true>(p, group);
    else if (hasUpdate)
        AddGroup<true, false>(p, group);
    else if (hasTwo)
        AddGroup<false, true>(p, group);
    else
        AddGroup<false, false>(p, group);
}

/// Takes the columns from `from` on: groups of `count` as long as they are full, then of half as
/// many.
template <NuvSizeT count>
void AddColumns(const FusedProduct& p, NuvSizeT from, Progress* x, Progress* y)
{
    for (; p.count - from >= count; from += count)
        AddNext(p, GroupAt<count>(p, from), x, y);
    if constexpr (count != 1)
        AddColumns<count / 2>(p, from, x, y);
}

void UpdateAndMultiply(const FusedProduct* product)
{
    const FusedProduct& p = *product;
    const bool hasTwo = p.other.factors != nullptr;
    for (NuvSizeT i = 0; i != p.length; i += kLanes)
    {
        Store(p.product.sums + i, Lanes{});
        if (hasTwo)
            Store(p.other.sums + i, Lanes{});
    }
    Progress x = {&p.product, 0};
    Progress y = {&p.other, 0};
    AddColumns<kColumnsAtOnce>(p, 0, &x, &y);
    x.CatchUp(p, p.length, p.length);
    if (hasTwo)
        y.CatchUp(p, p.length, p.length);
}
}  // namespace
}  // namespace nuv
