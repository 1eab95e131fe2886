/// The way to an answer is the same on any machine and in any build: before each pivot the stage
/// and the bits of the objective, at the end the basis, the certificate and all doubles of the
/// record. Other kinds look closer: at all of the state of the simplex in doubles
/// (WaysOfSimplex.cpp), at presolve rule by rule, at the exact stage pivot by pivot and stop by
/// stop. tests/exact/ways.txt has a hash of each kind, with the pivots. A change that is meant to
/// take another way, of a pivot, a tolerance or a rule of presolve, writes it anew:
///
///     NUV_RECORD_WAYS=1 build/release/tests/test_exact_ways
///
/// and says in its commit by how much the pivots changed.
#include "Nuv/Exact/Auxiliary.hpp"
#include "Nuv/Exact/CertifiedSession.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "Nuv/SparseSimplex/DualSimplex.hpp"
#include "Nuv/SparseSimplex/Presolve/Presolve.hpp"
#include "tests/exact/Certified.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

Basis DrawSomeBasis(Random& random, const BoundedForm& form)
{
    Basis basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = static_cast<BasisStatus>(random.Between(0, 3));
    return basis;
}

/// All ways to solve a form, none of which is the short one of small dense forms.
void SolveAllWays(const BoundedForm& form, Random& random, Way& way)
{
    way.Add(Certified(form, nullptr, way.Watched()));
    const Basis start = DrawSomeBasis(random, form);
    way.Add(Certified(form, &start, way.Watched()));
    SolveControl control(way.Watched());
    way.Add(SolveExactly(form, start, control));
    SolveControl limited(way.Watched());
    way.Add(CertifyBasis(form, start, limited));
}

void Ranges(const BoundedForm& form, Way& way)
{
    const CertifiedResult result = Certified(form, nullptr, way.Watched());
    if (result.certificate.status == Status::Optimal)
    {
        const Sensitivity ranges = RangesOf(form, result);
        way.Add(ranges.exact);
        for (const auto* of : {&ranges.cost, &ranges.rowLower, &ranges.rowUpper})
            for (const AllowedRange& range : *of)
            {
                way.Add(range.lower);
                way.Add(range.upper);
            }
    }
    else if (result.certificate.status == Status::Infeasible)
    {
        const InfeasibleBounds conflict = IisOf(form, result, way.Watched());
        way.Add(conflict.work);
        for (const BoundOfVariable& member : conflict.members)
            way.Add(2 * std::uint64_t{member.variable} + (member.upper ? 1 : 0));
    }
    way.Add(result);
}

/// Solves a form that changes in between.
void Edit(BoundedForm form, Random& random, Way& way)
{
    CertifiedSession session(std::move(form), std::nullopt);
    for (int edit = 0; edit < 12; ++edit)
    {
        SolveControl control(way.Watched());
        way.Add(*session.Solve(control));
        const BoundedForm& now = session.Form();
        const auto v = static_cast<Index>(random.Between(0, static_cast<int>(now.Variables()) - 1));
        if (v < now.columns && random.OneIn(2))
            session.SetCost(v, random.Between(-40, 90) / 10.0);
        else if (random.OneIn(2))
            session.SetBounds(v, now.Lower(v), now.Upper(v) + random.Between(-2, 9));
        else
            session.SetBounds(v, now.Lower(v) - random.Between(-2, 9) / 4.0, now.Upper(v));
    }
}

void Add(Way& way, const BoundedForm& form)
{
    for (const auto* numbers :
         {&form.cost, &form.columnLower, &form.columnUpper, &form.rowLower, &form.rowUpper})
        for (const double number : *numbers)
            way.Add(number);
    for (Index j = 0; j < form.columns; ++j)
        for (const auto [row, entry] : form.matrix.Column(j))
        {
            way.Add(row);
            way.Add(entry);
        }
    way.Add(form.constant);
}

/// The form that presolve makes, and the basis that it brings back.
void Reduce(const BoundedForm& form, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const Presolve presolve(form);
    way.Add(presolve.FoundContradiction());
    if (!presolve.Reduces())
        return;
    const BoundedForm& reduced = presolve.Form();
    Add(way, reduced);
    const ScaledForm scaled(reduced);
    SimplexState state(scaled, SlackBasis(reduced));
    SolveControl control(way.Watched());
    way.Add(static_cast<std::uint64_t>(SolveInDoubles(state, control)));
    way.Add(presolve.Restore(state));
}

/// The programs whose optima prove that there is no point or no end, and what doubles alone say.
void Help(const BoundedForm& form, Random& random, Way& way)
{
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    const Basis start = DrawSomeBasis(random, form);
    ScalableForm scalable(form);
    Basis fitted = start;
    FitBasis(form, fitted);
    for (const AuxiliaryForm& help :
         {ElasticForm(scalable, fitted), ElasticRowsForm(form), RayForm(form, fitted)})
    {
        Add(way, help.form);
        way.Add(help.start);
    }
    SolveControl control(way.Watched());
    way.Add(SolveUnproved(form, &start, control));
}

/// Small forms in which every third number is a third of what it was, which no double says.
void SolveFractions(Random& random, Way& way)
{
    const auto rows = static_cast<Index>(random.Between(1, 4));
    BoundedForm form = RandomSmallForm(random, rows, static_cast<Index>(random.Between(1, 5)));
    form.numbers = CoefficientMeaning::ShortestDecimal;
    const auto divide = [&](const FormPlace& place, double& number)
    {
        if (!std::isfinite(number) || number == 0.0 || !random.OneIn(3))
            return;
        const Rational third = ToRational(number) / Rational(3);
        number = ToDouble(third);
        if (third != ToRational(number, form.numbers))
            form.exact.Set(place, third);
    };
    SparseVectors<double> columns = form.matrix.Columns();
    for (Index j = 0; j < form.columns; ++j)
    {
        divide({FormPlace::Of::Cost, j}, form.cost[j]);
        divide({FormPlace::Of::ColumnUpper, j}, form.columnUpper[j]);
        for (std::size_t at = columns.start[j]; at < columns.start[j + 1]; ++at)
            divide({FormPlace::Of::Entry, columns.index[at], j}, columns.value[at]);
    }
    for (Index i = 0; i < form.rows; ++i)
        divide({FormPlace::Of::RowLower, i}, form.rowLower[i]);
    form.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    SolveAllWays(form, random, way);
    Ranges(form, way);
}

/// The primal simplex and the dual one by themselves, from any basis.
void RunEither(const BoundedForm& form, Random& random, Way& way)
{
    const ScaledForm scaled(form);
    for (const bool isDual : {false, true})
    {
        Basis start = DrawSomeBasis(random, form);
        FitBasis(form, start);
        SimplexState state(scaled, start);
        state.Refactorise();
        SolveControl control(way.Watched());
        way.Add(static_cast<std::uint64_t>(
            isDual ? DualSimplex(state, control).Run(DualSimplex::Start::Perturbed)
                   : PrimalSimplex(state, control).Run(true)));
        way.Add(state.ExportBasis());
        for (const double value : state.value)
            way.Add(value);
    }
}

/// A small form whose numbers have two digits behind the point, or all that doubles have.
BoundedForm DrawDense(Random& random)
{
    const bool isDecimal = random.OneIn(2);
    const auto number = [&](int most)
    {
        if (isDecimal)
            return random.Between(-most, most) / 100.0;
        const int exponent = random.Between(-60, -45);
        return std::ldexp(static_cast<double>(random.Next() >> 11) - 0x1p52, exponent);
    };
    const auto columns = static_cast<Index>(random.Between(1, 6));
    std::vector<double> cost(columns);
    std::vector<Interval> bounds(columns);
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = number(900);
        bounds[j] = {random.OneIn(3) ? -std::fabs(number(500)) : 0.0, std::fabs(number(9000))};
    }
    std::vector<DenseRow> rows(static_cast<std::size_t>(random.Between(1, 6)));
    for (DenseRow& row : rows)
    {
        for (Index j = 0; j < columns; ++j)
            row.coefficients.push_back(random.OneIn(5) ? 0.0 : number(999));
        row.bounds = {random.OneIn(3) ? -kInf : -std::fabs(number(500)), std::fabs(number(9000))};
    }
    BoundedForm form = MakeForm(cost, rows, bounds);
    form.constant = number(900);
    form.numbers =
        isDecimal ? CoefficientMeaning::ShortestDecimal : CoefficientMeaning::StoredDouble;
    return form;
}

/// The short way of a small dense form, and whether it is enough.
void SolveDense(const BoundedForm& form, Way& way)
{
    SolveControl control(way.Watched());
    CertifiedResult result;
    way.Add(SolveSmall(form, nullptr, control, result));
    way.Add(result);
    CertifiedResult again;
    if (result.record.proved)
        way.Add(SolveSmall(form, &result.record.basis, control, again));
    way.Add(again);
}

std::vector<Kind> Kinds()
{
    const auto size = [](Random& random, int least, int most)
    { return static_cast<Index>(random.Between(least, most)); };
    return {
        {"small", Repeated(150,
                           [=](Random& random, Way& way)
                           {
                               const Index rows = size(random, 0, 6);
                               SolveAllWays(RandomSmallForm(random, rows, size(random, 1, 7)),
                                            random, way);
                           })},
        {"sparse", Repeated(8,
                            [=](Random& random, Way& way)
                            {
                                const Index rows = size(random, 20, 45);
                                SolveAllWays(RandomSparseForm(random, rows, size(random, 25, 60)),
                                             random, way);
                            })},
        {"larger", Repeated(2,
                            [](Random& random, Way& way) {
                                way.Add(Certified(RandomSparseForm(random, 150, 200), nullptr,
                                                  way.Watched()));
                            })},
        {"nearly dependent", Repeated(20,
                                      [=](Random& random, Way& way)
                                      {
                                          const Index rows = size(random, 2, 9);
                                          SolveAllWays(
                                              NearlyDependentForm(random, rows, size(random, 2, 9)),
                                              random, way);
                                      })},
        {"degenerate",
         [](Random& random, Way& way) { SolveAllWays(DegenerateCone(20), random, way); }},
        {"dense",
         Repeated(120, [](Random& random, Way& way) { SolveDense(DrawDense(random), way); })},
        {"either of small",
         Repeated(150,
                  [=](Random& random, Way& way)
                  {
                      const Index rows = size(random, 1, 7);
                      RunEither(RandomSmallForm(random, rows, size(random, 1, 9)), random, way);
                  })},
        {"either of sparse",
         Repeated(8, [](Random& random, Way& way)
                  { RunEither(RandomSparseForm(random, 40, 50), random, way); })},
        {"presolve of small", Repeated(400,
                                       [=](Random& random, Way& way)
                                       {
                                           const Index rows = size(random, 1, 6);
                                           Reduce(RandomSmallForm(random, rows, size(random, 1, 7)),
                                                  way);
                                       })},
        {"presolve of sparse", Repeated(20, [](Random& random, Way& way)
                                        { Reduce(RandomSparseForm(random, 30, 40), way); })},
        {"ranges", Repeated(40,
                            [=](Random& random, Way& way)
                            {
                                const Index rows = size(random, 2, 9);
                                Ranges(RandomSmallForm(random, rows, size(random, 2, 9)), way);
                            })},
        {"ranges of sparse", Repeated(4, [](Random& random, Way& way)
                                      { Ranges(RandomSparseForm(random, 30, 40), way); })},
        {"help for small", Repeated(150,
                                    [=](Random& random, Way& way)
                                    {
                                        const Index rows = size(random, 1, 6);
                                        Help(RandomSmallForm(random, rows, size(random, 1, 7)),
                                             random, way);
                                    })},
        {"help for sparse", Repeated(6, [](Random& random, Way& way)
                                     { Help(RandomSparseForm(random, 20, 30), random, way); })},
        {"fractions", Repeated(60, SolveFractions)},
        {"edits of small", Repeated(20, [](Random& random, Way& way)
                                    { Edit(RandomSmallForm(random, 6, 8), random, way); })},
        {"edits of sparse", Repeated(4, [](Random& random, Way& way)
                                     { Edit(RandomSparseForm(random, 25, 35), random, way); })},
    };
}

TEST(Ways, AreThoseOfTheRecord)
{
    const bool isRecording = std::getenv("NUV_RECORD_WAYS") != nullptr;
    const std::string path = NUV_TEST_MODELS "/../exact/ways.txt";
    std::ifstream file(path);
    std::string now;
    std::vector<Kind> kinds = Kinds();
    for (const auto others : {KindsOfParts, KindsOfSimplex, KindsOfPresolve, KindsOfProofs,
                              KindsOfRefinement, KindsOfDense})
        std::ranges::move(others(), std::back_inserter(kinds));
    for (const Kind& kind : kinds)
    {
        Random random(kind.name.size());
        Way way;
        kind.solve(random, way);
        const std::string line = kind.name + ": " + way.Text();
        now += line + "\n";
        std::string recorded;
        std::getline(file, recorded);
        ASSERT_TRUE(isRecording || line == recorded)
            << line << "\nwhere the record has\n"
            << recorded << "\nThe first lines of tests/exact/Ways.cpp say what to do.";
    }
    if (isRecording)
        std::ofstream(path) << now;
}

}  // namespace
}  // namespace nuv::test
