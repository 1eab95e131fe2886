// A line through points by least absolute deviation: unlike least squares, it is not drawn away by
// a point that is wrong. The deviation of a point is the sum of two variables, up and down.
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <utility>
#include <vector>

int main()
{
    const std::vector<std::pair<double, double>> points = {{0, 1.1}, {1, 2.9},  {2, 5.0}, {3, 17.0},
                                                           {4, 9.1}, {5, 11.0}, {6, 12.8}};
    nuv::Model fit;
    const nuv::Bounds anyNumber = {-nuv::Infinity, nuv::Infinity};
    const nuv::Variable slope = fit.AddVariable("slope", anyNumber);
    const nuv::Variable intercept = fit.AddVariable("intercept", anyNumber);
    nuv::Expression deviation;
    for (const auto& [x, y] : points)
    {
        const nuv::Variable up = fit.AddVariable();
        const nuv::Variable down = fit.AddVariable();
        fit.Add(x * slope + intercept + up - down == y);
        deviation += up + down;
    }
    fit.Minimize(deviation);

    const nuv::Solution line = fit.Solve();
    std::printf("y = %g x + %g, off by %g in all\n", line.Value(slope), line.Value(intercept),
                line.objective);
    for (const auto& [x, y] : points)
    {
        const double off = y - Evaluate(x * slope + intercept, line);
        std::printf("  (%g, %4.1f) is off by %5.2f\n", x, y, off);
    }
}
