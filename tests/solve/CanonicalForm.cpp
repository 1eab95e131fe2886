// To the canonical form and back: one is the other's inverse, and neither changes what a point
// satisfies.
#include "Nuv/Solve/CanonicalForm.hpp"
#include "Nuv/Solve/ModelForm.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <random>

namespace
{

using nuv::ColumnKind;
using nuv::Index;
constexpr double kInfinity = nuv::Infinity;

/// Small integers, halves and infinities: all sums in these tests are exact.
class Numbers
{
public:
    explicit Numbers(std::uint32_t seed) : m_engine(seed) {}
    int Below(int n)
    {
        return static_cast<int>(m_engine() % static_cast<std::uint32_t>(n));
    }
    double Small()
    {
        return (Below(41) - 20) / 2.0;
    }

private:
    std::mt19937 m_engine;
};

nuv::Model RandomModel(Numbers& numbers)
{
    nuv::Model model;
    const int columns = 1 + numbers.Below(6);
    const int rows = numbers.Below(6);
    std::vector<nuv::Variable> variables;
    for (int j = 0; j < columns; ++j)
    {
        const double lower = numbers.Below(3) == 0 ? -kInfinity : numbers.Small();
        const int kind = numbers.Below(4);
        const double upper = kind == 0                           ? kInfinity
                             : kind == 1 && std::isfinite(lower) ? lower
                             : std::isfinite(lower)              ? lower + numbers.Below(9)
                                                                 : numbers.Small();
        variables.push_back(
            model.AddVariable(std::string(1, static_cast<char>('a' + j)), {lower, upper}));
    }
    for (int i = 0; i < rows; ++i)
    {
        nuv::Expression row;
        for (const nuv::Variable& variable : variables)
            if (numbers.Below(3) != 0)
                row += numbers.Small() * variable;
        const double side = numbers.Small();
        const int kind = numbers.Below(4);
        if (kind == 0)
            model.Add(row <= side);
        else if (kind == 1)
            model.Add(row >= side);
        else if (kind == 2)
            model.Add(row == side);
        else
            model.Add(nuv::Range(side, row, side + numbers.Below(9)));
    }
    nuv::Expression objective = numbers.Small();
    for (const nuv::Variable& variable : variables)
        objective += numbers.Small() * variable;
    if (numbers.Below(2) == 0)
        model.Maximize(objective);
    else
        model.Minimize(objective);
    return model;
}

/// A canonical point for x; x lies within its bounds.
std::vector<double> LowerPoint(const nuv::Canonicalisation& canonicalised,
                               std::span<const double> x)
{
    std::vector<double> y(canonicalised.form.columns, 0.0);
    for (Index j = 0; j < x.size(); ++j)
    {
        const nuv::ColumnPlan& plan = canonicalised.columns[j];
        if (plan.kind == ColumnKind::Fixed)
            continue;
        const double value =
            plan.kind == ColumnKind::Mirrored ? plan.offset - x[j] : x[j] - plan.offset;
        const Index column = plan.column + (plan.kind == ColumnKind::Split && value < 0.0 ? 1 : 0);
        y[column] = std::ldexp(std::fabs(value), -plan.exponent);
    }
    return y;
}

double Activity(const nuv::SparseVectors<double>& rows, Index i, std::span<const double> x)
{
    double sum = 0.0;
    for (std::size_t at = rows.start[i]; at < rows.start[i + 1]; ++at)
        sum += rows.value[at] * x[rows.index[at]];
    return sum;
}

bool Satisfies(const nuv::BoundedForm& form, std::span<const double> x)
{
    for (Index i = 0; i < form.rows; ++i)
    {
        const double activity = Activity(form.matrix.Rows(), i, x);
        if (activity < form.rowLower[i] || activity > form.rowUpper[i])
            return false;
    }
    return true;
}

bool Satisfies(const nuv::CanonicalForm& form, std::span<const double> y)
{
    for (Index i = 0; i < form.rows; ++i)
        if (Activity(form.byRow, i, y) > form.rhs[i])
            return false;
    return true;
}

std::vector<double> PointWithinBounds(const nuv::BoundedForm& form, Numbers& numbers)
{
    std::vector<double> x;
    for (Index j = 0; j < form.columns; ++j)
        x.push_back(
            std::fmin(std::fmax(numbers.Small(), form.columnLower[j]), form.columnUpper[j]));
    return x;
}

class CanonicalFormOfRandomModels : public testing::TestWithParam<nuv::Scaling>
{
};

TEST_P(CanonicalFormOfRandomModels, TakesEveryPointBackToItself)
{
    for (std::uint32_t seed = 1; seed <= 2000; ++seed)
    {
        Numbers numbers(seed);
        const nuv::BoundedForm form = nuv::FormOf(RandomModel(numbers));
        ASSERT_EQ(form.Defect(), "") << "seed " << seed;
        const nuv::Canonicalisation canonicalised = nuv::ToCanonicalForm(form, GetParam());
        const std::vector<double> x = PointWithinBounds(form, numbers);
        EXPECT_EQ(nuv::FromCanonicalPoint(canonicalised, LowerPoint(canonicalised, x)), x)
            << "seed " << seed;
    }
}

TEST_P(CanonicalFormOfRandomModels, KeepsFeasibilityAndGain)
{
    for (std::uint32_t seed = 1; seed <= 2000; ++seed)
    {
        Numbers numbers(seed);
        const nuv::BoundedForm form = nuv::FormOf(RandomModel(numbers));
        const nuv::Canonicalisation canonicalised = nuv::ToCanonicalForm(form, GetParam());
        const std::vector<double> x = PointWithinBounds(form, numbers);
        const std::vector<double> other = PointWithinBounds(form, numbers);
        const std::vector<double> y = LowerPoint(canonicalised, x);
        const std::vector<double> otherY = LowerPoint(canonicalised, other);
        EXPECT_EQ(Satisfies(canonicalised.form, y), Satisfies(form, x)) << "seed " << seed;
        double loss = 0.0;
        for (Index j = 0; j < form.columns; ++j)
            loss += form.cost[j] * (other[j] - x[j]);
        double gain = 0.0;
        for (Index j = 0; j < canonicalised.form.columns; ++j)
            gain += canonicalised.form.cost[j] * (otherY[j] - y[j]);
        EXPECT_EQ(gain, -loss) << "seed " << seed;
    }
}

INSTANTIATE_TEST_SUITE_P(Scalings, CanonicalFormOfRandomModels,
                         testing::Values(nuv::Scaling::None, nuv::Scaling::PowersOfTwo));

TEST(CanonicalForm, ScalingChangesExponentsAndNothingElse)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    const nuv::Variable y = model.AddVariable("y");
    model.Add(3000.7 * x + 0.001 * y <= 77.77);
    model.Add(0.3 * x + 5e-7 * y <= 0.123);
    model.Maximize(1e6 * x + 0.7 * y);
    const nuv::BoundedForm form = nuv::FormOf(model);
    const nuv::Canonicalisation plain = nuv::ToCanonicalForm(form);
    const nuv::Canonicalisation scaled = nuv::ToCanonicalForm(form, nuv::Scaling::PowersOfTwo);
    const auto mantissas = [](const std::vector<double>& values)
    {
        std::vector<std::uint64_t> bits;
        for (const double value : values)
            bits.push_back(std::bit_cast<std::uint64_t>(value) & 0x800FFFFFFFFFFFFFU);
        return bits;
    };
    EXPECT_EQ(mantissas(plain.form.byRow.value), mantissas(scaled.form.byRow.value));
    EXPECT_EQ(mantissas(plain.form.rhs), mantissas(scaled.form.rhs));
    EXPECT_EQ(mantissas(plain.form.cost), mantissas(scaled.form.cost));
    EXPECT_NE(plain.form.byRow.value, scaled.form.byRow.value);
}

TEST(CanonicalForm, EachKindOfVariableAndRowHasItsShape)
{
    nuv::Model model;
    const nuv::Variable shifted = model.AddVariable("shifted", {-3.0, kInfinity});
    const nuv::Variable boxed = model.AddVariable("boxed", {1.0, 4.0});
    const nuv::Variable mirrored = model.AddVariable("mirrored", {-kInfinity, 5.0});
    const nuv::Variable free = model.AddVariable("free", {-kInfinity, kInfinity});
    const nuv::Variable fixed = model.AddVariable("fixed", {2.0, 2.0});
    model.Add(nuv::Range(1.0, shifted + boxed + mirrored + free + fixed, 9.0));
    model.Minimize(shifted);
    const nuv::Canonicalisation canonicalised = nuv::ToCanonicalForm(nuv::FormOf(model));
    EXPECT_EQ(canonicalised.columns[0].kind, ColumnKind::Shifted);
    EXPECT_EQ(canonicalised.columns[1].kind, ColumnKind::Shifted);
    EXPECT_EQ(canonicalised.columns[2].kind, ColumnKind::Mirrored);
    EXPECT_EQ(canonicalised.columns[3].kind, ColumnKind::Split);
    EXPECT_EQ(canonicalised.columns[4].kind, ColumnKind::Fixed);
    EXPECT_EQ(canonicalised.form.columns, 5U);
    // shifted + boxed - mirrored + free - free' <= 9 + 3 - 1 - 5 - 2, the same negated, and the
    // box.
    EXPECT_EQ(canonicalised.form.rhs, (std::vector<double>{4.0, 4.0, 3.0}));
    EXPECT_EQ(canonicalised.form.byRow.value,
              (std::vector<double>{1, 1, -1, 1, -1, -1, -1, 1, -1, 1, 1}));
    EXPECT_EQ(canonicalised.form.cost, (std::vector<double>{-1, 0, 0, 0, 0}));
}

TEST(CanonicalForm, ABasisIsTakenBackToWhereEachVariableRests)
{
    nuv::Model model;
    const nuv::Variable boxed = model.AddVariable("boxed", {1.0, 4.0});
    const nuv::Variable mirrored = model.AddVariable("mirrored", {-kInfinity, 5.0});
    model.Add(nuv::Range(1.0, boxed + mirrored, 9.0));
    const nuv::Canonicalisation canonicalised = nuv::ToCanonicalForm(nuv::FormOf(model));
    // Columns: 1 boxed, 2 mirrored; slacks: 3 upper side, 4 lower side, 5 boxed's upper bound.
    using enum nuv::BasisStatus;
    const nuv::Basis slack = nuv::FromCanonicalBasis(canonicalised, std::vector<Index>{3, 4, 5});
    EXPECT_EQ(slack.columns, (std::vector{AtLower, AtUpper}));
    EXPECT_EQ(slack.rows, (std::vector{Basic}));
    const nuv::Basis atUpper = nuv::FromCanonicalBasis(canonicalised, std::vector<Index>{3, 4, 1});
    EXPECT_EQ(atUpper.columns, (std::vector{AtUpper, AtUpper}));
    EXPECT_EQ(atUpper.rows, (std::vector{Basic}));
    const nuv::Basis tight = nuv::FromCanonicalBasis(canonicalised, std::vector<Index>{2, 4, 5});
    EXPECT_EQ(tight.columns, (std::vector{AtLower, Basic}));
    EXPECT_EQ(tight.rows, (std::vector{AtUpper}));
}

TEST(CanonicalForm, ReportsWhatBinary32CannotHold)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    const nuv::Variable y = model.AddVariable("y");
    model.Add(0.5 * x + 0.1 * y <= 3.0);
    model.Add(x + 1e300 * y <= 16777217.0);
    model.Maximize(x + y);
    const nuv::Binary32Report report =
        nuv::ReportBinary32(nuv::ToCanonicalForm(nuv::FormOf(model)));
    EXPECT_EQ(report.numbers, 8U);
    EXPECT_EQ(report.inexact, 3U);
    EXPECT_EQ(report.overflowing, 1U);
    EXPECT_EQ(report.row, 1U);
    EXPECT_EQ(report.column, 1U);
    EXPECT_NEAR(report.largestRelativeChange, 1.0 / 16777217.0, 1e-15);
}

/// Of each kind of variable and row, with numbers too large in several places: the first is named
/// by the row and the column of the model.
TEST(CanonicalForm, ReportsNumbersByTheRowsAndColumnsOfTheModel)
{
    using nuv::Infinity;
    const auto report = [](int spoilt)
    {
        nuv::Model model;
        const auto number = [spoilt](int place) { return place == spoilt ? 1e300 : 1.0; };
        const nuv::Variable shifted = model.AddVariable("shifted");
        const nuv::Variable boxed = model.AddVariable("boxed", {0, number(0)});
        const nuv::Variable free = model.AddVariable("free", {-Infinity, Infinity});
        const nuv::Variable fixed = model.AddVariable("fixed", {2, 2});
        model.Add(number(1) * shifted + boxed + fixed >= 1);
        model.Add(nuv::Range(-1, number(2) * free + shifted, 5));
        model.Maximize(number(3) * boxed - free);
        return nuv::ReportBinary32(nuv::ToCanonicalForm(nuv::FormOf(model)));
    };
    EXPECT_EQ(report(-1).overflowing, 0U);
    EXPECT_EQ(report(0).column, 1U) << "the row is that of a bound";
    EXPECT_EQ(report(1).row, 0U);
    EXPECT_EQ(report(1).column, 0U);
    EXPECT_EQ(report(2).row, 1U);
    EXPECT_EQ(report(2).column, 2U);
    EXPECT_EQ(report(2).overflowing, 4U) << "both sides, both halves";
    EXPECT_EQ(report(3).column, 1U);
}

TEST(CanonicalForm, IsScaledWithoutAStoredZero)
{
    nuv::Model model;
    const nuv::Variable x = model.AddVariable("x");
    const nuv::Variable y = model.AddVariable("y");
    model.Add(4 * x + 64 * y <= 3);
    model.Add(2 * x <= 5);
    model.Maximize(x + y);
    nuv::BoundedForm form = nuv::FormOf(model);
    const nuv::Canonicalisation without = nuv::ToCanonicalForm(form, nuv::Scaling::PowersOfTwo);
    nuv::SparseVectors<double> columns = form.matrix.Columns();
    columns.Close();
    nuv::SparseVectors<double> stored;
    for (Index j = 0; j < 2; ++j)
    {
        for (const auto [row, entry] : form.matrix.Column(j))
            stored.Append(row, entry);
        if (j == 1)
            stored.Append(1, 0.0);
        stored.Close();
    }
    form.matrix = nuv::SparseMatrix<double>::FromColumns(std::move(stored), 2);
    const nuv::Canonicalisation with = nuv::ToCanonicalForm(form, nuv::Scaling::PowersOfTwo);
    EXPECT_EQ(with.form.rhs, without.form.rhs);
    EXPECT_EQ(with.form.cost, without.form.cost);
}

}  // namespace
