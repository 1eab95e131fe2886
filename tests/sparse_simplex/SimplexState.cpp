/// What both simplex methods stand on: the scaled form, the factors of a basis, and the values,
/// reduced costs and rows that follow from them, each against its definition.
#include "Nuv/SparseSimplex/SimplexState.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/SparseLu.hpp"
#include "Nuv/SparseSimplex/BasisFactors.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <vector>

namespace nuv::test
{
namespace
{

bool IsPowerOfTwo(double value)
{
    int exponent = 0;
    return std::frexp(value, &exponent) == 0.5;
}

/// Rows and columns in units of their own, from 1e-5 to 1e5.
BoundedForm BadlyScaled(Random& random, Index rows, Index columns)
{
    BoundedForm form = RandomSparseForm(random, rows, columns);
    std::vector<double> unit(form.Variables());
    for (double& factor : unit)
        factor = std::pow(10.0, random.Between(-5, 5));
    form.matrix = SparseMatrix<double>::FromColumns(
        Mapped<double>(form.matrix.Columns(), [&](Index column, Index row, double entry)
                       { return entry * unit[column] * unit[form.Logical(row)]; }),
        rows);
    return form;
}

TEST(ScaledForm, ScalesByPowersOfTwoTowardsOne)
{
    Random random(1);
    const BoundedForm form = BadlyScaled(random, 20, 30);
    const ScaledForm scaled(form);
    double before = 0.0;
    double after = 0.0;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        ASSERT_TRUE(IsPowerOfTwo(scaled.Scale(v)));
        EXPECT_EQ(scaled.lower[v] * scaled.Scale(v), form.Lower(v));
        EXPECT_EQ(scaled.upper[v] * scaled.Scale(v), form.Upper(v));
        EXPECT_EQ(scaled.cost[v] / scaled.Scale(v) / scaled.costScale, form.Cost(v));
    }
    for (Index j = 0; j < form.columns; ++j)
    {
        const auto original = form.matrix.Columns().Values(j);
        std::size_t at = 0;
        for (const auto [row, entry] : scaled.Column(j))
        {
            // Column times its factor, row by the inverse of its logical's.
            EXPECT_EQ(entry, original[at] * scaled.Scale(j) / scaled.Scale(scaled.Logical(row)));
            before += std::fabs(std::log2(std::fabs(original[at++])));
            after += std::fabs(std::log2(std::fabs(entry)));
        }
    }
    EXPECT_LT(after, 0.3 * before);
}

TEST(ScaledForm, TakesAStoredZeroForNoEntry)
{
    Random random(3);
    BoundedForm form = BadlyScaled(random, 9, 12);
    const ScaledForm scaled(form);
    SparseVectors<double> columns;
    for (Index j = 0; j < form.columns; ++j)
    {
        std::vector<bool> isTaken(form.rows, false);
        for (const auto [row, entry] : form.matrix.Column(j))
        {
            columns.Append(row, entry);
            isTaken[row] = true;
        }
        const auto free = std::ranges::find(isTaken, false) - isTaken.begin();
        if (free < static_cast<std::ptrdiff_t>(form.rows))
            columns.Append(static_cast<Index>(free), 0.0);
        columns.Close();
    }
    form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    EXPECT_EQ(ScaledForm(form).matrix->scale, scaled.matrix->scale);
}

TEST(ScaledForm, BringsTheLargestEntryOfEachRowToOne)
{
    Random random(2);
    const BoundedForm form = BadlyScaled(random, 20, 30);
    const ScaledForm scaled(form);
    for (Index i = 0; i < form.rows; ++i)
    {
        double largest = 0.0;
        for (const auto [column, entry] : scaled.Row(i))
            largest = std::max(largest, std::fabs(entry));
        // The nearest power of two.
        EXPECT_GE(largest, 0.5);
        EXPECT_LT(largest, 1.5);
    }
}

TEST(ScaledForm, HoldsTheSameMatrixBothWaysAndLogicalsAsMinusOne)
{
    Random random(2);
    const ScaledForm scaled(BadlyScaled(random, 12, 9));
    std::vector<std::vector<double>> dense(12, std::vector<double>(9, 0.0));
    for (Index j = 0; j < 9; ++j)
    {
        for (const auto [row, entry] : scaled.Column(j))
            dense[row][j] = entry;
    }
    for (Index i = 0; i < 12; ++i)
    {
        for (const auto [column, entry] : scaled.Row(i))
        {
            EXPECT_EQ(entry, dense[i][column]);
            dense[i][column] = 0.0;
        }
        EXPECT_EQ(dense[i], std::vector<double>(9, 0.0)) << "an entry is in its column alone";
        ASSERT_EQ(scaled.Column(scaled.Logical(i)).size(), 1U);
        for (const auto [row, entry] : scaled.Column(scaled.Logical(i)))
        {
            EXPECT_EQ(row, i);
            EXPECT_EQ(entry, -1.0);
        }
    }
}

TEST(ScaledForm, CopiesShareTheMatrixAndTakeBoundsOfTheirOwn)
{
    Random random(3);
    BoundedForm form = BadlyScaled(random, 5, 5);
    const ScaledForm scaled(form);
    form.columnUpper[2] = 77.0;
    ScaledForm copy = scaled;
    copy.SetBounds(form);
    EXPECT_EQ(copy.matrix, scaled.matrix);
    EXPECT_EQ(copy.upper[2] * copy.Scale(2), 77.0);
    EXPECT_EQ(copy.upper, ScaledForm(form).upper);
    EXPECT_NE(copy.upper[2], scaled.upper[2]);
}

TEST(ScalableForm, IsScaledOnceAndOnlyIfWanted)
{
    Random random(3);
    const BoundedForm form = BadlyScaled(random, 5, 5);
    ScalableForm scalable(form);
    EXPECT_EQ(&scalable.Form(), &form);
    const ScaledForm& first = scalable.Scaled();
    EXPECT_EQ(&scalable.Scaled(), &first);
    EXPECT_EQ(first.matrix->scale, ScaledForm(form).matrix->scale);
    ScalableForm given(form, first);
    EXPECT_EQ(given.Scaled().matrix, first.matrix);
}

/// A random basis: some columns made basic, made to fit.
Basis SomeBasis(Random& random, const BoundedForm& form)
{
    Basis basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = random.OneIn(2) ? BasisStatus::Basic : basis[v];
    FitBasis(form, basis);
    return basis;
}

TEST(SimplexState, ValuesSatisfyTheRowsWhateverTheBasis)
{
    for (std::uint64_t seed = 1; seed <= 30; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSparseForm(random, 15, 20);
        const ScaledForm scaled(form);
        SimplexState state(scaled, SomeBasis(random, form));
        state.Refactorise();
        std::vector<double> activity(form.rows, 0.0);
        double largest = 1.0;
        Index basics = 0;
        for (Index v = 0; v < form.Variables(); ++v)
        {
            for (const auto [row, entry] : scaled.Column(v))
                activity[row] += entry * state.value[v];
            largest = std::max(largest, std::fabs(state.value[v]));
            basics += state.status[v] == BasisStatus::Basic ? 1 : 0;
            if (state.status[v] == BasisStatus::AtLower)
            {
                EXPECT_EQ(state.value[v], state.lower[v]);
            }
        }
        for (const double sum : activity)
            EXPECT_NEAR(sum, 0.0, 1e-9 * largest);
        EXPECT_EQ(basics, form.rows);
        for (const Index v : state.head)
            EXPECT_EQ(state.status[v], BasisStatus::Basic);
    }
}

TEST(SimplexState, ReducedCostsAndRowsAreThoseOfTheDefinition)
{
    for (std::uint64_t seed = 1; seed <= 30; ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const BoundedForm form = RandomSparseForm(random, 12, 16);
        const ScaledForm scaled(form);
        SimplexState state(scaled, SomeBasis(random, form));
        state.Refactorise();
        std::vector<double> basicCost;
        for (const Index v : state.head)
            basicCost.push_back(state.cost[v]);
        state.ComputeReducedCosts(state.cost, basicCost);
        WorkVector row;
        WorkVector inverseRow;
        WorkVector column;
        for (Index v = 0; v < form.Variables(); ++v)
        {
            if (state.status[v] == BasisStatus::Basic)
            {
                EXPECT_EQ(state.reduced[v], 0.0);
                continue;
            }
            // d_v = c_v - c_B . (the column of v in terms of the basis)
            state.SolveColumn(v, column);
            double expected = state.cost[v];
            for (Index k = 0; k < form.rows; ++k)
                expected -= basicCost[k] * column.value[k];
            EXPECT_NEAR(state.reduced[v], expected, 1e-8 * (1.0 + std::fabs(expected)));
            for (Index k = 0; k < form.rows; k += 5)
            {
                state.SolveUnitRow(k, inverseRow);
                state.PriceRow(inverseRow, row);
                if (state.IsFixed(v))
                    continue;
                EXPECT_NEAR(row.value[v], column.value[k],
                            1e-8 * (1.0 + std::fabs(column.value[k])));
            }
        }
    }
}

/// A vector by rows with ones at these places.
WorkVector Ones(Index size, const std::vector<Index>& places)
{
    WorkVector vector;
    vector.Reset(size);
    for (const Index at : places)
        vector.Set(at, 1.0);
    return vector;
}

/// Entries that cancel are listed once, and nothing is left behind for the next row. The last rows
/// are there so that one row is few of them, which goes by rows, and five are many.
TEST(SimplexState, APricedRowListsEachPlaceOnce)
{
    std::vector<DenseRow> rows = {{{1, 1}, {}}, {{-1, 1}, {}}, {{1, 0}, {}}};
    rows.resize(12, {{0, 0}, {}});
    const BoundedForm form = MakeForm({0, 0}, rows);
    const ScaledForm scaled(form);
    Basis start = SlackBasis(form);
    // No column is basic, and of the logicals only those that follow.
    std::fill(start.rows.begin(), start.rows.begin() + 3, BasisStatus::Free);
    SimplexState state(scaled, start);
    WorkVector row;
    for (const std::vector<Index>& places :
         {std::vector<Index>{0, 1, 2}, std::vector<Index>{0, 1, 2, 10, 11}})
    {
        state.PriceRow(Ones(form.rows, places), row);
        std::vector<int> times(5, 0);
        for (const Index v : row.touched)
            ++times.at(v);
        EXPECT_EQ(times, (std::vector<int>{1, 1, 1, 1, 1}));
        EXPECT_EQ(row.value[0], 1.0);
        EXPECT_EQ(row.value[1], 2.0);
        EXPECT_EQ(row.value[form.Logical(1)], -1.0);
    }
    state.PriceRow(Ones(form.rows, {2}), row);
    EXPECT_EQ(row.value[1], 0.0);
    EXPECT_EQ(row.touched.size(), 2U);
}

/// The same head over doubles and over residues: the same columns are given up.
/// What rounding leaves in a row is skipped where the row is sparse.
TEST(SimplexState, APricedRowTakesNothingOfWhatRoundingLeft)
{
    std::vector<DenseRow> rows(8, {{1, 2}, {-kInf, 4}});
    const BoundedForm form = MakeForm({1, 1}, rows);
    const ScaledForm scaled(form);
    SimplexState state(scaled, SlackBasis(form));
    state.Refactorise();
    WorkVector sparse;
    sparse.Reset(form.rows);
    sparse.Set(3, 1e-16);
    WorkVector row;
    state.PriceRow(sparse, row);
    EXPECT_TRUE(row.touched.empty());
}

TEST(WorkVector, ListsAPlaceOnceHoweverOftenItIsSet)
{
    WorkVector vector;
    vector.Reset(4);
    vector.Set(2, 1.0);
    vector.Set(2, 3.0);
    EXPECT_EQ(vector.touched, (std::vector<Index>{2}));
    EXPECT_EQ(vector.value[2], 3.0);
    vector.Clear();
    EXPECT_EQ(vector.value[2], 0.0);
}

TEST(FactoriseBasis, ReplacesDependentColumnsAlikeOverEachField)
{
    const BoundedForm form =
        MakeForm({0, 0, 0}, {{{1, 2, 0}, {}}, {{1, 2, 0}, {}}, {{0, 0, 1}, {}}});
    const auto columns =
        ColumnsWithLogicals<double>(form, [](Index, Index, double entry) { return entry; });
    const std::vector<Index> start = {0, 1, 2};
    std::vector<Index> head = start;
    BasisLu doubles;
    const auto replaced = FactoriseBasis(doubles, Selected(columns, head), form.columns, head);
    ASSERT_EQ(replaced.size(), 1U);
    EXPECT_TRUE(replaced[0].dropped == 0 || replaced[0].dropped == 1);
    EXPECT_TRUE(form.IsLogical(replaced[0].logical));
    EXPECT_NE(form.RowOf(replaced[0].logical), 2U);
    EXPECT_EQ(head[form.RowOf(replaced[0].logical)], replaced[0].logical);
    EXPECT_EQ(head[2], 2U) << "the only column with an entry there";

    const PrimeField field(4611686018427387847u);
    std::vector<Index> other = start;
    SparseLu<PrimeField> residues(field);
    const auto modular =
        Mapped<std::uint64_t>(Selected(columns, start), [&field](Index, Index, double entry)
                              { return field.FromSigned(static_cast<std::int64_t>(entry)); });
    EXPECT_EQ(FactoriseBasis(residues, modular, form.columns, other).size(), 1U);
}

}  // namespace
}  // namespace nuv::test
