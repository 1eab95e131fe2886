// Two canneries serve three markets: what is shipped from where to where, at the lowest freight?
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <string>
#include <vector>

int main()
{
    const std::vector<std::string> canneries = {"Seattle", "San Diego"};
    const std::vector<std::string> markets = {"New York", "Chicago", "Topeka"};
    const std::vector<double> stock = {350, 600};
    const std::vector<double> order = {325, 300, 275};
    const std::vector<std::vector<double>> freight = {{225, 153, 162}, {225, 162, 126}};

    nuv::Model plan;
    std::vector<std::vector<nuv::Variable>> ship;  // by cannery and market
    nuv::Expression cost;
    for (std::size_t i = 0; i < canneries.size(); ++i)
    {
        ship.push_back(plan.AddVariables(markets.size()));
        plan.Add(canneries[i], Sum(ship[i]) <= stock[i]);
        cost += Dot(freight[i], ship[i]);
    }
    std::vector<nuv::Row> demand;
    for (std::size_t j = 0; j < markets.size(); ++j)
    {
        const auto arrives = Sum(ship, [j](const auto& from) { return from[j]; });
        demand.push_back(plan.Add(markets[j], arrives == order[j]));
    }
    plan.Minimize(cost);

    const nuv::Solution best = plan.Solve();
    std::printf("freight %g\n", best.objective);
    for (std::size_t i = 0; i < canneries.size(); ++i)
        for (std::size_t j = 0; j < markets.size(); ++j)
            if (best.Value(ship[i][j]) > 0)
                std::printf("  %g from %s to %s\n", best.Value(ship[i][j]), canneries[i].c_str(),
                            markets[j].c_str());
    for (std::size_t j = 0; j < markets.size(); ++j)
        std::printf("one case more for %s costs %g\n", markets[j].c_str(), best.Dual(demand[j]));
}
