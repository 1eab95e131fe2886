// Half a year of production with stock: the demand of each month is met from that month's work, at
// its cost, or from stock, which costs room. When is it worth working ahead?
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <vector>

int main()
{
    const std::vector<double> demand = {100, 120, 180, 250, 160, 90};
    const std::vector<double> cost = {10, 10, 11, 12, 11, 10};  // of a unit made in the month
    const double capacity = 140, overtime = 40, extra = 3, room = 0.5;

    nuv::Model plan;
    const std::vector<nuv::Variable> make = plan.AddVariables(demand.size(), {0, capacity});
    const std::vector<nuv::Variable> late = plan.AddVariables(demand.size(), {0, overtime});
    const std::vector<nuv::Variable> stock = plan.AddVariables(demand.size());
    std::vector<nuv::Row> balance;
    nuv::Expression total = room * Sum(stock);
    for (std::size_t month = 0; month < demand.size(); ++month)
    {
        nuv::Expression there = make[month] + late[month];
        if (month > 0)
            there += stock[month - 1];
        balance.push_back(plan.Add(there - stock[month] == demand[month]));
        total += cost[month] * make[month] + (cost[month] + extra) * late[month];
    }
    plan.Minimize(total);

    const nuv::Solution best = plan.Solve();
    std::printf("cost %g\nmonth  demand  made  overtime  stock  worth of a unit\n", best.objective);
    for (std::size_t month = 0; month < demand.size(); ++month)
        std::printf("%5zu %7g %5g %9g %6g %16g\n", month + 1, demand[month],
                    best.Value(make[month]), best.Value(late[month]), best.Value(stock[month]),
                    best.Dual(balance[month]));
}
