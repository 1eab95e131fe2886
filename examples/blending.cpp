// A tonne of alloy from scrap metals at the lowest price: its contents are shares of the tonne, and
// must lie within limits.
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdio>
#include <string>
#include <vector>

int main()
{
    const std::vector<double> price = {310, 275, 360, 240, 295};
    const std::vector<double> lead = {10, 10, 40, 60, 30};  // in percent
    const std::vector<double> zinc = {10, 30, 50, 30, 30};

    nuv::Model alloy;
    std::vector<nuv::Variable> share;
    for (const std::string name : {"a", "b", "c", "d", "e"})
        share.push_back(alloy.AddVariable(name));
    alloy.SetBounds(share[1], {0, 0.25});
    alloy.SetBounds(share[3], {0, 0.5});
    alloy.Add("tonne", Sum(share) == 1);
    alloy.Add("lead", nuv::Range(20, Dot(lead, share), 30));
    alloy.Add("zinc", Dot(zinc, share) == 30);
    alloy.Minimize(Dot(price, share));

    nuv::SolveOptions options;
    options.sensitivity = true;
    const nuv::Solution mix = alloy.Solve(options);
    std::printf("a tonne costs %.2f, exactly %s\n", mix.objective, mix.exactObjective.c_str());
    for (std::size_t k = 0; k < share.size(); ++k)
    {
        const nuv::AllowedRange& range = mix.sensitivity.cost[k];
        std::printf("  %4.1f %% %s", 100 * mix.Value(share[k]),
                    std::string(alloy.VariableName(alloy.IndexOf(share[k]))).c_str());
        std::printf(", the same mix at a price of %g to %g\n", range.lower, range.upper);
    }
    std::printf("lead %g %%, zinc %g %%\n", Evaluate(Dot(lead, share), mix),
                Evaluate(Dot(zinc, share), mix));
}
