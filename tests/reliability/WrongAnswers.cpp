// How often the core is wrong, by family, against proved answers of the model layer:
//
//     wrong_answers [--problems N]
//
// solves N problems of each family, and prints a line of JSON for each family, for
// bench/report/document.py. An answer of the core is wrong if its verdict is not the proved one, or
// its objective is off by more than a thousandth; one that was stopped at the limit of pivots is
// none. All is drawn in integers, so that the figures are those of any machine; those of the first
// hundred problems stand beside those of all, so that a small run can be held against a large one.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "Nuv/Corpus/BenchmarkModels.hpp"
#include "Nuv/Corpus/Random.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "Nuv/Utils/NuvLinearProgramming.hpp"

namespace
{
using nuv::corpus::BenchmarkFamily;
using nuv::corpus::Random;

constexpr std::uint32_t kFirst = 100;

/// max cᵀx, A x ≤ b, x ≥ 0, row after row.
struct Problem
{
    std::size_t columns;
    std::vector<std::vector<float>> rows;
    std::vector<float> sides;
    std::vector<float> costs;

    void Add(std::vector<float> row, float side)
    {
        rows.push_back(std::move(row));
        sides.push_back(side);
    }

    void AddEquation(const std::vector<float>& row, float side)
    {
        Add(row, side);
        std::vector<float> opposite = row;
        for (float& a : opposite)
            a = -a;
        Add(opposite, -side);
    }

    void AddBounds(float most)
    {
        for (std::size_t j = 0; j != columns; ++j)
        {
            std::vector<float> row(columns);
            row[j] = 1.0F;
            Add(row, most);
        }
    }
};

// Families ----------------------------------------------------------------------------------------

/// Two free variables between −10 and 10 and some half-planes, most of which leave a point.
struct Plane
{
    float normals[8][2];
    float sides[8];
    float costs[2];
    std::size_t count;

    Plane(std::size_t halfPlanes, Random* random) : count(halfPlanes)
    {
        for (std::size_t k = 0; k != count; ++k)
        {
            do
                for (float& a : normals[k])
                    a = random->Integer(-9, 9);
            while (normals[k][0] == 0.0F && normals[k][1] == 0.0F);
            sides[k] = random->Integer(-20, 60);
        }
        for (float& c : costs)
            c = random->Integer(-9, 9);
    }
};

/// x = x⁺ − x⁻ and y = y⁺ − y⁻.
Problem Split(std::size_t halfPlanes, Random* random)
{
    const Plane plane(halfPlanes, random);
    Problem p = {4, {}, {}, {plane.costs[0], -plane.costs[0], plane.costs[1], -plane.costs[1]}};
    const auto add = [&p](float a, float b, float side) { p.Add({a, -a, b, -b}, side); };
    for (const float sign : {1.0F, -1.0F})
    {
        add(sign, 0.0F, 10.0F);
        add(0.0F, sign, 10.0F);
    }
    for (std::size_t k = 0; k != plane.count; ++k)
        add(plane.normals[k][0], plane.normals[k][1], plane.sides[k]);
    return p;
}

/// x = x' − 10 and y = y' − 10, the same problem but for a constant of the objective.
Problem Shifted(std::size_t halfPlanes, Random* random)
{
    const Plane plane(halfPlanes, random);
    Problem p = {2, {}, {}, {plane.costs[0], plane.costs[1]}};
    p.AddBounds(20.0F);
    for (std::size_t k = 0; k != plane.count; ++k)
    {
        const float a = plane.normals[k][0];
        const float b = plane.normals[k][1];
        p.Add({a, b}, plane.sides[k] + 10.0F * (a + b));
    }
    return p;
}

/// Equations through an integer point, each as two rows, with variables up to 10.
Problem Equations(std::size_t columns, std::size_t equations, Random* random)
{
    Problem p = {columns, {}, {}, {}};
    std::vector<float> point;
    for (std::size_t j = 0; j != columns; ++j)
    {
        point.push_back(random->Integer(0, 10));
        p.costs.push_back(random->Integer(-9, 9));
    }
    for (std::size_t i = 0; i != equations; ++i)
    {
        std::vector<float> row;
        float side = 0.0F;
        for (std::size_t j = 0; j != columns; ++j)
        {
            row.push_back(random->Integer(1, 9));
            side += row[j] * point[j];
        }
        p.AddEquation(row, side);
    }
    p.AddBounds(10.0F);
    return p;
}

Problem OfCorpus(BenchmarkFamily family, std::uint32_t rows, std::uint32_t columns, Random* random)
{
    std::vector<float> A(std::size_t{rows} * columns);
    Problem p = {columns, {}, std::vector<float>(rows), std::vector<float>(columns)};
    nuv::corpus::Problem made = {rows, columns, A.data(), p.sides.data(), p.costs.data()};
    MakeBenchmarkModel(family, random->Next(), &made);
    for (std::uint32_t i = 0; i != rows; ++i)
        p.rows.emplace_back(made.Row(i), made.Row(i) + columns);
    return p;
}

struct Family
{
    const char* name;
    Problem (*make)(Random* random);
    /// Whether it is one problem alone.
    bool isFixed = false;
};

constexpr Family kFamilies[] = {
    {"two free variables, split, 1 half-plane", [](Random* r) { return Split(1, r); }},
    {"two free variables, split, 3 half-planes", [](Random* r) { return Split(3, r); }},
    {"two free variables, split, 6 half-planes", [](Random* r) { return Split(6, r); }},
    {"the same shifted, 1 half-plane", [](Random* r) { return Shifted(1, r); }},
    {"the same shifted, 3 half-planes", [](Random* r) { return Shifted(3, r); }},
    {"the same shifted, 6 half-planes", [](Random* r) { return Shifted(6, r); }},
    {"an equation of 3 variables as two rows", [](Random* r) { return Equations(3, 1, r); }},
    {"an equation of 5 variables as two rows", [](Random* r) { return Equations(5, 1, r); }},
    {"2 equations of 5 variables as four rows", [](Random* r) { return Equations(5, 2, r); }},
    {"8x + 6y = 114, x, y ≤ 10, max x",
     [](Random*)
     {
         Problem p = {2, {}, {}, {1.0F, 0.0F}};
         p.AddEquation({8.0F, 6.0F}, 114.0F);
         p.AddBounds(10.0F);
         return p;
     },
     true},
    {"positive rows, 10 × 10",
     [](Random* r) { return OfCorpus(BenchmarkFamily::Positive, 10, 10, r); }},
    {"assignment, 10 × 25",
     [](Random* r) { return OfCorpus(BenchmarkFamily::Assignment, 10, 25, r); }},
    {"transport, 10 × 25",
     [](Random* r) { return OfCorpus(BenchmarkFamily::Transport, 10, 25, r); }},
};

// Answers -----------------------------------------------------------------------------------------

nuv::Solution SolveModel(const Problem& p)
{
    nuv::Model model;
    const std::vector<nuv::Variable> x = model.AddVariables(p.columns);
    nuv::Expression objective;
    for (std::size_t j = 0; j != p.columns; ++j)
        objective += static_cast<double>(p.costs[j]) * x[j];
    model.Maximize(objective);
    for (std::size_t i = 0; i != p.rows.size(); ++i)
    {
        nuv::Expression row;
        for (std::size_t j = 0; j != p.columns; ++j)
            row += static_cast<double>(p.rows[i][j]) * x[j];
        (void)model.Add(row <= static_cast<double>(p.sides[i]));
    }
    nuv::SolveOptions options;
    options.iisWork = 0;
    return nuv::Solve(model, options);
}

enum class CoreAnswer
{
    Right,
    Wrong,
    None
};

CoreAnswer SolveCore(const Problem& p, const nuv::Solution& proved)
{
    nuv::LinearProgram program(static_cast<NuvUint>(p.columns));
    const auto termsOf = [](const std::vector<float>& row)
    {
        std::vector<nuv::IndexedTerm> terms;
        for (std::size_t j = 0; j != row.size(); ++j)
            if (row[j] != 0.0F)
                terms.push_back({static_cast<NuvUint>(j) + 1, row[j]});
        return terms;
    };
    for (std::size_t i = 0; i != p.rows.size(); ++i)
        program.SetConstraint(static_cast<NuvUint>(i) + 1, termsOf(p.rows[i]), p.sides[i]);
    program.SetObjective(termsOf(p.costs));
    switch (program.Solve())
    {
    case nuv::Verdict::Ok:
        if (proved.status == nuv::Status::Optimal &&
            std::fabs(static_cast<double>(program.Objective()) - proved.objective) <=
                1e-3 * std::max(1.0, std::fabs(proved.objective)))
            return CoreAnswer::Right;
        return CoreAnswer::Wrong;
    case nuv::Verdict::Infeasible:
        return proved.status == nuv::Status::Infeasible ? CoreAnswer::Right : CoreAnswer::Wrong;
    case nuv::Verdict::Unbounded:
        return proved.status == nuv::Status::Unbounded ? CoreAnswer::Right : CoreAnswer::Wrong;
    default:
        return CoreAnswer::None;
    }
}

/// How many problems were answered in which way.
struct Tally
{
    std::uint32_t problems = 0;
    std::uint32_t wrong = 0;
    std::uint32_t stopped = 0;
    std::uint32_t unproved = 0;

    void Print(const char* suffix) const
    {
        std::printf(", \"problems%s\": %u, \"wrong%s\": %u, \"stopped%s\": %u, \"unproved%s\": %u",
                    suffix, problems, suffix, wrong, suffix, stopped, suffix, unproved);
    }
};

void Solve(std::size_t number, std::uint32_t count)
{
    const Family& family = kFamilies[number];
    Tally all;
    Tally first;
    for (std::uint32_t k = 0; k != (family.isFixed ? 1 : count); ++k)
    {
        Random random((std::uint64_t{number} << 32U) + k + 1);
        const Problem problem = family.make(&random);
        const nuv::Solution proved = SolveModel(problem);
        const CoreAnswer answer = SolveCore(problem, proved);
        ++all.problems;
        all.wrong += answer == CoreAnswer::Wrong ? 1 : 0;
        all.stopped += answer == CoreAnswer::None ? 1 : 0;
        all.unproved += proved.proved ? 0 : 1;
        if (k < kFirst)
            first = all;
    }
    std::printf("{\"kind\": \"wrong\", \"family\": \"%s\"", family.name);
    all.Print("");
    first.Print("_first");
    std::printf("}\n");
    std::fflush(stdout);
}
}  // namespace

int main(int count, char** words)
{
    std::uint32_t problems = 10000;
    if (count == 3 && std::strcmp(words[1], "--problems") == 0)
        problems = static_cast<std::uint32_t>(std::strtoul(words[2], nullptr, 10));
    else if (count != 1)
    {
        std::fprintf(stderr, "usage: wrong_answers [--problems N]\n");
        return 64;
    }
    for (std::size_t number = 0; number != std::size(kFamilies); ++number)
        Solve(number, problems);
    return EXIT_SUCCESS;
}
