// A program for any machine: reads models as text, solves them and expects each verdict to be
// proved, the optimum as the fraction that it is. Then it solves drawn models and prints a hash of
// the way to each optimum, which all machines have to take: before each pivot the bits of the
// objective, and the last basis. It rests on the model layer and the standard library alone.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Solve/Solution.hpp"
#include "tests/support/Hash.hpp"
#include "tests/support/Random.hpp"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <string_view>
#include <vector>

namespace
{

struct Known
{
    std::string_view name;
    std::string_view text;
    nuv::Status status;
    std::string_view optimum;
};

constexpr Known kModels[] = {
    {"factory",
     "Maximize\n profit: 30 chairs + 70 tables\nSubject To\n"
     " wood: 2 chairs + 5 tables <= 300\n labour: 4 chairs + 3 tables <= 240\nEnd\n",
     nuv::Status::Optimal, "29700/7"},
    {"blending",
     "Minimize\n price: 310 a + 275 b + 360 c + 240 d + 295 e\nSubject To\n"
     " tonne: a + b + c + d + e = 1\n lead: 20 <= 10 a + 10 b + 40 c + 60 d + 30 e <= 30\n"
     " zinc: 10 a + 30 b + 50 c + 30 d + 30 e = 30\nBounds\n b <= 0.25\n d <= 0.5\nEnd\n",
     nuv::Status::Optimal, "1685/6"},
    {"beyond doubles",
     "Maximize\n sum: x + y + z\nSubject To\n a: 9007199254740991 x + y <= 3\n"
     " b: x + 9007199254740991 y <= 5\n c: 3 z - x <= 1\nEnd\n",
     nuv::Status::Optimal, "10141204801825863359471296708601/30423614405477498880521435873280"},
    {"contradiction", "Minimize\n x\nSubject To\n a: x + y <= 1\n b: x + y >= 2\nEnd\n",
     nuv::Status::Infeasible, ""},
    {"ray", "Maximize\n x + y\nSubject To\n a: x - y <= 1\n b: y - x <= 1\nEnd\n",
     nuv::Status::Unbounded, ""},
};

bool IsAsKnown(const Known& known)
{
    const nuv::ReadResult reading = nuv::ReadLp(known.text, known.name);
    if (!reading.Ok())
    {
        std::printf("%.*s: %s\n", static_cast<int>(known.name.size()), known.name.data(),
                    reading.GetError().text.c_str());
        return false;
    }
    const nuv::Solution solution = nuv::Solve(*reading.model);
    const bool isAsKnown = solution.proved && solution.status == known.status &&
                           (known.optimum.empty() || known.optimum == solution.exactObjective);
    std::printf("%.*s: %s %s\n", static_cast<int>(known.name.size()), known.name.data(),
                isAsKnown ? "proved" : "NOT AS KNOWN", solution.exactObjective.c_str());
    return isAsKnown;
}

/// Sparse ones for the general way, with ranges, equations and bounds of all kinds, and every third
/// dense and small; decimals of two places, feasible at a point that is drawn first.
nuv::Model DrawModel(nuv::test::Random& random, bool isDense)
{
    const int rows = isDense ? random.Between(4, 12) : random.Between(30, 60);
    const int columns = isDense ? random.Between(4, 12) : random.Between(40, 80);
    nuv::Model model;
    std::vector<nuv::Variable> variables;
    std::vector<int> point;
    nuv::Expression objective;
    for (int j = 0; j < columns; ++j)
    {
        point.push_back(random.Between(0, 9));
        variables.push_back(
            model.AddVariable({random.OneIn(5) ? -10.0 : 0.0, random.OneIn(3) ? 10.0 : 25.0}));
        objective += random.Between(-900, 900) / 100.0 * variables.back();
    }
    for (int i = 0; i < rows; ++i)
    {
        nuv::Expression row;
        int activity = 0;
        for (std::size_t j = 0; j < variables.size(); ++j)
        {
            if (!isDense && !random.OneIn(10))
                continue;
            const int entry = random.Between(-500, 500);
            row += entry / 100.0 * variables[j];
            activity += entry * point[j];
        }
        const double lower = (activity - random.Between(0, 200)) / 100.0;
        if (random.OneIn(6))
            model.Add(row == activity / 100.0);
        else if (random.OneIn(2))
            model.Add(row >= lower);
        else
            model.Add(row <= activity / 100.0);
    }
    model.Minimize(objective);
    return model;
}

/// @return whether every verdict is proved.
bool PrintWays()
{
    constexpr int kModelCount = 30;
    nuv::test::Random random(1);
    nuv::test::Hash hash;
    std::uint64_t steps = 0;
    bool areProved = true;
    for (int k = 0; k < kModelCount; ++k)
    {
        const nuv::Model model = DrawModel(random, k % 3 == 0);
        nuv::SolveOptions options;
        options.limits.keepGoing = [&](const nuv::Progress& progress)
        {
            ++steps;
            hash.Add(static_cast<std::uint64_t>(progress.stage));
            hash.Add(progress.pivots);
            if (!std::isnan(progress.objective))
                hash.Add(std::bit_cast<std::uint64_t>(progress.objective));
            return true;
        };
        const nuv::Solution solution = nuv::Solve(model, options);
        areProved = areProved && solution.proved;
        for (const auto& statuses : {solution.basis.columns, solution.basis.rows})
            for (const nuv::BasisStatus status : statuses)
                hash.Add(static_cast<std::uint64_t>(status));
    }
    std::printf("bases of %d models in %llu steps: %016llx\n", kModelCount,
                static_cast<unsigned long long>(steps),
                static_cast<unsigned long long>(hash.Value()));
    return areProved;
}

}  // namespace

int main()
{
    bool areAsKnown = true;
    for (const Known& known : kModels)
        areAsKnown = IsAsKnown(known) && areAsKnown;
    return PrintWays() && areAsKnown ? 0 : 1;
}
