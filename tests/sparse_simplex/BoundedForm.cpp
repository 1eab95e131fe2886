/// The bounded form and bases of it: what counts as wrong, what a restriction keeps, where
/// variables rest.
#include "Nuv/SparseSimplex/Basis.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <vector>

namespace nuv::test
{
namespace
{

/// x + 2 y in [1, 8] and -y <= 3, with x >= 0 and y in [-1, 5].
BoundedForm TwoRows()
{
    return MakeForm({1, -1}, {{{1, 2}, {1, 8}}, {{0, -1}, {-kInf, 3}}}, {{0, kInf}, {-1, 5}});
}

TEST(BoundedForm, SeesLogicalsAsColumnsOfMinusOne)
{
    const BoundedForm form = TwoRows();
    ASSERT_EQ(form.Variables(), 4U);
    EXPECT_FALSE(form.IsLogical(1));
    EXPECT_TRUE(form.IsLogical(2));
    EXPECT_EQ(form.Logical(1), 3U);
    EXPECT_EQ(form.RowOf(3), 1U);
    EXPECT_EQ(form.Upper(3), 3.0);
    EXPECT_EQ(form.Cost(3), 0.0);
    const auto columns = ColumnsWithLogicals<double>(form, [](Index variable, Index, double entry)
                                                     { return 10.0 * variable + entry; });
    ASSERT_EQ(columns.Count(), 4U);
    EXPECT_EQ(columns.index, (std::vector<Index>{0, 0, 1, 0, 1}));
    EXPECT_EQ(columns.value, (std::vector<double>{1, 12, 9, 19, 29}));
}

TEST(BoundedForm, NamesItsDefects)
{
    EXPECT_EQ(TwoRows().Defect(), "");
    BoundedForm form = TwoRows();
    form.cost.pop_back();
    EXPECT_EQ(form.Defect(), "column arrays of the wrong length");
    form = TwoRows();
    form.rowUpper.push_back(0.0);
    EXPECT_EQ(form.Defect(), "row arrays of the wrong length");
    form = TwoRows();
    form.matrix = SparseMatrix<double>::FromColumns(form.matrix.Columns(), 3);
    EXPECT_EQ(form.Defect(), "matrix entries out of range or out of order");
    form = TwoRows();
    SparseVectors<double> twice = form.matrix.Columns();
    twice.index[2] = 0;  // column y names row 0 twice
    form.matrix = SparseMatrix<double>::FromColumns(twice, 2);
    EXPECT_EQ(form.Defect(), "matrix entries out of range or out of order");
    form = MakeForm({1}, {{{1}, {0, 1}}, {{2}, {0, 1}}});
    SparseVectors<double> turned = form.matrix.Columns();
    std::ranges::reverse(turned.index);
    form.matrix = SparseMatrix<double>::FromColumns(turned, 2);
    EXPECT_EQ(form.Defect(), "matrix entries out of range or out of order");
    form = TwoRows();
    form.cost[0] = kInf;
    EXPECT_EQ(form.Defect(), "a coefficient is not finite");
    form = TwoRows();
    form.columnLower[1] = kInf;
    EXPECT_EQ(form.Defect(), "a bound is NaN or infinite on the wrong side");
    form = TwoRows();
    form.rowUpper[1] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(form.Defect(), "a bound is NaN or infinite on the wrong side");
}

/// By the variable and then the lower bound first; by what it is of, the row and the column.
TEST(BoundedForm, BoundsAndPlacesAreOrdered)
{
    const std::vector<BoundOfVariable> bounds = {{0, false}, {0, true}, {1, false}, {1, true}};
    using Of = FormPlace::Of;
    const std::vector<FormPlace> places = {{Of::Cost, 0, 0},  {Of::Cost, 1, 0},  {Of::Entry, 0, 0},
                                           {Of::Entry, 0, 1}, {Of::Entry, 1, 0}, {Of::Entry, 1, 1}};
    const auto expectOrdered = [](const auto& items)
    {
        for (std::size_t i = 0; i < items.size(); ++i)
        {
            for (std::size_t k = 0; k < items.size(); ++k)
            {
                EXPECT_EQ(items[i] < items[k], i < k) << i << ' ' << k;
                EXPECT_EQ(items[i] == items[k], i == k) << i << ' ' << k;
            }
        }
    };
    expectOrdered(bounds);
    expectOrdered(places);
}

/// What the form says of its matrix after `spoil` has been at the columns.
template <class Spoil>
std::string DefectOfMatrix(Spoil spoil)
{
    BoundedForm form = TwoRows();
    SparseVectors<double> columns = form.matrix.Columns();
    spoil(columns);
    form.matrix = SparseMatrix<double>::FromColumns(columns, form.rows);
    return form.Defect();
}

TEST(BoundedForm, NamesArraysThatAreNotOfItsShape)
{
    for (std::vector<double> BoundedForm::*const numbers :
         {&BoundedForm::columnLower, &BoundedForm::columnUpper})
    {
        BoundedForm form = TwoRows();
        (form.*numbers).push_back(0.0);
        EXPECT_EQ(form.Defect(), "column arrays of the wrong length");
    }
    BoundedForm form = TwoRows();
    form.rowLower.pop_back();
    EXPECT_EQ(form.Defect(), "row arrays of the wrong length");
    form = TwoRows();
    form.columns = kNoIndex - 2;
    EXPECT_EQ(form.Defect(), "too many rows and columns");
    form.columns = kNoIndex - 3;
    EXPECT_EQ(form.Defect(), "column arrays of the wrong length");
    form = TwoRows();
    form.constant = kInf;
    EXPECT_EQ(form.Defect(), "a coefficient is not finite");
    form = TwoRows();
    SparseVectors<double> three = form.matrix.Columns();
    three.Close();
    form.matrix = SparseMatrix<double>::FromColumns(three, 2);
    EXPECT_EQ(form.Defect(), "matrix entries out of range or out of order");
    EXPECT_EQ(DefectOfMatrix([](auto&) {}), "");
    EXPECT_EQ(DefectOfMatrix([](auto& columns) { columns.value[2] = kInf; }),
              "a coefficient is not finite");
}

TEST(BoundedForm, FindsTheFirstVariableWhoseBoundsCross)
{
    BoundedForm form = TwoRows();
    EXPECT_EQ(FindCrossedBounds(form), kNoIndex);
    form.rowLower[1] = 3.0;
    EXPECT_EQ(FindCrossedBounds(form), kNoIndex) << "equal bounds do not cross";
    form.rowLower[1] = 3.5;
    EXPECT_EQ(FindCrossedBounds(form), 3U);
    form.columnLower[1] = 6.0;
    EXPECT_EQ(FindCrossedBounds(form), 1U);
}

TEST(BoundedForm, RestrictedKeepsTheBoundsNamedAndTheDefaultOnesAndNoCost)
{
    const BoundedForm form = TwoRows();
    const BoundedForm restricted =
        RestrictedTo(form, std::vector<BoundOfVariable>{{1, false}, {2, true}, {2, false}});
    EXPECT_EQ(restricted.Defect(), "");
    EXPECT_EQ(restricted.cost, (std::vector<double>{0, 0}));
    EXPECT_EQ(restricted.columnLower, (std::vector<double>{0, -1})) << "0 is a default";
    EXPECT_EQ(restricted.columnUpper, (std::vector<double>{kInf, kInf}));
    EXPECT_EQ(restricted.rowLower, (std::vector<double>{1, -kInf}));
    EXPECT_EQ(restricted.rowUpper, (std::vector<double>{8, kInf}));
    EXPECT_EQ(restricted.matrix.Columns(), form.matrix.Columns());
}

TEST(BoundedForm, AppendsAColumnWithItsExactNumbersAndASign)
{
    BoundedForm form = TwoRows();
    form.exact.Set({FormPlace::Of::Entry, 0, 1}, Rational(7, 3));
    for (const double sign : {1.0, -1.0})
    {
        SparseVectors<double> columns = form.matrix.Columns();
        ExactTable exact;
        AppendColumnOf(form, 1, sign, columns, exact);
        EXPECT_EQ(columns.Count(), 3U);
        EXPECT_EQ(columns.value.back(), -sign);
        ASSERT_NE(exact.Find({FormPlace::Of::Entry, 0, 2}), nullptr);
        EXPECT_EQ(*exact.Find({FormPlace::Of::Entry, 0, 2}),
                  sign > 0 ? Rational(7, 3) : Rational(-7, 3));
        EXPECT_EQ(exact.Find({FormPlace::Of::Entry, 1, 2}), nullptr);
    }
}

/// The point's activity is infinity less infinity: no number, and so at no bound.
TEST(StartBasis, ARowWhoseActivityIsNoNumberIsNotTakenForBasicNorForTight)
{
    const BoundedForm form = MakeForm({1, 1}, {{{1e10, -1e10}, {-3, kInf}}, {{1, 1}, {1, kInf}}});
    const Basis basis = BasisNear(form, std::vector<double>{1e308, 1e308});
    EXPECT_EQ(basis.rows[0], BasisStatus::AtLower);
    EXPECT_EQ(std::ranges::count(basis.columns, BasisStatus::Basic) +
                  std::ranges::count(basis.rows, BasisStatus::Basic),
              2);
}

TEST(Basis, NonbasicVariablesRestAtTheFiniteBoundNearerToZero)
{
    EXPECT_EQ(DefaultNonbasicStatus(0, kInf), BasisStatus::AtLower);
    EXPECT_EQ(DefaultNonbasicStatus(-kInf, 4), BasisStatus::AtUpper);
    EXPECT_EQ(DefaultNonbasicStatus(-kInf, kInf), BasisStatus::Free);
    EXPECT_EQ(DefaultNonbasicStatus(-5, 1), BasisStatus::AtUpper);
    EXPECT_EQ(DefaultNonbasicStatus(-1, 5), BasisStatus::AtLower);
    EXPECT_EQ(DefaultNonbasicStatus(-2, 2), BasisStatus::AtLower);
}

TEST(Basis, DualInfeasibilityIsWhatMovingOffTheBoundWouldGain)
{
    EXPECT_EQ(DualInfeasibility(BasisStatus::AtLower, -2), 2.0);
    EXPECT_EQ(DualInfeasibility(BasisStatus::AtLower, 2), -2.0);
    EXPECT_EQ(DualInfeasibility(BasisStatus::AtUpper, 2), 2.0);
    EXPECT_EQ(DualInfeasibility(BasisStatus::AtUpper, -2), -2.0);
    EXPECT_EQ(DualInfeasibility(BasisStatus::Free, -2), 2.0);
    EXPECT_EQ(DualInfeasibility(BasisStatus::Free, 2), 2.0);
    EXPECT_LT(DualInfeasibility(BasisStatus::Basic, -2), 0.0);
}

TEST(Basis, AnyBasisIsMadeToFit)
{
    const BoundedForm form = TwoRows();
    Basis basis;
    FitBasis(form, basis);
    EXPECT_EQ(basis, SlackBasis(form));
    // x cannot rest at an upper bound that it has not, and three basic variables are one too many.
    basis.columns = {BasisStatus::AtUpper, BasisStatus::Basic};
    basis.rows = {BasisStatus::Basic, BasisStatus::Basic, BasisStatus::Basic};
    FitBasis(form, basis);
    EXPECT_EQ(basis.columns, (std::vector{BasisStatus::AtLower, BasisStatus::Basic}));
    EXPECT_EQ(basis.rows, (std::vector{BasisStatus::Basic, BasisStatus::AtUpper}));
}

}  // namespace
}  // namespace nuv::test
