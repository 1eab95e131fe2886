// The steps to the canonical form, in the order in which they are made: plans first, then the rows
// that follow from them, scaling last.
#include "Nuv/Solve/CanonicalForm.hpp"

#include <cmath>

namespace nuv
{
namespace
{

ColumnPlan PlanColumn(double lower, double upper)
{
    ColumnPlan plan;
    if (lower == upper)
    {
        plan.kind = ColumnKind::Fixed;
        plan.offset = lower;
    }
    else if (std::isfinite(lower))
    {
        plan.kind = ColumnKind::Shifted;
        plan.offset = lower;
    }
    else if (std::isfinite(upper))
    {
        plan.kind = ColumnKind::Mirrored;
        plan.offset = upper;
    }
    else
    {
        plan.kind = ColumnKind::Split;
    }
    return plan;
}

/// Plans every variable and gives it its columns with their costs, for maximisation.
void PlanColumns(const BoundedForm& form, Canonicalisation& canonicalised)
{
    CanonicalForm& canonical = canonicalised.form;
    for (Index j = 0; j < form.columns; ++j)
    {
        ColumnPlan plan = PlanColumn(form.columnLower[j], form.columnUpper[j]);
        const double gain = -form.cost[j];
        if (plan.kind != ColumnKind::Fixed)
        {
            plan.column = static_cast<Index>(canonical.cost.size());
            canonical.cost.push_back(plan.kind == ColumnKind::Mirrored ? -gain : gain);
            if (plan.kind == ColumnKind::Split)
                canonical.cost.push_back(-gain);
        }
        canonicalised.columns.push_back(plan);
    }
    canonical.columns = static_cast<Index>(canonical.cost.size());
}

/// Appends the entries of `sign` times row i, and what the offsets take from its right-hand side.
void AppendRow(const BoundedForm& form, Index i, double sign, double side,
               Canonicalisation& canonicalised)
{
    CanonicalForm& canonical = canonicalised.form;
    double rhs = sign * side;
    const std::span<const Index> columns = form.matrix.Rows().Indices(i);
    const std::span<const double> values = form.matrix.Rows().Values(i);
    for (std::size_t at = 0; at < columns.size(); ++at)
    {
        const ColumnPlan& plan = canonicalised.columns[columns[at]];
        const double value = sign * values[at];
        if (plan.offset != 0.0)
            rhs -= value * plan.offset;
        if (plan.kind == ColumnKind::Fixed)
            continue;
        canonical.byRow.Append(plan.column, plan.kind == ColumnKind::Mirrored ? -value : value);
        if (plan.kind == ColumnKind::Split)
            canonical.byRow.Append(plan.column + 1, -value);
    }
    canonical.byRow.Close();
    canonical.rhs.push_back(rhs);
}

void AppendRows(const BoundedForm& form, Canonicalisation& canonicalised)
{
    for (Index i = 0; i < form.rows; ++i)
    {
        RowPlan plan;
        if (std::isfinite(form.rowUpper[i]))
        {
            plan.upperRow = static_cast<Index>(canonicalised.form.rhs.size());
            AppendRow(form, i, 1.0, form.rowUpper[i], canonicalised);
        }
        if (std::isfinite(form.rowLower[i]))
        {
            plan.lowerRow = static_cast<Index>(canonicalised.form.rhs.size());
            AppendRow(form, i, -1.0, form.rowLower[i], canonicalised);
        }
        canonicalised.rows.push_back(plan);
    }
}

/// A variable between two bounds: y <= upper - lower.
void AppendBoundRows(const BoundedForm& form, Canonicalisation& canonicalised)
{
    CanonicalForm& canonical = canonicalised.form;
    for (Index j = 0; j < form.columns; ++j)
    {
        ColumnPlan& plan = canonicalised.columns[j];
        if (plan.kind != ColumnKind::Shifted || !std::isfinite(form.columnUpper[j]))
            continue;
        plan.boundRow = static_cast<Index>(canonical.rhs.size());
        canonical.byRow.Append(plan.column, 1.0);
        canonical.byRow.Close();
        canonical.rhs.push_back(form.columnUpper[j] - form.columnLower[j]);
    }
}

/// The exponent that brings the geometric mean of the smallest and largest magnitude near 1.
int BalancingExponent(double smallest, double largest)
{
    if (largest == 0.0)
        return 0;
    return -static_cast<int>(std::lround((std::log2(smallest) + std::log2(largest)) / 2.0));
}

struct Range
{
    double smallest = 0.0;
    double largest = 0.0;
    void Include(double magnitude)
    {
        if (magnitude == 0.0)
            return;
        smallest = largest == 0.0 ? magnitude : std::fmin(smallest, magnitude);
        largest = std::fmax(largest, magnitude);
    }
    [[nodiscard]] int Exponent() const
    {
        return BalancingExponent(smallest, largest);
    }
};

/// Scales rows, then columns, so that magnitudes lie around 1; every factor is a power of two.
void ScaleByPowersOfTwo(Canonicalisation& canonicalised)
{
    CanonicalForm& form = canonicalised.form;
    std::vector<Range> columnRanges(form.columns);
    for (Index i = 0; i < form.rows; ++i)
    {
        Range range;
        for (const double value : form.byRow.Values(i))
            range.Include(std::fabs(value));
        const int exponent = range.Exponent();
        form.rhs[i] = std::ldexp(form.rhs[i], exponent);
        for (std::size_t at = form.byRow.start[i]; at < form.byRow.start[i + 1]; ++at)
        {
            form.byRow.value[at] = std::ldexp(form.byRow.value[at], exponent);
            columnRanges[form.byRow.index[at]].Include(std::fabs(form.byRow.value[at]));
        }
    }
    std::vector<int> exponents(form.columns);
    for (ColumnPlan& plan : canonicalised.columns)
    {
        if (plan.kind == ColumnKind::Fixed)
            continue;
        plan.exponent = columnRanges[plan.column].Exponent();
        exponents[plan.column] = plan.exponent;
        if (plan.kind == ColumnKind::Split)
            exponents[plan.column + 1] = plan.exponent;
    }
    for (std::size_t at = 0; at < form.byRow.index.size(); ++at)
        form.byRow.value[at] = std::ldexp(form.byRow.value[at], exponents[form.byRow.index[at]]);
    for (Index j = 0; j < form.columns; ++j)
        form.cost[j] = std::ldexp(form.cost[j], exponents[j]);
}

void Include(Binary32Report& report, double number, Index row, Index column)
{
    if (number == 0.0)
        return;
    ++report.numbers;
    const double rounded = static_cast<double>(static_cast<float>(number));
    if (rounded == number)
        return;
    ++report.inexact;
    if (!std::isinf(rounded))
    {
        report.largestRelativeChange =
            std::fmax(report.largestRelativeChange, std::fabs((rounded - number) / number));
        return;
    }
    if (report.overflowing++ == 0)
    {
        report.row = row;
        report.column = column;
    }
}

/// The general form's row or column behind each canonical one.
struct Origins
{
    std::vector<Index> rows;
    std::vector<Index> columns;
    std::vector<Index> boundedColumns;  ///< by canonical row: the variable that it bounds

    explicit Origins(const Canonicalisation& canonicalised)
        : rows(canonicalised.form.rows, kNoIndex),
          columns(canonicalised.form.columns, kNoIndex),
          boundedColumns(canonicalised.form.rows, kNoIndex)
    {
        for (Index i = 0; i < canonicalised.rows.size(); ++i)
        {
            if (canonicalised.rows[i].upperRow != kNoIndex)
                rows[canonicalised.rows[i].upperRow] = i;
            if (canonicalised.rows[i].lowerRow != kNoIndex)
                rows[canonicalised.rows[i].lowerRow] = i;
        }
        for (Index j = 0; j < canonicalised.columns.size(); ++j)
        {
            const ColumnPlan& plan = canonicalised.columns[j];
            if (plan.kind != ColumnKind::Fixed)
                columns[plan.column] = j;
            if (plan.kind == ColumnKind::Split)
                columns[plan.column + 1] = j;
            if (plan.boundRow != kNoIndex)
                boundedColumns[plan.boundRow] = j;
        }
    }
};

BasisStatus FromCanonicalColumn(const ColumnPlan& plan, std::span<const std::uint8_t> isBasic,
                                Index slackOffset)
{
    switch (plan.kind)
    {
    case ColumnKind::Fixed:
        return BasisStatus::AtLower;
    case ColumnKind::Mirrored:
        return isBasic[plan.column] ? BasisStatus::Basic : BasisStatus::AtUpper;
    case ColumnKind::Split:
        return isBasic[plan.column] || isBasic[plan.column + 1] ? BasisStatus::Basic
                                                                : BasisStatus::Free;
    case ColumnKind::Shifted:
        break;
    }
    if (!isBasic[plan.column])
        return BasisStatus::AtLower;
    // A basic variable whose bound row has no slack rests at its upper bound.
    return plan.boundRow != kNoIndex && !isBasic[slackOffset + plan.boundRow] ? BasisStatus::AtUpper
                                                                              : BasisStatus::Basic;
}

}  // namespace

Canonicalisation ToCanonicalForm(const BoundedForm& form, Scaling scaling)
{
    Canonicalisation canonicalised;
    PlanColumns(form, canonicalised);
    AppendRows(form, canonicalised);
    AppendBoundRows(form, canonicalised);
    canonicalised.form.rows = static_cast<Index>(canonicalised.form.rhs.size());
    if (scaling == Scaling::PowersOfTwo)
        ScaleByPowersOfTwo(canonicalised);
    return canonicalised;
}

std::vector<double> FromCanonicalPoint(const Canonicalisation& canonicalised,
                                       std::span<const double> y)
{
    std::vector<double> x;
    x.reserve(canonicalised.columns.size());
    for (const ColumnPlan& plan : canonicalised.columns)
    {
        if (plan.kind == ColumnKind::Fixed)
        {
            x.push_back(plan.offset);
            continue;
        }
        double value = std::ldexp(y[plan.column], plan.exponent);
        if (plan.kind == ColumnKind::Split)
            value -= std::ldexp(y[plan.column + 1], plan.exponent);
        x.push_back(plan.kind == ColumnKind::Mirrored ? plan.offset - value : plan.offset + value);
    }
    return x;
}

Basis FromCanonicalBasis(const Canonicalisation& canonicalised, std::span<const Index> basicLabels)
{
    const std::size_t count = std::size_t{canonicalised.form.columns} + canonicalised.form.rows;
    std::vector<std::uint8_t> isBasic(count, 0);
    for (const Index label : basicLabels)
        if (label != 0)
            isBasic[label - 1] = 1;
    const Index slackOffset = canonicalised.form.columns;

    Basis basis;
    for (const ColumnPlan& plan : canonicalised.columns)
        basis.columns.push_back(FromCanonicalColumn(plan, isBasic, slackOffset));
    for (const RowPlan& plan : canonicalised.rows)
    {
        const auto isTight = [&](Index row)
        { return row != kNoIndex && !isBasic[slackOffset + row]; };
        basis.rows.push_back(isTight(plan.upperRow)   ? BasisStatus::AtUpper
                             : isTight(plan.lowerRow) ? BasisStatus::AtLower
                                                      : BasisStatus::Basic);
    }
    return basis;
}

Binary32Report ReportBinary32(const Canonicalisation& canonicalised)
{
    const CanonicalForm& form = canonicalised.form;
    const Origins origins(canonicalised);
    Binary32Report report;
    for (Index j = 0; j < form.columns; ++j)
        Include(report, form.cost[j], kNoIndex, origins.columns[j]);
    for (Index i = 0; i < form.rows; ++i)
    {
        const std::span<const Index> columns = form.byRow.Indices(i);
        const std::span<const double> values = form.byRow.Values(i);
        for (std::size_t at = 0; at < columns.size(); ++at)
            Include(report, values[at], origins.rows[i], origins.columns[columns[at]]);
        Include(report, form.rhs[i], origins.rows[i], origins.boundedColumns[i]);
    }
    return report;
}

}  // namespace nuv
