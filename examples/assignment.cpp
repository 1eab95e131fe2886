// Four people and four tasks: who does what, so that the hours are fewest? The linear program has
// a solution without halves all by itself.
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <string>
#include <unordered_map>
#include <vector>

int main()
{
    const std::vector<std::string> people = {"Ada", "Ben", "Cleo", "Dan"};
    const std::vector<std::string> tasks = {"roof", "walls", "wiring", "garden"};
    const std::vector<std::vector<double>> hours = {
        {9, 2, 7, 8}, {6, 4, 3, 7}, {5, 8, 1, 8}, {7, 6, 9, 4}};

    nuv::Model week;
    std::unordered_map<nuv::Variable, std::string> meaning;
    std::vector<nuv::Expression> doneBy(tasks.size());
    nuv::Expression total;
    for (std::size_t i = 0; i < people.size(); ++i)
    {
        const std::vector<nuv::Variable> does = week.AddVariables(tasks.size());
        for (std::size_t j = 0; j < tasks.size(); ++j)
        {
            meaning[does[j]] = people[i] + " does the " + tasks[j];
            doneBy[j] += does[j];
        }
        week.Add(people[i], Sum(does) == 1);
        total += Dot(hours[i], does);
    }
    for (std::size_t j = 0; j < tasks.size(); ++j)
        week.Add(tasks[j], doneBy[j] == 1);
    week.Minimize(total);

    const nuv::Solution plan = week.Solve();
    std::printf("%g hours\n", plan.objective);
    for (std::uint32_t k = 0; k < week.VariableCount(); ++k)
        if (plan.values[k] == 1)
            std::printf("  %s\n", meaning[week.VariableAt(k)].c_str());
}
