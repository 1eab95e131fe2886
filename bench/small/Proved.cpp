// Small dense models, each solved and proved: alone, from a model that stands to its solution, and
// in a batch through the C interface, on one thread and, in halves, on two. Prints a table in
// microseconds for each model, the best of three rounds: processor time of the first two, and how
// many times as fast two threads are as one, by the clock on the wall.
//
//     bench_proved [--quick]
//
// Ends with 1 if an answer is not proved, or two are not the same.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <random>
#include <thread>
#include <vector>

#include "bench/Stopwatch.hpp"

#include "Nuv/Model/NuvModel.h"

namespace bench
{
namespace
{
struct Shape
{
    std::uint32_t size;
    std::size_t count;
    bool isInteger;  ///< one to a hundred, or random numbers of all digits
};

/// minimise c . x, A x <= b, x >= 0 with positive rows, one problem behind the other.
struct Problems
{
    explicit Problems(const Shape& shape)
        : matrix(shape.count * shape.size * shape.size),
          sides(shape.count * shape.size),
          costs(shape.count * shape.size)
    {
        std::mt19937_64 random(1);
        const auto next = [&](double least, unsigned most)
        {
            return shape.isInteger ? static_cast<double>(random() % most + 1)
                                   : static_cast<double>(random() >> 11) * 0x1p-53 + least;
        };
        for (double& entry : matrix)
            entry = next(0.1, 100);
        for (double& side : sides)
            side = next(1.0, 1000);
        for (double& cost : costs)
            cost = -next(0.0, 100);
    }

    std::vector<double> matrix;
    std::vector<double> sides;
    std::vector<double> costs;
};

struct DestructModel
{
    void operator()(NuvModel* model) const
    {
        NuvModelDestruct(model);
    }
};
using OwnedModel = std::unique_ptr<NuvModel, DestructModel>;

OwnedModel ModelOf(const Shape& shape, const Problems& problems, std::size_t k)
{
    const std::size_t n = shape.size;
    std::vector<std::uint64_t> starts(n + 1);
    std::vector<std::uint32_t> indices(n * n);
    for (std::size_t i = 0; i < n * n; ++i)
        indices[i] = static_cast<std::uint32_t>(i % n);
    for (std::size_t i = 0; i <= n; ++i)
        starts[i] = i * n;
    NuvModelArrays arrays;
    (void)NuvModelArraysInit(&arrays, sizeof arrays);  // the size is right
    arrays.numColumns = arrays.numRows = shape.size;
    arrays.numEntries = n * n;
    arrays.costs = problems.costs.data() + k * n;
    arrays.rowUpper = problems.sides.data() + k * n;
    arrays.starts = starts.data();
    arrays.indices = indices.data();
    arrays.values = problems.matrix.data() + k * n * n;
    OwnedModel model(NuvModelConstruct());
    (void)NuvModelAssignArrays(model.get(), &arrays, nullptr);  // seen by its solve
    return model;
}

struct Answers
{
    std::vector<double> objectives;
    double seconds = 0.0;
    double elapsed = 0.0;
};

Answers SolveAlone(const Shape& shape, const std::vector<OwnedModel>& models)
{
    Answers answers;
    const Stopwatch watch;
    for (std::size_t k = 0; k < shape.count; ++k)
    {
        NuvSolution* solution = nullptr;
        (void)NuvModelSolve(models[k].get(), nullptr, &solution, nullptr);  // null then
        answers.objectives.push_back(
            NuvSolutionIsProved(solution) != 0 ? NuvSolutionGetObjective(solution) : std::nan(""));
        NuvSolutionDestruct(solution);
    }
    answers.seconds = watch.Seconds();
    return answers;
}

Answers SolveInBatch(const Shape& shape, const Problems& problems, std::size_t numThreads)
{
    Answers answers;
    answers.objectives.assign(shape.count, std::nan(""));
    std::vector<double> values(problems.costs.size());
    const std::size_t n = shape.size;
    NuvBatch batch;
    (void)NuvBatchInit(&batch, sizeof batch);  // the size is right
    batch.numColumns = batch.numUpperRows = shape.size;
    batch.count = shape.count;
    batch.costs = problems.costs.data();
    batch.upperSides = problems.sides.data();
    batch.costsStride = batch.upperSidesStride = n;
    batch.upperMatrix = problems.matrix.data();
    batch.upperStride = n * n;
    batch.objectives = answers.objectives.data();
    batch.values = values.data();
    const auto solve = [&](std::size_t part)
    {
        (void)NuvModelSolveBatch(&batch, shape.count * part / numThreads,
                                 shape.count * (part + 1) / numThreads, nullptr);  // NaN then
    };
    const Stopwatch watch;
    const Stopwatch wall(Clock::Monotonic);
    {
        std::vector<std::jthread> threads;
        for (std::size_t part = 1; part < numThreads; ++part)
            threads.emplace_back(solve, part);
        solve(0);
    }
    answers.elapsed = wall.Seconds();
    answers.seconds = watch.Seconds();
    return answers;
}

/// @return whether all answers are proved and the same.
bool Measure(const Shape& shape)
{
    const Problems problems(shape);
    std::vector<OwnedModel> models;
    for (std::size_t k = 0; k < shape.count; ++k)
        models.push_back(ModelOf(shape, problems, k));
    double alone = HUGE_VAL;
    double batch = HUGE_VAL;
    double onOne = HUGE_VAL;
    double onTwo = HUGE_VAL;
    bool isRight = true;
    for (int round = 0; round < 3; ++round)
    {
        const Answers one = SolveAlone(shape, models);
        const Answers many = SolveInBatch(shape, problems, 1);
        const Answers halves = SolveInBatch(shape, problems, 2);
        // A NaN equals nothing.
        isRight =
            isRight && one.objectives == many.objectives && one.objectives == halves.objectives;
        alone = std::min(alone, one.seconds);
        batch = std::min(batch, many.seconds);
        onOne = std::min(onOne, many.elapsed);
        onTwo = std::min(onTwo, halves.elapsed);
    }
    const double each = 1e6 / static_cast<double>(shape.count);
    std::printf("%3u x %-3u %-12s %10.1f %10.1f %12.2f%s\n", shape.size, shape.size,
                shape.isInteger ? "integers" : "all digits", alone * each, batch * each,
                onOne / onTwo, isRight ? "" : "  WRONG");
    std::fflush(stdout);
    return isRight;
}
}  // namespace
}  // namespace bench

int main(int argc, char** argv)
{
    const bool isQuick = argc == 2 && std::strcmp(argv[1], "--quick") == 0;
    if (argc > 1 && !isQuick)
    {
        std::fputs("usage: bench_proved [--quick]\n", stderr);
        return 64;
    }
    std::printf("%-22s %10s %10s %12s\n", "microseconds", "alone", "in a batch", "two threads");
    bool isRight = true;
    for (const std::uint32_t size : {5u, 10u, 20u, 50u})
        for (const bool isInteger : {true, false})
            isRight &=
                bench::Measure({size, (isQuick ? 10000 : 250000) / (size * size), isInteger});
    return isRight ? 0 : 1;
}
