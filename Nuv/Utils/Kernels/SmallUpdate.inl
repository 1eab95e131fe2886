// How the inverse of few rows is brought up to date, and with it the prices and the values.
// SmallSteps.inl stands before this.
namespace nuv
{
namespace
{
/// Adds the pending update to both matrices and sums prices and values, which are independent of
/// each other, in the same pass.
struct SmallUpdate
{
    SmallState& s;
    NuvUint row;
    /// Sums of numbers times 0.
    Lanes doubt;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        Lanes eta[count] = {};
        Lanes multipliers[count] = {};
        Lanes prices[count] = {};
        Lanes values[count] = {};
        UintLanes elements[count] = {};
        for (NuvSizeT v = 0; v != count; ++v)
        {
            eta[v] = Load(s.eta + first + v * kLanes);
            multipliers[v] = Load(s.multipliers + first + v * kLanes);
            elements[v] = CountFrom(static_cast<NuvUint>(first + v * kLanes));
        }
        const UintLanes leaving = BroadcastUint(row);
        // Copies: for all that the compiler knows, a vector that is stored may change the record.
        const NuvFloat32* const costs = s.basicCosts;
        const NuvFloat32* const sides = s.b;
        const NuvFloat32* const etas = s.eta;
        const NuvFloat32* const formers = s.multipliers;
        const NuvSizeT m = s.m;
        const NuvSizeT stride = s.stride;
        NuvFloat32* inRow = s.rows + first;
        NuvFloat32* inColumn = s.columns + first;
        for (NuvSizeT l = 0; l != m; ++l, inRow += stride, inColumn += stride)
        {
            const Lanes cost = Broadcast(costs[l]);
            const Lanes side = Broadcast(sides[l]);
            const Lanes etaOfLine = Broadcast(etas[l]);
            const Lanes multiplier = Broadcast(formers[l]);
            for (NuvSizeT v = 0; v != count; ++v)
            {
                Lanes ofRow = Load(inRow + v * kLanes);
                Lanes ofColumn = Load(inColumn + v * kLanes);
                // The leaving row was cleared; the columns are cleared of it here.
                ofRow = ofRow + etaOfLine * multipliers[v];
                ofColumn = (elements[v] != leaving ? ofColumn : Lanes{}) + multiplier * eta[v];
                Store(inRow + v * kLanes, ofRow);
                Store(inColumn + v * kLanes, ofColumn);
                prices[v] = prices[v] + cost * ofRow;
                values[v] = values[v] + side * ofColumn;
            }
        }
        for (NuvSizeT v = 0; v != count; ++v)
        {
            Store(s.prices + first + v * kLanes, prices[v]);
            Store(s.values + first + v * kLanes, values[v]);
            s.nonzeroPrices |= NonzerosOf(prices[v]) << (first + v * kLanes);
            doubt = doubt + (prices[v] * Broadcast(0.0F) + values[v] * Broadcast(0.0F));
        }
    }
};

/// Σ factors(k) · line(k) over some k, in increasing order.
NUV_LANES_INLINE NuvFloat32 SumAt(RowBits at, const NuvFloat32* factors, const NuvFloat32* line)
{
    NuvFloat32 sum = 0.0F;
    for (; at != 0; at &= at - 1)
    {
        const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(at));
        sum = sum + factors[k] * line[k];
    }
    return sum;
}

/// From so many columns changed at a time, of all, the inverse is written by rows as well.
constexpr NuvSizeT kDenseShare = 3;

RowBits AllRows(const SmallState* s)
{
    return ~RowBits{0} >> (8 * sizeof(RowBits) - s->m);
}

/// Adds the update to one column of the inverse, of which the leaving row is replaced.
struct ColumnUpdate
{
    UintLanes leaving;
    Lanes multiplier;
    NuvFloat32* column;
    const NuvFloat32* eta;
    RowBits nonzeros;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        for (NuvSizeT v = 0; v != count; ++v)
        {
            const NuvSizeT at = first + v * kLanes;
            const Lanes former =
                CountFrom(static_cast<NuvUint>(at)) != leaving ? Load(column + at) : Lanes{};
            const Lanes element = former + multiplier * Load(eta + at);
            Store(column + at, element);
            nonzeros |= NonzerosOf(element) << at;
        }
    }
};

/// The values of the rows whose eta is not ±0, and of the leaving row: sums over some columns,
/// which have all the numbers of these rows that are not ±0.
struct ChangedValues
{
    SmallState& s;
    RowBits columns;
    UintLanes leaving;
    /// Sums of numbers times 0.
    Lanes doubt;

    template <NuvSizeT count>
    NUV_LANES_INLINE void Do(NuvSizeT first)
    {
        Lanes sums[count] = {};
        for (RowBits left = columns; left != 0; left &= left - 1)
        {
            const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(left));
            const Lanes side = Broadcast(s.b[k]);
            const NuvFloat32* const column = s.columns + k * s.stride + first;
            for (NuvSizeT v = 0; v != count; ++v)
                sums[v] = sums[v] + side * Load(column + v * kLanes);
        }
        for (NuvSizeT v = 0; v != count; ++v)
        {
            const NuvSizeT at = first + v * kLanes;
            Lanes value = Load(s.eta + at) != Lanes{} ? sums[v] : Load(s.values + at);
            value = CountFrom(static_cast<NuvUint>(at)) == leaving ? sums[v] : value;
            Store(s.values + at, value);
            doubt = doubt + value * Broadcast(0.0F);
        }
    }
};

/// Adds the leaving row's columns to the patterns of the rows that change.
/// @return the columns of these rows, one half of them.
NUV_LANES_INLINE RowBits SpreadPattern(const SmallState* s, NuvUint* patterns, NuvUint row)
{
    const UintLanes pattern = BroadcastUint(patterns[row]);
    UintLanes all = pattern;
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
    {
        const UintLanes former = LoadAs<UintLanes>(patterns + i);
        const UintLanes changed = Load(s->eta + i) != Lanes{} ? former | pattern : UintLanes{};
        const UintLanes now = former | changed;
        StoreUint(patterns + i, now);
        all = all | changed;
    }
    return Reduce(all, [](const auto& x, const auto& y) { return x | y; });
}

/// The update where few columns of the inverse change, which are those where the leaving row is not
/// ±0. The other columns keep their numbers but for signs of zeros, which nothing shows, and with
/// them their prices: the costs differ in the leaving row alone, and there they are ±0. So do the
/// rows whose eta is ±0, and with them their values.
bool UpdateColumns(SmallState* s, NuvUint row, RowBits changed)
{
    RowBits columns = SpreadPattern(s, s->patterns, row);
    if (s->m > kHalfBits)
        columns |= SpreadPattern(s, s->patterns + s->stride, row) << kHalfBits;
    const RowBits costed = NonzerosOf(s->basicCosts, s->stride);
    const UintLanes leaving = BroadcastUint(row);
    NuvFloat32 doubt = 0.0F;
    for (RowBits left = changed; left != 0; left &= left - 1)
    {
        const NuvSizeT k = static_cast<NuvSizeT>(std::countr_zero(left));
        NuvFloat32* const column = s->columns + k * s->stride;
        ColumnUpdate update = {leaving, Broadcast(column[row]), column, s->eta, 0};
        DoInStripes<kVectorsAtOnce>(s->stride, 0, &update);
        const NuvFloat32 price = SumAt(update.nonzeros & costed, s->basicCosts, column);
        const RowBits bit = RowBits{1} << k;
        s->nonzeroPrices = price != 0.0F ? s->nonzeroPrices | bit : s->nonzeroPrices & ~bit;
        s->prices[k] = price;
        doubt = doubt + price * 0.0F;
    }
    ChangedValues values = {*s, columns, leaving, Broadcast(doubt)};
    DoInStripes<kVectorsAtOnce>(s->stride, 0, &values);
    return AreZero(values.doubt);
}

/// Prices and values without an update.
bool SumColumns(SmallState* s)
{
    s->nonzeroPrices = 0;
    const RowBits costed = NonzerosOf(s->basicCosts, s->stride);
    memset(s->prices, 0, s->stride * sizeof *s->prices);
    NuvFloat32 doubt = 0.0F;
    for (NuvSizeT k = 0; k != s->m; ++k)
    {
        const NuvFloat32* const column = s->columns + k * s->stride;
        const NuvFloat32 price =
            SumAt(costed & NonzerosOf(column, s->stride), s->basicCosts, column);
        s->nonzeroPrices |= RowBits{price != 0.0F} << k;
        s->prices[k] = price;
        doubt = doubt + price * 0.0F;
    }
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
        Store(s->eta + i, Broadcast(1.0F));
    ChangedValues values = {*s, AllRows(s), BroadcastUint(0), Broadcast(doubt)};
    DoInStripes<kVectorsAtOnce>(s->stride, 0, &values);
    return AreZero(values.doubt);
}

/// Writes the columns of the inverse a second time, by rows.
void MakeRows(SmallState* s)
{
    memset(s->rows, 0, s->m * s->stride * sizeof *s->rows);
    for (NuvSizeT k = 0; k != s->m; ++k)
    {
        const NuvFloat32* const column = s->columns + k * s->stride;
        for (RowBits left = NonzerosOf(column, s->stride); left != 0; left &= left - 1)
        {
            const NuvSizeT i = static_cast<NuvSizeT>(std::countr_zero(left));
            s->rows[i * s->stride + k] = column[i];
        }
    }
    s->hasRows = true;
}

bool UpdateSmall(SmallState* s, NuvUint row)
{
    if (row == s->m)
        return SumColumns(s);
    if (!s->hasRows)
    {
        const RowBits changed = s->patterns[row] | RowBits{s->patterns[s->stride + row]}
                                                       << kHalfBits;
        if (kDenseShare * static_cast<NuvSizeT>(std::popcount(changed)) <= s->m)
            return UpdateColumns(s, row, changed);
        MakeRows(s);
    }
    NuvFloat32* const leaving = s->rows + row * s->stride;
    for (NuvSizeT i = 0; i != s->stride; i += kLanes)
    {
        Store(s->multipliers + i, Load(leaving + i));
        Store(leaving + i, Lanes{});
    }
    s->nonzeroPrices = 0;
    SmallUpdate update = {*s, row, Lanes{}};
    DoInStripes<kVectorsAtOnce>(s->stride, 0, &update);
    return AreZero(update.doubt);
}
}  // namespace
}  // namespace nuv
