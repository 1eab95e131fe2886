// The library's side of a comparison with the yardstick.
#include "tests/reference/CoreSolve.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdio>

namespace reference
{
namespace
{
using Term = NuvPair_NuvUint__NuvFloat32;

/// An array record over borrowed elements; the library only reads it.
NuvVector_NuvPair_NuvUint__NuvFloat32 Borrow(std::vector<Term>* terms)
{
    return {nullptr, terms->data(), terms->data() + terms->size(), terms->data() + terms->size()};
}

std::vector<Term> TermsOf(const float* coefficients, std::size_t count)
{
    std::vector<Term> terms;
    for (std::size_t j = 0; j < count; ++j)
        if (std::bit_cast<std::uint32_t>(coefficients[j]) != 0)
            terms.push_back({static_cast<NuvUint>(j + 1), coefficients[j]});
    return terms;
}

Problem ReorderRows(const Problem& problem, NuvLinearProgramming* lp)
{
    Problem ordered = problem;
    std::size_t row = 0;
    auto* const map = &lp->constraints;
    const auto end = NuvUnordered_NuvUint__NuvLinearProgrammingConstraintEnd(map);
    for (auto it = NuvUnordered_NuvUint__NuvLinearProgrammingConstraintBegin(map); it != end;
         NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorIncrement(&it), ++row)
    {
        const std::size_t source =
            NuvList_NuvPair_NuvUint__NuvLinearProgrammingConstraintIteratorContentOf(&it)->first -
            1;
        const auto n = static_cast<std::ptrdiff_t>(problem.columns);
        const auto from = problem.A.begin() + static_cast<std::ptrdiff_t>(source) * n;
        std::copy(from, from + n, ordered.A.begin() + static_cast<std::ptrdiff_t>(row) * n);
        ordered.b[row] = problem.b[source];
    }
    return ordered;
}

NuvBool Record(NuvLinearProgrammingMonitor* monitor, const NuvLinearProgrammingPivot* pivot)
{
    Recorder* const recorder = static_cast<Recorder*>(monitor->userData);
    if (recorder->pivots.size() == recorder->maxPivots)
        return NUV_FALSE;
    Pivot recorded;
    recorded.phase = pivot->phase;
    recorded.entering = pivot->entering;
    recorded.leaving = pivot->leaving;
    recorded.basic.assign(pivot->basic, pivot->basic + pivot->numBasic);
    recorded.values.assign(pivot->values, pivot->values + pivot->numBasic);
    recorder->pivots.push_back(recorded);
    if (pivot->number != recorder->pivots.size())
        recorder->isNumberedInOrder = false;
    return NUV_TRUE;
}

void Fill(NuvMatrix_NuvFloat32* x, const Matrix& from)
{
    NuvMatrix_NuvFloat32Resize(x, static_cast<NuvUint>(from.rows),
                               static_cast<NuvUint>(from.columns));
    std::copy(from.elements.begin(), from.elements.end(), x->data);
}

void Fill(NuvMatrix_NuvUint* x, const std::vector<std::uint32_t>& from)
{
    NuvMatrix_NuvUintResize(x, 1, static_cast<NuvUint>(from.size()));
    std::copy(from.begin(), from.end(), x->data);
}
}  // namespace

bool EnterModel(NuvLinearProgramming* lp, const Problem& problem)
{
    for (std::size_t i = 0; i < problem.rows; ++i)
    {
        std::vector<Term> terms = TermsOf(problem.A.data() + i * problem.columns, problem.columns);
        const NuvVector_NuvPair_NuvUint__NuvFloat32 row = Borrow(&terms);
        if (!NuvLinearProgrammingSetConstraintByIndex(lp, static_cast<NuvUint>(i + 1), &row,
                                                      problem.b[i]))
            return false;
    }
    std::vector<Term> terms = TermsOf(problem.c.data(), problem.columns);
    const NuvVector_NuvPair_NuvUint__NuvFloat32 objective = Borrow(&terms);
    NuvLinearProgrammingSetObjectiveByIndex(lp, &objective);
    return true;
}

void EnterStandardForm(NuvLinearProgramming* lp, const StandardForm& form)
{
    Fill(&lp->A, form.A);
    Fill(&lp->b, form.b);
    Fill(&lp->c, form.c);
    Fill(&lp->basic, form.basic);
    Fill(&lp->independent, form.independent);
    lp->numConstraints = static_cast<NuvUint>(form.basic.size());
}

CoreModel::CoreModel(const Problem& problem, NuvAllocator* allocator) : ordered(problem)
{
    NuvLinearProgrammingConstruct(&lp, static_cast<NuvUint>(problem.columns), allocator);
    EnterModel(&lp, problem);
    ordered = ReorderRows(problem, &lp);
}

CoreModel::~CoreModel()
{
    NuvLinearProgrammingDestruct(&lp);
}

Solution CoreModel::Solve()
{
    return Read(NuvLinearProgrammingSolve(&lp));
}

Solution CoreModel::SolveMonitored(std::size_t maxPivots)
{
    Recorder recorder(maxPivots);
    Solution solution = Read(NuvLinearProgrammingSolveMonitored(&lp, &recorder.monitor));
    solution.pivots = recorder.pivots;
    return solution;
}

Solution CoreModel::Read(NuvLinearProgrammingResultType result) const
{
    Solution solution;
    solution.status = static_cast<Status>(result);
    solution.objective = NuvLinearProgrammingGetObjectiveValue(&lp);
    const auto* const values = NuvLinearProgrammingGetVariableValues(&lp);
    for (const auto* value = values->begin; value != values->end; ++value)
        solution.values.push_back(value->second);
    return solution;
}

Recorder::Recorder(std::size_t limit) : monitor{Record, this}, maxPivots(limit) {}

bool IsSame(float x, float y)
{
    if (std::isnan(x) || std::isnan(y))
        return std::isnan(x) && std::isnan(y);
    return std::bit_cast<std::uint32_t>(x) == std::bit_cast<std::uint32_t>(y);
}

bool IsSame(const std::vector<float>& x, const std::vector<float>& y)
{
    return std::equal(x.begin(), x.end(), y.begin(), y.end(),
                      [](float left, float right) { return IsSame(left, right); });
}

std::string BitsOf(float x)
{
    char text[64];
    (void)std::snprintf(text, sizeof text, "%.9g [%08X]", static_cast<double>(x),
                        static_cast<unsigned>(std::bit_cast<std::uint32_t>(x)));
    return text;
}

namespace
{
std::string DifferenceOfValues(const char* what, const std::vector<float>& expected,
                               const std::vector<float>& found)
{
    if (expected.size() != found.size())
        return std::string(what) + ": " + std::to_string(expected.size()) + " expected, " +
               std::to_string(found.size()) + " found";
    for (std::size_t i = 0; i < expected.size(); ++i)
        if (!IsSame(expected[i], found[i]))
            return std::string(what) + " at " + std::to_string(i) + ": " + BitsOf(expected[i]) +
                   " expected, " + BitsOf(found[i]) + " found";
    return {};
}

std::string Name(const Pivot& pivot)
{
    return "phase " + std::to_string(pivot.phase) + ", " + std::to_string(pivot.entering) +
           " enters, " + std::to_string(pivot.leaving) + " leaves";
}

std::string Difference(const Pivot& expected, const Pivot& found)
{
    if (expected.phase != found.phase || expected.entering != found.entering ||
        expected.leaving != found.leaving)
        return Name(expected) + " expected; " + Name(found) + " found";
    if (expected.basic != found.basic)
        return "the labels of the basis differ";
    return DifferenceOfValues("basic values", expected.values, found.values);
}
}  // namespace

std::string DifferenceOfResults(const Solution& expected, const Solution& found)
{
    if (expected.status != found.status)
        return "status " + std::to_string(static_cast<int>(expected.status)) + " expected, " +
               std::to_string(static_cast<int>(found.status)) + " found";
    if (!IsSame(expected.objective, found.objective))
        return "objective " + BitsOf(expected.objective) + " expected, " + BitsOf(found.objective) +
               " found";
    return DifferenceOfValues("values", expected.values, found.values);
}

std::string Difference(const Solution& expected, const Solution& found)
{
    const std::size_t common = std::min(expected.pivots.size(), found.pivots.size());
    for (std::size_t i = 0; i < common; ++i)
    {
        const std::string difference = Difference(expected.pivots[i], found.pivots[i]);
        if (!difference.empty())
            return "pivot " + std::to_string(i + 1) + ": " + difference;
    }
    if (expected.pivots.size() != found.pivots.size())
        return std::to_string(expected.pivots.size()) + " pivots expected, " +
               std::to_string(found.pivots.size()) + " found";
    return DifferenceOfResults(expected, found);
}

std::string Difference(const Matrix& expected, const NuvMatrix_NuvFloat32& found)
{
    if (expected.rows != found.nr || expected.columns != found.nc)
        return "the shapes differ";
    if (expected.elements.empty())
        return {};
    return DifferenceOfValues("elements", expected.elements,
                              {found.data, found.data + expected.elements.size()});
}
}  // namespace reference
