// CLP: its default (presolving, then the method of its choice) and its primal simplex alone.
#include <coin/Clp_C_Interface.h>

#include "bench/contenders/Contender.hpp"

namespace bench
{
namespace
{
/// What CLP takes for no limit.
constexpr double kUnlimited = 1e50;

Clp_Simplex* Build(const Input& input)
{
    const Instance& x = input.instance;
    const std::vector<double> columnLower(x.columns, 0.0);
    const std::vector<double> columnUpper(x.columns, kUnlimited);
    const std::vector<double> rowLower(x.rows, -kUnlimited);
    const std::vector<double> rowUpper(x.b.begin(), x.b.end());
    const std::vector<double> costs(x.c.begin(), x.c.end());
    Clp_Simplex* const model = Clp_newModel();
    Clp_setLogLevel(model, 0);
    Clp_loadProblem(model, static_cast<int>(x.columns), static_cast<int>(x.rows),
                    input.byColumn.starts.data(), input.byColumn.indices.data(),
                    input.byColumn.values.data(), columnLower.data(), columnUpper.data(),
                    costs.data(), rowLower.data(), rowUpper.data());
    Clp_setObjSense(model, -1.0);
    return model;
}

Verdict VerdictOf(Clp_Simplex* model)
{
    switch (Clp_status(model))
    {
    case 0:
        return Verdict::Optimal;
    case 1:
        return Verdict::Infeasible;
    case 2:
        return Verdict::Unbounded;
    default:
        return Verdict::Stopped;
    }
}

Run RunMethod(const Input& input, const Conditions& conditions, int (*solve)(Clp_Simplex*))
{
    Run run = {};
    Stopwatch watch(conditions.clock);
    Clp_Simplex* const model = Build(input);
    run.building = watch.Seconds();
    Clp_setMaximumSeconds(model, conditions.patience);
    watch.Restart();
    solve(model);
    run.solving = watch.Seconds();
    run.verdict = VerdictOf(model);
    run.objective = Clp_objectiveValue(model);
    run.pivots = static_cast<std::uint64_t>(Clp_numberIterations(model));
    Clp_deleteModel(model);
    return run;
}
}  // namespace

const char* ClpVersion()
{
    return Clp_Version();
}

Run RunClpDefault(const Input& input, const Conditions& conditions)
{
    return RunMethod(input, conditions, Clp_initialSolve);
}

Run RunClpPrimal(const Input& input, const Conditions& conditions)
{
    return RunMethod(input, conditions, [](Clp_Simplex* model) { return Clp_primal(model, 0); });
}
}  // namespace bench
