// Whether optima are unique, against the enumeration of all basic solutions of the optimal faces.
#include "Nuv/Solve/Uniqueness.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "tests/support/BruteForce.hpp"
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

namespace nuv::test
{
namespace
{

/// The form and a row for its cost, which is kept at a value.
BoundedForm OnFace(const BoundedForm& form, const Fraction& value)
{
    BoundedForm face = form;
    SparseVectors<double> rows = form.matrix.Rows();
    for (Index j = 0; j < form.columns; ++j)
    {
        const double entry = form.cost[j] * static_cast<double>(value.denominator);
        if (entry != 0.0)
            rows.Append(j, entry);
    }
    rows.Close();
    ++face.rows;
    face.rowLower.push_back(static_cast<double>(value.numerator));
    face.rowUpper.push_back(static_cast<double>(value.numerator));
    face.matrix = SparseMatrix<double>::FromRows(rows, form.columns);
    face.constant = 0.0;
    return face;
}

/// Whether the sum of two columns with these signs has but one value on the face.
bool HasOneValue(BoundedForm face, const std::vector<std::pair<Index, double>>& terms)
{
    Fraction values[2];
    for (const int side : {0, 1})
    {
        face.cost.assign(face.columns, 0.0);
        for (const auto& [column, sign] : terms)
            face.cost[column] = side == 0 ? sign : -sign;
        const BruteForceResult result = SolveByEnumeration(face);
        if (result.verdict != Verdict::Optimal)
            return false;
        values[side] = result.objective;
    }
    return values[0].numerator * values[1].denominator ==
           -values[1].numerator * values[0].denominator;
}

bool PointIsUnique(const BoundedForm& form, const Fraction& optimum)
{
    const BoundedForm face = OnFace(form, optimum);
    for (Index j = 0; j < form.columns; ++j)
        if (!HasOneValue(face, {{j, 1.0}}))
            return false;
    return true;
}

/// The dual program: y and d as differences of multipliers of the lower and the upper sides, one of
/// either sign for what is fixed, A' y + d = cost, minimising minus what they prove.
struct DualProgram
{
    BoundedForm form;
    std::vector<std::vector<std::pair<Index, double>>> duals;  ///< by row
};

DualProgram DualOf(const BoundedForm& form)
{
    DualProgram dual;
    dual.form.rows = form.columns;
    SparseVectors<double> columns;
    const auto append = [&](Index v, double sign, Interval bounds, double side)
    {
        if (form.IsLogical(v))
        {
            for (const auto [column, entry] : form.matrix.Row(form.RowOf(v)))
                columns.Append(column, sign * entry);
            dual.duals[form.RowOf(v)].emplace_back(columns.Count(), sign);
        }
        else
            columns.Append(v, sign);
        columns.Close();
        dual.form.cost.push_back(-sign * side);
        dual.form.columnLower.push_back(bounds.lower);
        dual.form.columnUpper.push_back(bounds.upper);
    };
    dual.duals.resize(form.rows);
    for (Index v = 0; v < form.Variables(); ++v)
    {
        if (form.IsFixed(v))
            append(v, 1.0, {-kInf, kInf}, form.Lower(v));
        else
        {
            if (std::isfinite(form.Lower(v)))
                append(v, 1.0, {0.0, kInf}, form.Lower(v));
            if (std::isfinite(form.Upper(v)))
                append(v, -1.0, {0.0, kInf}, form.Upper(v));
        }
    }
    dual.form.columns = static_cast<Index>(dual.form.cost.size());
    dual.form.rowLower = form.cost;
    dual.form.rowUpper = form.cost;
    dual.form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), dual.form.rows);
    return dual;
}

bool DualsAreUnique(const BoundedForm& form, const Fraction& optimum)
{
    const DualProgram dual = DualOf(form);
    const BoundedForm face = OnFace(dual.form, {-optimum.numerator, optimum.denominator});
    for (const auto& terms : dual.duals)
        if (!HasOneValue(face, terms))
            return false;
    return true;
}

TEST(Uniqueness, IsWhatEnumerationOfTheOptimalFacesSays)
{
    int seen[2][2] = {};
    for (std::uint64_t seed = 1; seed <= ShareOf(4000U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        BoundedForm form = RandomSmallForm(random, static_cast<Index>(random.Between(1, 2)),
                                           static_cast<Index>(random.Between(1, 3)));
        form.constant = 0.0;
        const BruteForceResult expected = SolveByEnumeration(form);
        if (expected.verdict != Verdict::Optimal)
            continue;
        SolveControl control;
        const CertifiedResult optimum = SolveCertified(form, nullptr, control);
        ASSERT_EQ(optimum.certificate.status, Status::Optimal);
        const UniqueOptimum unique = FindUniqueness(form, optimum, control);
        const bool point = PointIsUnique(form, expected.objective);
        // Of three columns the enumeration of the dual program takes too long.
        const bool duals = form.columns < 3 ? DualsAreUnique(form, expected.objective)
                                            : unique.duals == Uniqueness::Unique;
        ASSERT_EQ(unique.point, point ? Uniqueness::Unique : Uniqueness::NotUnique);
        ASSERT_EQ(unique.duals, duals ? Uniqueness::Unique : Uniqueness::NotUnique);
        ++seen[point ? 1 : 0][duals ? 1 : 0];
    }
    for (const auto& row : seen)
        for (const int count : row)
            EXPECT_GT(count, static_cast<int>(ShareOf(4000U)) / 100);
}

/// The second column is worth less than the first by a third of the smallest double's size.
TEST(Uniqueness, IsDecidedOfNumbersThatNoDoubleSays)
{
    SolveOptions options;
    options.uniqueness = true;
    const auto unique = [&options](const std::string& costs)
    {
        const ReadResult reading = ReadLp("max " + costs + " st r: x + y <= 1\nend", "unique.lp");
        return Solve(*reading.model, options).unique.point;
    };
    EXPECT_EQ(unique("0.33333333333333333 x + 0.33333333333333333 y"), Uniqueness::NotUnique);
    EXPECT_EQ(unique("1/3 x + 0.33333333333333333333 y"), Uniqueness::Unique);
    EXPECT_EQ(unique("1/3 x + 1/3 y"), Uniqueness::NotUnique);
    options.uniqueness = false;
    EXPECT_EQ(unique("x"), Uniqueness::Unknown);
}

/// A free variable of no cost that rests outside the basis may go both ways, unless rows hold it.
TEST(Uniqueness, LooksBothWaysAlongFreeVariables)
{
    const auto unique = [](const BoundedForm& form)
    {
        SolveControl control;
        return FindUniqueness(form, SolveCertified(form, nullptr, control), control).point;
    };
    const Interval any{-kInf, kInf};
    EXPECT_EQ(unique(MakeForm({0}, {}, {any})), Uniqueness::NotUnique);
    EXPECT_EQ(unique(MakeForm({0}, {{{1}, {0, 0}}}, {any})), Uniqueness::Unique);
    EXPECT_EQ(unique(MakeForm({0}, {{{1}, {0, kInf}}, {{1}, {-kInf, 0}}}, {any})),
              Uniqueness::Unique);
    EXPECT_EQ(unique(MakeForm({0}, {{{1}, {-kInf, 0}}}, {any})), Uniqueness::NotUnique);
}

/// x / 3 + y / 7 <= 0 at x in the basis: the point is the only one, its dual may be any of one
/// sign.
TEST(Uniqueness, IsDecidedOfCoefficientsThatNoDoubleSays)
{
    BoundedForm form = MakeForm({0, 0}, {{{1 / 3.0, 1 / 7.0}, {-kInf, 0}}});
    form.exact.Set({FormPlace::Of::Entry, 0, 0}, Rational(1, 3));
    form.exact.Set({FormPlace::Of::Entry, 0, 1}, Rational(1, 7));
    form.exact.Set({FormPlace::Of::ColumnUpper, 0}, Rational(1, 3));
    form.columnUpper[0] = 1 / 3.0;
    Basis basis = SlackBasis(form);
    basis.columns[0] = BasisStatus::Basic;
    basis.rows[0] = BasisStatus::AtUpper;
    SolveControl control;
    const CertifiedResult optimum = CertifyBasis(form, basis, control);
    ASSERT_TRUE(optimum.record.proved);
    const UniqueOptimum unique = FindUniqueness(form, optimum, control);
    EXPECT_EQ(unique.point, Uniqueness::Unique);
    EXPECT_EQ(unique.duals, Uniqueness::NotUnique);
}

TEST(Uniqueness, IsOfAnOptimumAlone)
{
    const BoundedForm form = MakeForm({1}, {{{1}, {-kInf, -1}}});
    SolveControl control;
    const CertifiedResult infeasible = SolveCertified(form, nullptr, control);
    ASSERT_TRUE(infeasible.record.proved);
    EXPECT_EQ(FindUniqueness(form, infeasible, control).point, Uniqueness::Unknown);
    EXPECT_EQ(FindUniqueness(form, infeasible, control).duals, Uniqueness::Unknown);
}

TEST(Uniqueness, IsNotKnownOfASolveThatIsStopped)
{
    const BoundedForm form = MakeForm({-1, -1}, {{{1, 1}, {-kInf, 4}}});
    SolveControl control;
    const CertifiedResult optimum = SolveCertified(form, nullptr, control);
    SolveLimits limits;
    limits.seconds = 0.0;
    SolveControl stopped(limits);
    EXPECT_EQ(FindUniqueness(form, optimum, stopped).point, Uniqueness::Unknown);
    EXPECT_EQ(FindUniqueness(form, CertifiedResult(), control).point, Uniqueness::Unknown);
}

}  // namespace
}  // namespace nuv::test
