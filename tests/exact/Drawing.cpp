#include "tests/exact/Drawing.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <utility>

namespace nuv::test
{
namespace
{

/// What decides at a tolerance is drawn from the tolerances themselves and their neighbours.
constexpr double kEdge = 1e-9;
const std::array<double, 16> kDrawnNumbers = {0.0,
                                              1.0,
                                              1.0,
                                              2.0,
                                              0.5,
                                              kEdge,
                                              2.0 * kEdge,
                                              0.5 * kEdge,
                                              std::nextafter(kEdge, 0.0),
                                              std::nextafter(kEdge, 1.0),
                                              1.0 + kEdge,
                                              1.0 - kEdge,
                                              1e-5,
                                              std::nextafter(1e-5, 0.0),
                                              1e-7,
                                              1e-12};
const std::array<double, 12> kPivots = {1.0,  0.5,   2.0,  0.1,  1e-5, std::nextafter(1e-5, 0.0),
                                        1e-3, kEdge, 0.01, 10.0, 4.0,  std::nextafter(kEdge, 1.0)};

/// Too small to be pivots, and the next larger one.
const std::array<double, 4> kTiny = {kEdge, 0.5 * kEdge, std::nextafter(kEdge, 0.0),
                                     std::nextafter(kEdge, 1.0)};

bool Chance(Random& random, int chances)
{
    return chances > 0 && random.OneIn(chances);
}

Interval DrawBounds(Random& random, const Drawing& drawing, double at)
{
    if (Chance(random, drawing.fixed))
        return {at, at};
    if (Chance(random, drawing.free))
        return {-kInf, kInf};
    const double room = drawing.isWhole ? random.Between(0, 3) : 1.0 + DrawShare(random);
    if (Chance(random, drawing.boxed))
        return {at - room, at + (random.OneIn(3) ? 0.0 : 1.0 + room)};
    if (Chance(random, drawing.falling))
        return {-kInf, at};
    return {random.OneIn(2) ? at : at - 1.0, kInf};
}

}  // namespace

Index Between(Random& random, Index least, Index most)
{
    return static_cast<Index>(random.Between(static_cast<int>(least), static_cast<int>(most)));
}

double Any(Random& random, std::span<const double> numbers)
{
    return numbers[static_cast<std::size_t>(
        random.Between(0, static_cast<int>(numbers.size()) - 1))];
}

double DrawShare(Random& random)
{
    return std::ldexp(static_cast<double>(random.Next() >> 11) - 0x1p52, -52);
}

void AddNumbers(Way& way, const std::vector<double>& numbers)
{
    for (const double number : numbers)
        way.Add(std::isnan(number) ? 0.0 : number);  // there are many numbers that are none
}

BoundedForm Draw(Random& random, const Drawing& drawing)
{
    const auto number = [&]
    {
        if (drawing.isWhole)
            return static_cast<double>(random.Between(-3, 5));
        return DrawShare(random);
    };
    std::vector<double> cost(drawing.columns);
    std::vector<double> point(drawing.columns);
    std::vector<double> factor(drawing.columns, 1.0);
    std::vector<Interval> bounds(drawing.columns);
    for (Index j = 0; j < drawing.columns; ++j)
    {
        const double share = drawing.isTied ? random.Between(-1, 2) : number();
        cost[j] = std::max(share * drawing.cost, drawing.least);
        point[j] = drawing.size * (random.OneIn(2) ? 0.0 : random.Between(0, 6));
        bounds[j] = DrawBounds(random, drawing, point[j]);
        factor[j] = drawing.exponents > 0 ? 1.0 + 0.3 * random.Between(0, 3) : 1.0;
        factor[j] = std::ldexp(factor[j], random.Between(-drawing.exponents, drawing.exponents));
        cost[j] *= factor[j];
        bounds[j] = {bounds[j].lower / factor[j], bounds[j].upper / factor[j]};
        point[j] /= factor[j];
    }
    std::vector<DenseRow> rows(drawing.rows);
    for (DenseRow& row : rows)
    {
        row.coefficients.assign(drawing.columns, 0.0);
        for (Index entry = 0; entry < drawing.entries; ++entry)
            row.coefficients[Between(random, 0, drawing.columns - 1)] = number();
        for (Index j = 1; drawing.nearness != 0.0 && j < drawing.columns; j += 2)
            row.coefficients[j] =
                row.coefficients[j - 1] + drawing.nearness * row.coefficients[j] * number();
        const double scale = std::ldexp(1.0, random.Between(-drawing.exponents, drawing.exponents));
        double activity = 0.0;
        for (Index j = 0; j < drawing.columns; ++j)
        {
            row.coefficients[j] *= factor[j] * scale;
            activity += row.coefficients[j] * point[j];
        }
        if (!drawing.isFeasible)
            activity += scale * random.Between(-9, 9);
        const double room = drawing.isTied ? 0.0 : scale * (random.OneIn(3) ? 0.0 : 1.0 + number());
        row.bounds = {-kInf, activity + std::fabs(room)};
        if (random.OneIn(2))
            row.bounds = {activity - std::fabs(room), kInf};
        if (Chance(random, drawing.equations))
            row.bounds = {activity, activity};
        else if (Chance(random, drawing.ranges))
            row.bounds = {activity - std::fabs(room), activity + scale * random.Between(0, 2)};
    }
    return MakeForm(cost, rows, bounds);
}

double DrawPivot(Random& random)
{
    return Any(random, kPivots);
}

double DrawEdge(Random& random)
{
    const double number = Any(random, kDrawnNumbers);
    return random.OneIn(2) ? number : -number;
}

Interval DrawEdges(Random& random)
{
    const double lower = DrawEdge(random);
    const double room = std::fabs(DrawEdge(random));
    switch (random.Between(0, 4))
    {
    case 0:
        return {lower, kInf};
    case 1:
        return {-kInf, lower};
    case 2:
        return {-kInf, kInf};
    default:
        return {lower, lower + room};
    }
}

namespace
{

BoundedForm DrawAtTolerances(Random& random, Index height, Index columns, int sparsity)
{
    const bool isTiny = random.OneIn(6);
    std::vector<double> cost(columns);
    std::vector<Interval> bounds(columns);
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = DrawEdge(random);
        if (random.OneIn(9))
            cost[j] = random.OneIn(2) ? 100.0 : 101.0;
        bounds[j] = DrawEdges(random);
    }
    std::vector<DenseRow> rows(height);
    for (DenseRow& row : rows)
    {
        row.coefficients.assign(columns, 0.0);
        for (double& entry : row.coefficients)
        {
            if (sparsity > 3 ? !random.OneIn(sparsity) : random.OneIn(3))
                continue;
            entry = isTiny ? Any(random, kTiny) : DrawPivot(random);
            entry = random.OneIn(2) ? entry : -entry;
        }
        row.bounds = DrawEdges(random);
    }
    return MakeForm(cost, rows, bounds);
}

}  // namespace

BoundedForm DrawAtTolerances(Random& random)
{
    const Index columns = Between(random, 1, 6);
    const Index rows = Between(random, 1, 5);
    return DrawAtTolerances(random, rows, columns, 3);
}

BoundedForm DrawSparselyAtTolerances(Random& random)
{
    const Index columns = Between(random, 8, 16);
    const Index rows = Between(random, 12, 20);
    return DrawAtTolerances(random, rows, columns, 6);
}

BoundedForm WithZeros(const BoundedForm& form, Random& random)
{
    BoundedForm result = form;
    SparseVectors<double> columns;
    for (Index j = 0; j < form.columns; ++j)
    {
        std::vector<double> column(form.rows, 0.0);
        for (const auto [row, entry] : form.matrix.Column(j))
            column[row] = entry;
        for (Index i = 0; i < form.rows; ++i)
        {
            if (column[i] != 0.0 || random.OneIn(3))
                columns.Append(i, column[i]);
        }
        columns.Close();
    }
    result.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    return result;
}

BoundedForm WithQuotients(const BoundedForm& form, Random& random)
{
    BoundedForm result = form;
    result.numbers = CoefficientMeaning::ShortestDecimal;
    const std::array<Integer, 6> divisors = {3, 5, 25, 7, 160, Power(10, 25)};
    const Integer longFactor = Power(2, 150) + 1;
    const auto change = [&](const FormPlace& place, double& number)
    {
        if (!std::isfinite(number) || number == 0.0 || random.OneIn(2))
            return;
        Rational exact = ToRational(number);
        if (random.OneIn(4))
            exact = exact * Rational(longFactor, Power(2, 150));
        else
            exact = exact / Rational(divisors[static_cast<std::size_t>(random.Between(0, 5))]);
        number = ToDouble(exact);
        if (exact != ToRational(number, result.numbers))
            result.exact.Set(place, exact);
    };
    result.constant = random.Between(1, 9);
    change({FormPlace::Of::Constant}, result.constant);
    SparseVectors<double> columns = form.matrix.Columns();
    for (Index j = 0; j < form.columns; ++j)
    {
        change({FormPlace::Of::Cost, j}, result.cost[j]);
        change({FormPlace::Of::ColumnUpper, j}, result.columnUpper[j]);
        for (std::size_t at = columns.start[j]; at < columns.start[j + 1]; ++at)
            change({FormPlace::Of::Entry, columns.index[at], j}, columns.value[at]);
    }
    for (Index i = 0; i < form.rows; ++i)
        change({FormPlace::Of::RowLower, i}, result.rowLower[i]);
    result.matrix = SparseMatrix<double>::FromColumns(std::move(columns), form.rows);
    return result;
}

Basis DrawBasis(Random& random, const BoundedForm& form)
{
    Basis basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = static_cast<BasisStatus>(random.Between(0, 3));
    FitBasis(form, basis);
    return basis;
}

/// Many rows of few columns each, of which all are tight where the slack basis is.
BoundedForm DrawAssignment(Random& random, Index size)
{
    std::vector<double> cost;
    std::vector<DenseRow> rows(2 * std::size_t{size},
                               {std::vector<double>(std::size_t{size} * size, 0.0), {1, 1}});
    for (std::size_t i = 0; i < size; ++i)
        for (std::size_t j = 0; j < size; ++j)
        {
            cost.push_back(random.Between(1, 20));
            rows[i].coefficients[i * size + j] = 1.0;
            rows[size + j].coefficients[i * size + j] = 1.0;
        }
    return MakeForm(cost, rows);
}

/// Values so large that what rounding leaves of them is a violation: the dual simplex makes the
/// same pivots again and again, until it perturbs costs once more, and then until it gives up.
BoundedForm DrawEndless(Index columns)
{
    Random random(51);
    Drawing drawing{.rows = 4, .columns = 8, .entries = 6};
    (void)random.Between(1, 4);
    (void)random.Between(2, 8);
    drawing.boxed = random.Between(0, 3);
    drawing.equations = random.Between(0, 3);
    drawing.size = 1e9;
    BoundedForm form = Draw(random, drawing);
    // What is fixed and in no row changes nothing but their number.
    SparseVectors<double> entries = form.matrix.Columns();
    for (; form.columns < columns; ++form.columns)
    {
        form.cost.push_back(0.0);
        form.columnLower.push_back(0.0);
        form.columnUpper.push_back(0.0);
        entries.Close();
    }
    form.matrix = SparseMatrix<double>::FromColumns(std::move(entries), form.rows);
    return form;
}

/// So many rows of one entry each, that presolve would know what to do with.
BoundedForm SingletonRows(Index count)
{
    std::vector<DenseRow> rows(count);
    for (Index i = 0; i < count; ++i)
    {
        rows[i].coefficients.assign(count, 0.0);
        rows[i].coefficients[i] = 1.0 + i;
        rows[i].bounds = {-kInf, 9.0};
    }
    return MakeForm(std::vector<double>(count, -1.0), rows);
}

/// Each unknown twice the one before: bases whose inverses grow along the chain.
BoundedForm DrawChain(Random& random, Index size)
{
    std::vector<double> cost;
    std::vector<Interval> bounds;
    std::vector<DenseRow> rows(size);
    for (Index j = 0; j < size; ++j)
    {
        cost.push_back(DrawShare(random));
        bounds.push_back(
            {-1.0 - 0x1p20 * random.Between(0, 9), 1.0 + 0x1p30 * random.Between(0, 9)});
        rows[j].coefficients.assign(size, 0.0);
        rows[j].coefficients[j] = 1.0 + 0.1 * DrawShare(random);
        if (j > 0)
            rows[j].coefficients[j - 1] = -2.0 + 0.1 * DrawShare(random);
        rows[j].coefficients[Between(random, 0, size - 1)] += DrawShare(random);
        const double side = DrawShare(random);
        rows[j].bounds = {side, side + (random.OneIn(2) ? 0.0 : 1.0)};
    }
    return MakeForm(cost, rows, bounds);
}

Kind OfDrawn(std::string name, int count, const Drawing& drawing, FormTaker take)
{
    return {std::move(name), Repeated(count, [=](Random& random, Way& way)
                                      { take(Draw(random, drawing), random, way); })};
}

Kind OfSmall(std::string name, int count, FormTaker take)
{
    return {std::move(name), Repeated(count,
                                      [=](Random& random, Way& way)
                                      {
                                          const Index rows = Between(random, 1, 5);
                                          take(RandomSmallForm(random, rows, Between(random, 1, 6)),
                                               random, way);
                                      })};
}

Kind OfDependent(std::string name, int count, FormTaker take)
{
    return {std::move(name),
            Repeated(count,
                     [=](Random& random, Way& way)
                     {
                         const Index rows = Between(random, 2, 7);
                         take(NearlyDependentForm(random, rows, Between(random, 2, 8)), random,
                              way);
                     })};
}

}  // namespace nuv::test
