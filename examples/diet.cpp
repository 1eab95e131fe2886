// The cheapest day's food that has enough of everything and not too much of anything.
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <vector>

struct Food
{
    const char* name;
    double price, atMost;
    double energy, protein, calcium;  // in a portion
};

int main()
{
    const std::vector<Food> foods = {
        {"oatmeal", 3, 4, 110, 4, 2}, {"chicken", 24, 3, 205, 32, 12},
        {"eggs", 13, 2, 160, 13, 54}, {"milk", 9, 8, 160, 8, 285},
        {"pie", 20, 2, 420, 4, 22},   {"beans", 19, 2, 260, 14, 80},
    };
    nuv::Model day;
    nuv::Expression cost, energy, protein, calcium;
    std::vector<nuv::Variable> portions;
    for (const Food& food : foods)
    {
        const nuv::Variable portion = day.AddVariable(food.name, {0, food.atMost});
        portions.push_back(portion);
        cost.Add(food.price, portion);
        energy.Add(food.energy, portion);
        protein.Add(food.protein, portion);
        calcium.Add(food.calcium, portion);
    }
    const nuv::Row enough = day.Add("energy", energy >= 2000);
    day.Add("protein", protein >= 55);
    day.Add("calcium", calcium >= 800);
    day.Minimize(cost);

    const nuv::Solution menu = day.Solve();
    std::printf("%s: a day costs %g, exactly %s\n", menu.Outcome().c_str(), menu.objective,
                menu.exactObjective.c_str());
    for (std::size_t k = 0; k < foods.size(); ++k)
        if (menu.Value(portions[k]) > 0)
            std::printf("  %g of %s\n", menu.Value(portions[k]), foods[k].name);
    std::printf("protein %g, calcium %g; 100 kcal more would cost %g\n", Evaluate(protein, menu),
                Evaluate(calcium, menu), 100 * menu.Dual(enough));
}
