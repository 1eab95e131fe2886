/// The least change that makes a form feasible is the least: against every vertex of the
/// arrangement of all bounds, at one of which the sum of violations has its minimum.
#include "tests/support/Effort.hpp"
#include "tests/support/Forms.hpp"

#include "Nuv/Solve/FeasibilityRepair.hpp"

#include <gtest/gtest.h>

#include <cmath>
#include <optional>
#include <vector>

namespace nuv::test
{
namespace
{

struct ExactBounds
{
    std::optional<Rational> lower;
    std::optional<Rational> upper;
};

/// A form in fractions: the row vectors of its variables over the columns, and their bounds.
struct ExactProblem
{
    explicit ExactProblem(const BoundedForm& form)
    {
        for (Index v = 0; v < form.Variables(); ++v)
        {
            std::vector<Rational> vector(form.columns, Rational(0));
            if (!form.IsLogical(v))
                vector[v] = 1;
            else
                for (const auto [column, entry] : form.matrix.Row(form.RowOf(v)))
                    vector[column] = ToRational(entry);
            vectors.push_back(vector);
            bounds.emplace_back();
            if (std::isfinite(form.Lower(v)))
                bounds.back().lower = ToRational(form.Lower(v));
            if (std::isfinite(form.Upper(v)))
                bounds.back().upper = ToRational(form.Upper(v));
        }
    }

    std::vector<std::vector<Rational>> vectors;
    std::vector<ExactBounds> bounds;
};

Rational Product(const std::vector<Rational>& vector, const std::vector<Rational>& point)
{
    Rational sum = 0;
    for (std::size_t k = 0; k < point.size(); ++k)
        sum += vector[k] * point[k];
    return sum;
}

/// The weighted sum of violations at a point; nothing where a bound that stays is violated.
std::optional<Rational> Violation(const BoundedForm& form, const ExactProblem& problem,
                                  const std::vector<double>& weights,
                                  const std::vector<Rational>& point)
{
    Rational sum = 0;
    for (Index v = 0; v < form.Variables(); ++v)
    {
        const Rational value = Product(problem.vectors[v], point);
        const auto& [lower, upper] = problem.bounds[v];
        for (const bool isUpper : {false, true})
        {
            const std::optional<Rational>& bound = isUpper ? upper : lower;
            if (!bound)
                continue;
            const Rational by = isUpper ? value - *bound : *bound - value;
            if (by.Sign() <= 0)
                continue;
            if (std::isinf(weights[v]) || IsDefault(form, {v, isUpper}))
                return std::nullopt;
            sum += ToRational(weights[v]) * by;
        }
    }
    return sum;
}

struct Plane
{
    std::vector<Rational> normal;
    Rational side;
};

/// The point where so many planes meet as there are columns; nothing if that is not one point.
std::optional<std::vector<Rational>> Meeting(std::vector<Plane> planes)
{
    const std::size_t size = planes.size();
    for (std::size_t k = 0; k < size; ++k)
    {
        std::size_t pivot = k;
        while (pivot < size && planes[pivot].normal[k] == 0)
            ++pivot;
        if (pivot == size)
            return std::nullopt;
        std::swap(planes[k], planes[pivot]);
        for (std::size_t i = 0; i < size; ++i)
        {
            if (i == k)
                continue;
            const Rational factor = planes[i].normal[k] / planes[k].normal[k];
            for (std::size_t j = 0; j < size; ++j)
                planes[i].normal[j] -= factor * planes[k].normal[j];
            planes[i].side -= factor * planes[k].side;
        }
    }
    std::vector<Rational> point;
    for (std::size_t k = 0; k < size; ++k)
        point.push_back(planes[k].side / planes[k].normal[k]);
    return point;
}

/// The least weighted sum of violations: where lines lie in a level of it, the planes x_j = 0 cut
/// them. @return nothing if bounds that stay exclude each other.
std::optional<Rational> LeastViolation(const BoundedForm& form, const ExactProblem& problem,
                                       const std::vector<double>& weights)
{
    std::vector<Plane> planes;
    for (Index v = 0; v < form.Variables(); ++v)
        for (const std::optional<Rational>& bound :
             {problem.bounds[v].lower, problem.bounds[v].upper})
            if (bound)
                planes.push_back({problem.vectors[v], *bound});
    for (Index j = 0; j < form.columns; ++j)
        planes.push_back({problem.vectors[j], Rational(0)});
    std::optional<Rational> least;
    std::vector<std::size_t> chosen(form.columns);
    const auto visit = [&](auto&& self, std::size_t depth, std::size_t from) -> void
    {
        if (depth < chosen.size())
        {
            for (std::size_t at = from; at < planes.size(); ++at)
            {
                chosen[depth] = at;
                self(self, depth + 1, at + 1);
            }
            return;
        }
        std::vector<Plane> meeting;
        for (const std::size_t at : chosen)
            meeting.push_back(planes[at]);
        const std::optional<std::vector<Rational>> point = Meeting(std::move(meeting));
        const std::optional<Rational> violation =
            point ? Violation(form, problem, weights, *point) : std::nullopt;
        if (violation && (!least || *violation < *least))
            least = violation;
    };
    visit(visit, 0, 0);
    return least;
}

std::vector<double> RandomWeights(Random& random, Index variables)
{
    std::vector<double> weights(variables, 1.0);
    if (random.OneIn(3))
        return weights;
    for (double& weight : weights)
        weight = random.OneIn(6) ? kInf : random.Between(1, 4);
    return weights;
}

FeasibilityRepair RepairOf(const BoundedForm& form, const std::vector<double>& weights)
{
    SolveControl control;
    return FindRepair(form, weights, control);
}

TEST(FeasibilityRepair, MovesWhatIsCheapest)
{
    // x + y >= 9 with x <= 3, y <= 4: two are missing.
    const BoundedForm form = MakeForm({1, 1}, {{{1, 1}, {9, kInf}}}, {{0, 3}, {0, 4}});
    const FeasibilityRepair even = RepairOf(form, {1, 1, 1});
    EXPECT_EQ(even.elastic.certificate.status, Status::Optimal);
    EXPECT_TRUE(even.elastic.record.proved);
    EXPECT_EQ(even.total, Rational(2));
    const FeasibilityRepair weighted = RepairOf(form, {3, 2, kInf});
    ASSERT_EQ(weighted.changes.size(), 1u);
    EXPECT_EQ(weighted.changes[0].bound, (BoundOfVariable{1, true}));
    EXPECT_EQ(weighted.changes[0].amount, Rational(2));
    EXPECT_EQ(weighted.total, Rational(4));
    const FeasibilityRepair none = RepairOf(form, {kInf, kInf, kInf});
    EXPECT_EQ(none.elastic.certificate.status, Status::Infeasible);
    EXPECT_TRUE(none.elastic.record.proved);
}

TEST(FeasibilityRepair, OfBoundsThatCrossClosesTheGap)
{
    const BoundedForm form = MakeForm({0, 0}, {{{1, 1}, {6, 2}}}, {{0, 1}, {5, 3}});
    const FeasibilityRepair both = RepairOf(form, {1, 1, 1});
    EXPECT_EQ(both.total, Rational(6));
    const FeasibilityRepair one = RepairOf(form, {1, 1, kInf});
    EXPECT_EQ(one.elastic.certificate.status, Status::Infeasible) << "the row stays crossed";
    // A stated upper bound below the lower bound of zero that nobody stated.
    const BoundedForm negative = MakeForm({0}, {{{1}, {-kInf, 4}}}, {{0, -2}});
    const FeasibilityRepair up = RepairOf(negative, {1, 1});
    ASSERT_EQ(up.changes.size(), 1u);
    EXPECT_EQ(up.changes[0].bound, (BoundOfVariable{0, true}));
    EXPECT_EQ(up.total, Rational(2));
}

TEST(FeasibilityRepair, IsTheLeastAndEnough)
{
    int repaired = 0, kept = 0, crossed = 0;
    for (std::uint64_t seed = 1; seed <= ShareOf(1000U); ++seed)
    {
        SCOPED_TRACE(seed);
        Random random(seed);
        const auto columns = static_cast<Index>(random.Between(1, 3));
        const BoundedForm form =
            RandomSmallForm(random, static_cast<Index>(random.Between(1, 4)), columns);
        const std::vector<double> weights = RandomWeights(random, form.Variables());
        const FeasibilityRepair repair = RepairOf(form, weights);
        ExactProblem problem(form);
        const std::optional<Rational> least = LeastViolation(form, problem, weights);
        ASSERT_TRUE(repair.elastic.record.proved);
        if (!least)
        {
            ++kept;
            ASSERT_EQ(repair.elastic.certificate.status, Status::Infeasible);
            continue;
        }
        ASSERT_EQ(repair.elastic.certificate.status, Status::Optimal);
        ASSERT_EQ(repair.total, *least) << ToString(repair.total) << ' ' << ToString(*least);
        repaired += repair.changes.empty() ? 0 : 1;
        crossed += FindCrossedBounds(form) != kNoIndex ? 1 : 0;
        for (const auto& [bound, amount] : repair.changes)
        {
            ASSERT_GT(amount.Sign(), 0);
            auto& [lower, upper] = problem.bounds[bound.variable];
            if (bound.upper)
                *upper += amount;
            else
                *lower -= amount;
        }
        ASSERT_EQ(LeastViolation(form, problem, weights), Rational(0)) << "the changes are enough";
    }
    EXPECT_GT(repaired, ShareOf(230));
    EXPECT_GT(kept, ShareOf(10));
    EXPECT_GT(crossed, ShareOf(15));
}

}  // namespace
}  // namespace nuv::test
