// A penalty kick as a zero-sum game: where should the kicker aim, and with which odds, so that the
// chance of a goal is largest against the best keeper? The keeper's best odds are the dual values.
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <vector>

int main()
{
    // The chance of a goal by where the ball goes and where the keeper goes.
    const std::vector<const char*> corners = {"left", "middle", "right"};
    const std::vector<std::vector<double>> goal = {
        {0.60, 0.95, 0.95}, {0.90, 0.30, 0.90}, {0.95, 0.95, 0.55}};

    nuv::Model game;
    const std::vector<nuv::Variable> odds = game.AddVariables(corners.size());
    const nuv::Variable chance = game.AddVariable({-nuv::Infinity, nuv::Infinity});
    std::vector<nuv::Row> keeper;
    for (std::size_t j = 0; j < corners.size(); ++j)
    {
        nuv::Expression scored;
        for (std::size_t i = 0; i < corners.size(); ++i)
            scored.Add(goal[i][j], odds[i]);
        keeper.push_back(game.Add(scored >= chance));
    }
    game.Add(Sum(odds) == 1);
    game.Maximize(chance);

    const nuv::Solution play = game.Solve();
    std::printf("a goal with a chance of %.2f %%, exactly %s\n", 100 * play.objective,
                play.exactObjective.c_str());
    for (std::size_t i = 0; i < corners.size(); ++i)
        std::printf("  %-7s kicker %4.1f %%  keeper %4.1f %%\n", corners[i],
                    100 * play.Value(odds[i]), -100 * play.Dual(keeper[i]));
}
