#include "tests/support/Forms.hpp"

#include <cmath>

namespace nuv::test
{

BoundedForm MakeForm(const std::vector<double>& cost, const std::vector<DenseRow>& rows,
                     const std::vector<Interval>& columns)
{
    BoundedForm form;
    form.rows = static_cast<Index>(rows.size());
    form.columns = static_cast<Index>(cost.size());
    form.cost = cost;
    SparseVectors<double> entries;
    for (Index j = 0; j < form.columns; ++j)
    {
        const Interval bounds = columns.empty() ? Interval{} : columns[j];
        form.columnLower.push_back(bounds.lower);
        form.columnUpper.push_back(bounds.upper);
        for (Index i = 0; i < form.rows; ++i)
        {
            if (rows[i].coefficients[j] != 0.0)
                entries.Append(i, rows[i].coefficients[j]);
        }
        entries.Close();
    }
    for (const DenseRow& row : rows)
    {
        form.rowLower.push_back(row.bounds.lower);
        form.rowUpper.push_back(row.bounds.upper);
    }
    form.matrix = SparseMatrix<double>::FromColumns(std::move(entries), form.rows);
    return form;
}

namespace
{

Interval RandomInterval(Random& random)
{
    const double a = random.Between(-4, 4);
    const double b = a + random.Between(0, 5);
    switch (random.Between(0, 7))
    {
    case 0:
        return {-kInf, kInf};
    case 1:
        return {a, kInf};
    case 2:
        return {-kInf, a};
    case 3:
        return {a, a};
    case 4:
        return {0.0, kInf};
    case 5:
        return random.OneIn(12) ? Interval{a + 1.0, a} : Interval{a, b};
    default:
        return {a, b};
    }
}

}  // namespace

BoundedForm RandomSmallForm(Random& random, Index rows, Index columns)
{
    std::vector<double> cost(columns);
    for (double& entry : cost)
        entry = random.Between(-3, 3);
    std::vector<Interval> bounds(columns);
    for (Interval& interval : bounds)
        interval = RandomInterval(random);
    std::vector<DenseRow> dense(rows);
    for (DenseRow& row : dense)
    {
        row.coefficients.resize(columns);
        for (double& entry : row.coefficients)
            entry = random.OneIn(3) ? 0 : random.Between(-3, 3);
        row.bounds = RandomInterval(random);
    }
    return MakeForm(cost, dense, bounds);
}

BoundedForm RandomSparseForm(Random& random, Index rows, Index columns)
{
    std::vector<double> cost(columns);
    std::vector<double> point(columns);
    std::vector<Interval> bounds(columns);
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = random.Between(-50, 99) / 10.0;
        point[j] = random.OneIn(2) ? 0.0 : random.Between(1, 100) / 7.0;
        if (random.OneIn(4))
            bounds[j].upper = 15.0 + random.Between(0, 9);
        if (random.OneIn(9))
            bounds[j].lower = -kInf;
    }
    std::vector<DenseRow> dense(rows);
    for (DenseRow& row : dense)
    {
        row.coefficients.assign(columns, 0.0);
        double activity = 0.0;
        for (int entry = 0; entry < 4; ++entry)
        {
            const Index j = static_cast<Index>(random.Between(0, static_cast<int>(columns) - 1));
            row.coefficients[j] = random.Between(-30, 99) / 10.0;
        }
        for (Index j = 0; j < columns; ++j)
            activity += row.coefficients[j] * point[j];
        const int kind = random.Between(0, 3);
        row.bounds = kind == 0   ? Interval{activity, activity}
                     : kind == 1 ? Interval{-kInf, activity}
                     : kind == 2 ? Interval{activity, kInf}
                                 : Interval{activity - 1.0, activity + random.Between(0, 3)};
    }
    return MakeForm(cost, dense, bounds);
}

BoundedForm NearlyDependentForm(Random& random, Index rows, Index columns)
{
    const double share = std::pow(10.0, -random.Between(3, 12));
    std::vector<double> cost(columns);
    std::vector<Interval> bounds(columns);
    std::vector<DenseRow> dense(rows);
    std::vector<double> base(columns);
    for (Index j = 0; j < columns; ++j)
    {
        cost[j] = random.Between(-9, 9);
        base[j] = random.Between(-9, 9);
        bounds[j] = {0.0, random.OneIn(3) ? random.Between(1, 50) : kInf};
    }
    for (DenseRow& row : dense)
    {
        if (random.OneIn(4))
            for (double& entry : base)
                entry = random.Between(-9, 9);
        for (Index j = 0; j < columns; ++j)
            row.coefficients.push_back(base[j] + share * random.Between(-9, 9));
        row.bounds = {random.OneIn(2) ? -kInf : random.Between(-20, 0),
                      static_cast<double>(random.Between(1, 40))};
    }
    return MakeForm(cost, dense, bounds);
}

BoundedForm DegenerateCone(Index size)
{
    Random random(5);
    std::vector<double> cost;
    std::vector<DenseRow> rows(std::size_t{size} + 1, {{}, {-kInf, 0}});
    for (Index j = 0; j < size; ++j)
    {
        cost.push_back(-random.Between(1, 9));
        for (Index i = 0; i < size; ++i)
            rows[i].coefficients.push_back(random.OneIn(3) ? random.Between(-5, 4) : 0);
        rows[size].coefficients.push_back(1.0);
    }
    rows[size].bounds.upper = 100.0;
    return MakeForm(cost, rows);
}

}  // namespace nuv::test
