// The lanes take what is small; the rest is solved when it is taken.
#include "Nuv/Solve/Batch/SinglePrecisionBatch.hpp"

#include "Nuv/Solve/ModelForm.hpp"
#include "Nuv/Solve/ModelTerms.hpp"
#include "Nuv/Solve/SinglePrecisionSolve.hpp"
#include "Nuv/Solve/SinglePrecisionStage.hpp"
#include "Nuv/Solve/SolveSteps.hpp"

#include "Nuv/Utils/NuvLinearProgramming.hpp"
#include "Nuv/Utils/NuvLinearProgrammingBatch.hpp"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace nuv
{
namespace
{

/// Beyond this the dense matrices of a whole batch are too much memory for what the lanes gain.
constexpr Index kMostRows = 64;
constexpr Index kMostColumns = 256;

bool FitsLanes(const CanonicalForm& form)
{
    const auto fits = [](double x) { return std::isfinite(static_cast<float>(x)); };
    return form.rows != 0 && form.rows <= kMostRows && form.columns != 0 &&
           form.columns <= kMostColumns && std::ranges::all_of(form.cost, fits) &&
           std::ranges::all_of(form.rhs, fits) && std::ranges::all_of(form.byRow.value, fits);
}

/// The arrays of a batch of one shape. A model of the core with rows numbered from 1 has them in
/// this order too: its map has at least as many buckets as rows, one for each number.
struct Arrays
{
    std::vector<float> A;
    std::vector<float> b;
    std::vector<float> c;

    void Append(const CanonicalForm& form)
    {
        for (Index i = 0; i < form.rows; ++i)
        {
            A.resize(A.size() + form.columns);
            float* const row = A.data() + A.size() - form.columns;
            for (std::size_t at = form.byRow.start[i]; at < form.byRow.start[i + 1]; ++at)
                row[form.byRow.index[at]] = static_cast<float>(form.byRow.value[at]);
            b.push_back(static_cast<float>(form.rhs[i]));
        }
        for (const double cost : form.cost)
            c.push_back(static_cast<float>(cost));
    }
};

}  // namespace

SinglePrecisionBatch::SinglePrecisionBatch(SolveOptions options) : m_options(std::move(options))
{
    m_options.singlePrecisionOnly = true;
}

void SinglePrecisionBatch::Take(const Model& model)
{
    m_solutions.push_back(BlankSolution(model, m_options));
    Solution& solution = m_solutions.back();
    if (!solution.failure.code.empty())
        return;
    Waiting waiting{m_solutions.size() - 1, SignOf(model), FormOf(model, m_options.numbers), {}};
    if (FindCrossedBounds(waiting.form) == kNoIndex)
        waiting.canonicalised = ToCanonicalForm(waiting.form, m_options.scaling);
    const CanonicalForm& form = waiting.canonicalised.form;
    // A limit of 0 stands for another one there.
    if (m_options.limits.singlePrecisionPivots != 0 && FitsLanes(form))
        m_groups[{form.rows, form.columns}].push_back(std::move(waiting));
    else
        solution = nuv::Solve(model, m_options);
}

void SinglePrecisionBatch::SolveGroup(const Shape& shape, const std::vector<Waiting>& group)
{
    const auto [rows, columns] = shape;
    Arrays arrays;
    for (const Waiting& waiting : group)
        arrays.Append(waiting.canonicalised.form);
    const std::uint64_t budget = SinglePrecisionPivots(rows, columns);
    const auto limit =
        static_cast<NuvUint>(std::min(budget, m_options.limits.singlePrecisionPivots));
    std::vector<NuvUint> verdicts(group.size());
    std::vector<float> values(group.size() * columns);
    const BatchData data{columns, rows, group.size(), arrays.A, arrays.b, arrays.c, limit};
    if (!SolveBatch(data, {.verdicts = verdicts, .values = values}))
        throw std::bad_alloc();
    for (std::size_t k = 0; k != group.size(); ++k)
    {
        const Waiting& waiting = group[k];
        Solution& solution = m_solutions[waiting.place];
        solution.status = StatusOf(static_cast<Verdict>(verdicts[k]));
        if (solution.status == Status::Stopped)
            solution.stopReason = StopReason::PivotLimit;
        if (solution.status == Status::Optimal)
            TakeCanonicalPoint(waiting.form, waiting.sign, waiting.canonicalised,
                               std::span(values).subspan(k * columns, columns), solution);
    }
}

std::vector<Solution> SinglePrecisionBatch::Solve()
{
    for (const auto& [shape, group] : m_groups)
        SolveGroup(shape, group);
    m_groups.clear();
    return std::exchange(m_solutions, {});
}

}  // namespace nuv
