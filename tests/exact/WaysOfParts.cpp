/// Ways of what solves are made of, where all choices are seen: the pivots of an elimination with
/// its multipliers, what updates make of factors, the digits that a lifting takes.
#include "Nuv/Algebra/DixonSolver.hpp"
#include "Nuv/Algebra/Lifting/Residues.hpp"
#include "Nuv/Algebra/PrimeField.hpp"
#include "Nuv/Algebra/RationalField.hpp"
#include "Nuv/Algebra/RealField.hpp"
#include "Nuv/Algebra/SparseElimination.hpp"
#include "Nuv/Exact/Dense/SolveDense.hpp"
#include "Nuv/Exact/Dense/SolveSmall.hpp"
#include "Nuv/SparseSimplex/Factors/BasisLu.hpp"
#include "Nuv/SparseSimplex/SimplexState.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"
#include "tests/exact/Drawing.hpp"
#include "tests/exact/Way.hpp"
#include "tests/support/Forms.hpp"

#include <cmath>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace nuv::test
{
namespace
{

constexpr std::uint64_t kPrime = 4611686018427387847u;

int DrawEntry(Random& random)
{
    const int magnitude = random.Between(1, random.OneIn(3) ? 99 : 3);
    return random.OneIn(2) ? magnitude : -magnitude;
}

/// Up to four entries a column, most of them near the diagonal; now and then a column that depends
/// on others, or a row or a column that is long.
SparseVectors<double> DrawMatrix(Random& random, Index size)
{
    std::vector<std::vector<double>> columns(size, std::vector<double>(size, 0.0));
    const Index longRow = Between(random, 0, 2 * size);
    const Index longColumn = Between(random, 0, 2 * size);
    for (Index k = 0; k < size; ++k)
    {
        columns[k][(k * 7 + 3) % size] = DrawEntry(random);
        for (int entry = random.Between(0, 3); entry > 0; --entry)
            columns[k][Between(random, 0, size - 1)] = DrawEntry(random);
        if (longRow < size && random.OneIn(2))
            columns[k][longRow] = DrawEntry(random);
    }
    if (longColumn < size)
    {
        for (double& entry : columns[longColumn])
            entry = random.OneIn(2) ? DrawEntry(random) : entry;
    }
    if (size > 1 && random.OneIn(4))
        columns[0] = columns[1];
    SparseVectors<double> matrix;
    for (const std::vector<double>& column : columns)
    {
        for (Index i = 0; i < size; ++i)
        {
            // Zeros may be stored.
            if (column[i] != 0.0 || random.OneIn(40))
                matrix.Append(i, column[i]);
        }
        matrix.Close();
    }
    return matrix;
}

void AddNumber(Way& way, const Rational& number)
{
    way.Add(ToString(number));
}
template <class Number>
void AddNumber(Way& way, Number number)
{
    way.Add(number);
}

template <class Field, class Take>
void Eliminate(const Field& field, const SparseVectors<double>& matrix, const Take& take, Way& way)
{
    SparseVectors<typename Field::Value> columns;
    for (Index k = 0; k < matrix.Count(); ++k)
    {
        for (const auto [row, entry] : matrix[k])
            columns.Append(row, take(entry));
        columns.Close();
    }
    SparseElimination<Field> elimination(field, columns);
    elimination.Run();
    for (const auto* order : {&elimination.pivotRow, &elimination.pivotColumn})
        for (const Index at : *order)
            way.Add(at);
    for (const auto& pivot : elimination.pivotValue)
        AddNumber(way, pivot);
    for (const auto* factor : {&elimination.lower, &elimination.upper})
        for (Index step = 0; step < factor->Count(); ++step)
            for (const auto [at, entry] : (*factor)[step])
            {
                way.Add(at);
                AddNumber(way, entry);
            }
    std::vector<Index> position(columns.Count(), kNoIndex);
    for (Index step = 0; step < elimination.pivotColumn.size(); ++step)
        position[elimination.pivotColumn[step]] = elimination.pivotRow[step];
    for (const auto& [column, row] : elimination.PairLeftovers(position))
    {
        way.Add(column);
        way.Add(row);
    }
}

void EliminateDoubles(Random& random, Way& way)
{
    const auto decimal = [](double entry) { return entry / 10.0; };
    Eliminate(RealField(), DrawMatrix(random, Between(random, 1, 40)), decimal, way);
}

void EliminateResidues(Random& random, Way& way)
{
    const PrimeField field(kPrime);
    const auto residue = [&](double entry)
    { return field.FromSigned(static_cast<std::int64_t>(entry)); };
    Eliminate(field, DrawMatrix(random, Between(random, 1, 40)), residue, way);
}

void EliminateRationals(Random& random, Way& way)
{
    const auto third = [](double entry) { return Rational(static_cast<std::int64_t>(entry), 3); };
    Eliminate(RationalField(), DrawMatrix(random, Between(random, 1, 14)), third, way);
}

void Add(Way& way, const WorkVector& vector)
{
    for (const Index at : vector.touched)
    {
        way.Add(at);
        way.Add(vector.value[at]);
    }
}

/// Columns are exchanged for drawn ones where their pivots are large enough.
void Exchange(Random& random, Way& way)
{
    const Index size = Between(random, 3, 60);
    SparseVectors<double> columns = DrawMatrix(random, size);
    BasisLu factors;
    std::vector<Index> position;
    for (const auto& [column, row] : factors.Factorise(columns, position))
    {
        way.Add(column);
        way.Add(row);
    }
    for (int exchange = 0; exchange < 40; ++exchange)
    {
        WorkVector entering;
        entering.Reset(size);
        for (int entry = 0; entry < 3; ++entry)
        {
            const Index row = Between(random, 0, size - 1);
            entering.Add(row, DrawEntry(random) / 10.0);
        }
        WorkVector other = entering;
        factors.SolveForward(other);
        Add(way, other);
        factors.SolveEntering(entering);
        Add(way, entering);
        const Index at = Between(random, 0, size - 1);
        if (random.OneIn(2))
        {
            WorkVector row;
            factors.SolveUnitBackward(at, row);
            Add(way, row);
        }
        if (std::fabs(entering.value[at]) > 0.05)
            way.Add(factors.Update(at, entering.value[at]));
        WorkVector costs;
        costs.Reset(size);
        for (Index k = at; k < size; k += at + 1)
            costs.Set(k, 1.0 + k);
        factors.SolveBackward(costs);
        Add(way, costs);
        way.Add(factors.UpdateEntries());
        way.Add(factors.FactorEntries());
    }
}

/// Equations of small numbers and of long ones, with one denominator after the other.
void Lift(Random& random, Way& way)
{
    const Index size = Between(random, 1, 24);
    const bool isLong = random.OneIn(3);
    const SparseVectors<double> matrix = DrawMatrix(random, size);
    SparseVectors<ExactNumber> columns;
    for (Index k = 0; k < size; ++k)
    {
        for (const auto [row, entry] : matrix[k])
        {
            const auto mantissa = static_cast<std::int64_t>(entry);
            const std::int64_t factor =
                isLong ? static_cast<std::int64_t>(random.Next() >> 14) | 1 : 1;
            columns.Append(row,
                           {mantissa * factor, {-random.Between(0, 9), -random.Between(0, 2)}});
        }
        columns.Close();
    }
    SparseLu<PrimeField> factors{PrimeField(kPrime)};
    std::vector<Index> position;
    if (!factors.Factorise(Residues(columns, factors.GetField()), position).empty())
        return;
    std::vector<Index> columnAt(size);
    for (Index k = 0; k < size; ++k)
        columnAt[position[k]] = k;
    const SparseVectors<ExactNumber> unknowns = Selected(columns, columnAt);
    for (const auto side : {DixonSolver::Side::Forward, DixonSolver::Side::Backward})
    {
        DixonSolver solver(side == DixonSolver::Side::Forward ? unknowns
                                                              : Transposed(unknowns, size),
                           factors, side);
        for (int round = 0; round < 3; ++round)
        {
            ScaledVector right{std::vector<Integer>(size), {random.Between(-5, 5), 0}, 1};
            for (Integer& entry : right.value)
                entry = random.OneIn(2) ? 0 : random.Between(-99, 99);
            right.divisor = random.Between(1, 9);
            ExactVector solution;
            way.Add(solver.Solve(right, solution, [] { return false; }));
            way.Add(solution);
            way.Add(solver.Steps());
            way.Add(solver.Denominator().ToString());
        }
    }
}

/// Any small form in machine words: optima, contradictions and directions, each with its proof, or
/// that there is none to be had.
void ProveSmall(Random& random, Way& way)
{
    const Index rows = Between(random, 1, 5);
    const BoundedForm form = RandomSmallForm(random, rows, Between(random, 1, 6));
    if (FindCrossedBounds(form) != kNoIndex)
        return;
    SolveControl control(way.Watched());
    CertifiedResult result;
    way.Add(SolveSmall(form, nullptr, control, result));
    way.Add(result);
}

/// Problems in dense arrays with one storage for all of them.
class DenseProblems
{
public:
    void Solve(Random& random, Way& way)
    {
        DenseProblem problem;
        problem.columns = Between(random, 1, 6);
        problem.upperRows = Between(random, 0, 5);
        problem.equalRows = Between(random, 0, 2);
        if (random.OneIn(2))
            problem.numbers = CoefficientMeaning::ShortestDecimal;
        const double unit = random.OneIn(3) ? 100.0 : 1.0;
        const auto draw = [&](std::size_t count, int least, int most)
        {
            std::vector<double> numbers(count);
            for (double& number : numbers)
                number = random.OneIn(4) ? 0.0 : random.Between(least, most) / unit;
            return numbers;
        };
        const std::size_t columns = problem.columns;
        const auto cost = draw(columns, -90, 90);
        const auto upperMatrix = draw(columns * problem.upperRows, -50, 99);
        const auto upperSides = draw(problem.upperRows, -20, 200);
        const auto equalMatrix = draw(columns * problem.equalRows, -50, 99);
        const auto equalSides = draw(problem.equalRows, -20, 90);
        const auto lower = draw(columns, -30, 1);
        const auto upper = draw(columns, 1, 60);
        problem.cost = cost.data();
        problem.upperMatrix = upperMatrix.data();
        problem.upperSides = upperSides.data();
        problem.equalMatrix = equalMatrix.data();
        problem.equalSides = equalSides.data();
        problem.lower = random.OneIn(2) ? lower.data() : nullptr;
        problem.upper = random.OneIn(2) ? upper.data() : nullptr;
        DenseAnswer answer;
        m_solver.Solve(problem, 1000, answer);
        way.Add(static_cast<std::uint64_t>(answer.status));
        way.Add(answer.proved);
        way.Add(answer.pivots);
        way.Add(answer.objective);
        for (const auto* numbers : {&answer.values, &answer.reducedCosts, &answer.duals})
            for (const double number : *numbers)
                way.Add(number);
    }

private:
    DenseSolver m_solver;
};

void SolveDenseProblems(Random& random, Way& way)
{
    DenseProblems problems;
    for (int k = 0; k < 200; ++k)
        problems.Solve(random, way);
}

/// What a point in doubles, or a part of one, says of a basis.
void Start(Random& random, Way& way)
{
    const Index rows = Between(random, 1, 8);
    const BoundedForm form = RandomSmallForm(random, rows, Between(random, 1, 9));
    std::vector<double> point;
    for (Index j = 0; j < form.columns; ++j)
        point.push_back(random.OneIn(2) ? random.Between(-4, 4) : random.Between(-40, 40) / 10.0);
    way.Add(BasisNear(form, point));
}

/// Rows of the inverse times the matrix, and reduced costs, from a basis that is drawn.
void Price(Random& random, Way& way)
{
    const Index rows = Between(random, 2, 30);
    const BoundedForm form = RandomSparseForm(random, rows, Between(random, 2, 40));
    const ScaledForm scaled(form);
    Basis basis = SlackBasis(form);
    for (Index v = 0; v < form.Variables(); ++v)
        basis[v] = static_cast<BasisStatus>(random.Between(0, 3));
    FitBasis(form, basis);
    SimplexState state(scaled, basis);
    state.Refactorise();
    way.Add(state.ExportBasis());
    for (const double value : state.value)
        way.Add(value);
    for (Index position = 0; position < form.rows; ++position)
    {
        WorkVector row;
        state.SolveUnitRow(position, row);
        Add(way, row);
        WorkVector priced;
        state.PriceRow(row, priced);
        Add(way, priced);
    }
}

}  // namespace

std::vector<Kind> KindsOfParts()
{
    return {
        {"eliminated doubles", Repeated(150, EliminateDoubles)},
        {"eliminated residues", Repeated(150, EliminateResidues)},
        {"eliminated rationals", Repeated(80, EliminateRationals)},
        {"exchanged columns", Repeated(40, Exchange)},
        {"lifted systems", Repeated(80, Lift)},
        {"small proofs", Repeated(400, ProveSmall)},
        {"dense problems", SolveDenseProblems},
        {"starts", Repeated(200, Start)},
        {"priced rows", Repeated(40, Price)},
    };
}

}  // namespace nuv::test
