// The yardstick's steps, each as literal as it can be written.
#include "tests/reference/NaiveSimplex.hpp"

#include <cfloat>
#include <utility>

namespace reference
{
StandardForm MakeStandardForm(const Problem& problem)
{
    const std::size_t m = problem.rows;
    const std::size_t n = problem.columns;
    StandardForm form;
    form.A = Matrix(m, n + m);
    form.b = Matrix(m, 1);
    form.c = Matrix(n + m, 1);
    for (std::size_t i = 0; i < m; ++i)
    {
        for (std::size_t j = 0; j < n; ++j)
            form.A.at(i, j) = problem.A[i * n + j];
        form.A.at(i, n + i) = 1.0F;
        form.b.at(i, 0) = problem.b[i];
        form.basic.push_back(static_cast<std::uint32_t>(n + 1 + i));
    }
    for (std::size_t j = 0; j < n; ++j)
    {
        form.c.at(j, 0) = problem.c[j];
        form.independent.push_back(static_cast<std::uint32_t>(j + 1));
    }
    return form;
}

namespace
{
void CopyColumn(Matrix* to, std::size_t toColumn, const Matrix& from, std::size_t fromColumn)
{
    for (std::size_t i = 0; i < to->rows; ++i)
        to->at(i, toColumn) = from.at(i, fromColumn);
}
/// What both phases carry from pivot to pivot.
struct Tableau
{
    unsigned phase = 0;
    Matrix A;
    Matrix b;
    Matrix Ab;
    Matrix Ai;
    Matrix cb;
    Matrix ci;
    Matrix inverse;
    std::vector<std::uint32_t> basic;
    std::vector<std::uint32_t> independent;
    /// What is subtracted from a label to find its column of A.
    std::uint32_t firstLabel = 0;
};

struct Entering
{
    float value = 0.0F;
    std::size_t position = 0;
};

struct Leaving
{
    float ratio = FLT_MAX;
    std::size_t row = 0;
};

Entering ChooseEntering(const Matrix& reducedCosts)
{
    Entering entering;
    for (std::size_t j = 0; j < reducedCosts.columns; ++j)
    {
        if (reducedCosts.at(0, j) >= entering.value)
            entering.position = j;
        if (entering.value <= reducedCosts.at(0, j))
            entering.value = reducedCosts.at(0, j);
    }
    return entering;
}

Leaving ChooseLeaving(const Tableau& t, const Matrix& bHat, const Matrix& ajHat)
{
    Leaving leaving;
    for (std::size_t i = 0; i < bHat.rows; ++i)
    {
        if (ajHat.at(i, 0) >= 0.0F)
            continue;
        const float ratio = bHat.at(i, 0) / (-ajHat.at(i, 0));
        const bool isArtificialTie = t.phase == 1 && ratio == leaving.ratio && t.basic[i] == 0;
        if (leaving.ratio > ratio || isArtificialTie)
        {
            leaving.row = i;
            leaving.ratio = ratio;
        }
    }
    return leaving;
}

/// The first row of the smallest basic value.
std::size_t MostNegativeRow(const Matrix& bHat)
{
    float smallest = FLT_MAX;
    std::size_t row = 0;
    for (std::size_t i = 0; i < bHat.rows; ++i)
        if (smallest > bHat.at(i, 0))
        {
            row = i;
            smallest = bHat.at(i, 0);
        }
    return row;
}

void Exchange(Tableau* t, std::size_t entering, std::size_t leaving)
{
    std::swap(t->basic[leaving], t->independent[entering]);
    for (std::size_t i = 0; i < t->Ab.rows; ++i)
        std::swap(t->Ab.at(i, leaving), t->Ai.at(i, entering));
    std::swap(t->cb.at(leaving, 0), t->ci.at(entering, 0));
}

/// How an iteration went on.
enum class Step
{
    Pivoted,
    Optimal,
    Unbounded,
    Stopped,
    ArtificialLeft
};

/// The matrices of the last iteration that a finish reads.
struct LastIteration
{
    Matrix pi;
    Matrix bHat;
};

/// One iteration; `isFirst` is the first of Phase I, where the artificial variable is forced in.
Step Iterate(Tableau* t, bool isFirst, LastIteration* last, Solution* solution,
             std::size_t maxPivots)
{
    last->pi = Multiply(Transpose(t->cb), t->inverse);
    const Matrix reducedCosts = Subtract(Transpose(t->ci), Multiply(last->pi, t->Ai));
    Entering entering = ChooseEntering(reducedCosts);
    if (isFirst)
    {
        entering.value = 1.0F;
        entering.position = 0;
    }
    last->bHat = Multiply(t->inverse, t->b);
    if (entering.value == 0.0F)
        return Step::Optimal;
    const std::size_t k = t->independent[entering.position] - t->firstLabel;
    const Matrix direction = Multiply(t->inverse, ColumnOf(t->A, k, t->b.rows));
    const Matrix ajHat = MultiplyScalar(direction, -1.0F);
    std::size_t row = 0;
    if (isFirst)
        row = MostNegativeRow(last->bHat);
    else
    {
        const Leaving leaving = ChooseLeaving(*t, last->bHat, ajHat);
        if (leaving.ratio == FLT_MAX)
            return Step::Unbounded;
        row = leaving.row;
    }
    if (solution->pivots.size() == maxPivots)
        return Step::Stopped;
    solution->pivots.push_back({t->phase, t->independent[entering.position], t->basic[row],
                                t->basic, last->bHat.elements});
    Exchange(t, entering.position, row);
    if (t->phase == 1 && t->independent[entering.position] == 0)
        return Step::ArtificialLeft;
    t->inverse = UpdateBasis(t->A, t->inverse, k, row);
    return Step::Pivoted;
}

Tableau BeginPhaseI(const StandardForm& form)
{
    const std::size_t m = form.b.rows;
    const std::size_t n = form.independent.size();
    Tableau t;
    t.phase = 1;
    t.firstLabel = 0;
    t.b = form.b;
    t.A = Matrix(m, n + m + 1);
    for (std::size_t j = 0; j < n + m; ++j)
        CopyColumn(&t.A, j + 1, form.A, j);
    t.Ab = Matrix(m, m);
    for (std::size_t j = 0; j < m; ++j)
        CopyColumn(&t.Ab, j, form.A, n + j);
    t.Ai = Matrix(m, n + 1);
    for (std::size_t j = 0; j < n; ++j)
        CopyColumn(&t.Ai, j + 1, form.A, j);
    for (std::size_t i = 0; i < m; ++i)
    {
        t.A.at(i, 0) = -1.0F;
        t.Ai.at(i, 0) = -1.0F;
    }
    t.cb = Matrix(m, 1);
    t.ci = Matrix(n + 1, 1);
    t.ci.at(0, 0) = -1.0F;
    t.basic = form.basic;
    t.independent = {0};
    t.independent.insert(t.independent.end(), form.independent.begin(), form.independent.end());
    t.inverse = Invert(t.Ab).matrix;
    return t;
}

Tableau BeginPhaseII(const StandardForm& form)
{
    const std::size_t m = form.basic.size();
    const std::size_t n = form.independent.size();
    Tableau t;
    t.phase = 2;
    t.firstLabel = 1;
    t.A = form.A;
    t.b = form.b;
    t.Ab = Matrix(m, m);
    t.Ai = Matrix(m, n);
    t.cb = Matrix(m, 1);
    t.ci = Matrix(n, 1);
    t.basic = form.basic;
    t.independent = form.independent;
    for (std::size_t i = 0; i < m; ++i)
    {
        CopyColumn(&t.Ab, i, form.A, t.basic[i] - 1);
        t.cb.at(i, 0) = form.c.at(t.basic[i] - 1, 0);
    }
    for (std::size_t j = 0; j < n; ++j)
    {
        CopyColumn(&t.Ai, j, form.A, t.independent[j] - 1);
        t.ci.at(j, 0) = form.c.at(t.independent[j] - 1, 0);
    }
    t.inverse = Invert(t.Ab).matrix;
    return t;
}

void HandOver(StandardForm* form, const Tableau& t)
{
    form->basic = t.basic;
    form->independent.clear();
    for (const std::uint32_t label : t.independent)
        if (label != 0)
            form->independent.push_back(label);
}
}  // namespace

void SolvePhaseI(StandardForm* form, Solution* solution, std::size_t maxPivots)
{
    Tableau t = BeginPhaseI(*form);
    LastIteration last;
    Step step = Iterate(&t, true, &last, solution, maxPivots);
    while (step == Step::Pivoted)
        step = Iterate(&t, false, &last, solution, maxPivots);
    if (step == Step::ArtificialLeft)
    {
        HandOver(form, t);
        solution->status = Status::Ok;
    }
    else if (step == Step::Optimal)
    {
        const float objective = Multiply(last.pi, t.b).at(0, 0);
        solution->status = objective == 0.0F ? Status::Ok : Status::Infeasible;
    }
    else
        solution->status = step == Step::Unbounded ? Status::Unbounded : Status::Stopped;
}

void SolvePhaseII(const StandardForm& form, Solution* solution, std::size_t maxPivots)
{
    Tableau t = BeginPhaseII(form);
    LastIteration last;
    Step step = Step::Pivoted;
    while (step == Step::Pivoted)
        step = Iterate(&t, false, &last, solution, maxPivots);
    if (step == Step::Stopped)
    {
        solution->status = Status::Stopped;
        return;
    }
    if (step == Step::Unbounded)
    {
        solution->objective = FLT_MAX;
        solution->status = Status::Unbounded;
        return;
    }
    const std::size_t numVars = form.c.rows - form.b.rows;
    solution->objective = Multiply(last.pi, t.b).at(0, 0);
    for (std::size_t i = 0; i < t.basic.size(); ++i)
        if (t.basic[i] <= numVars)
            solution->values[t.basic[i] - 1] = last.bHat.at(i, 0);
    solution->status = Status::Ok;
}

Solution Solve(const Problem& problem, std::size_t maxPivots)
{
    Solution solution;
    solution.values.assign(problem.columns, 0.0F);
    if (problem.rows == 0 || problem.columns == 0)
        return solution;
    StandardForm form = MakeStandardForm(problem);
    bool isPhaseIRequired = false;
    for (const float rhs : problem.b)
        if (0.0F > rhs)
            isPhaseIRequired = true;
    if (isPhaseIRequired)
    {
        SolvePhaseI(&form, &solution, maxPivots);
        solution.statusOfPhaseI = solution.status;
        if (solution.status != Status::Ok)
            return solution;
    }
    SolvePhaseII(form, &solution, maxPivots);
    return solution;
}
}  // namespace reference
