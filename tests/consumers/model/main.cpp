// A user's program on the model layer: states a model, writes it, reads what it wrote and solves
// both. It must find the same optimum exactly.
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <cstdlib>
#include <iostream>

int main()
{
    nuv::Model factory;
    const nuv::Variable chairs = factory.AddVariable("chairs");
    const nuv::Variable tables = factory.AddVariable("tables");
    factory.Add("wood", 2 * chairs + 5 * tables <= 300);
    factory.Add("labour", 4 * chairs + 3 * tables <= 240);
    factory.Maximize(30 * chairs + 70 * tables);
    const nuv::Solution plan = nuv::Solve(factory);

    if (nuv::Evaluate(nuv::Dot({30, 70}, {chairs, tables}), plan) != plan.objective)
        return EXIT_FAILURE;
    const nuv::WriteResult written = nuv::WriteLp(factory);
    if (!written.text)
        return EXIT_FAILURE;
    const nuv::ReadResult reading = nuv::ReadLp(*written.text, "factory.lp");
    if (!reading.Ok())
    {
        std::cerr << reading.GetError().text << '\n';
        return EXIT_FAILURE;
    }
    const nuv::Solution again = nuv::Solve(*reading.model);
    std::cout << factory << plan.Outcome() << ": " << plan.exactObjective << " with "
              << plan.Value(chairs) << " and " << plan.Value(tables) << '\n';
    return plan.proved && again.proved && again.exactObjective == plan.exactObjective
               ? EXIT_SUCCESS
               : EXIT_FAILURE;
}
