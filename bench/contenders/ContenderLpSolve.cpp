// lp_solve: its defaults (dual simplex for Phase I, then primal, geometric scaling, DEVEX pricing),
// and the primal simplex in both phases.
#include <lpsolve/lp_lib.h>

#include <string>

#include "bench/contenders/Contender.hpp"

namespace bench
{
namespace
{
lprec* Build(const Input& input)
{
    const Instance& x = input.instance;
    const int columns = static_cast<int>(x.columns);
    lprec* const lp = make_lp(0, columns);
    set_verbose(lp, NEUTRAL);
    set_add_rowmode(lp, TRUE);
    std::vector<double> values = input.byRow.values;
    // Columns count from 1.
    std::vector<int> indices = input.byRow.indices;
    for (int& index : indices)
        ++index;
    std::vector<double> costs(x.c.begin(), x.c.end());
    std::vector<int> all(x.columns);
    for (int j = 0; j < columns; ++j)
        all[static_cast<std::size_t>(j)] = j + 1;
    set_obj_fnex(lp, columns, costs.data(), all.data());
    for (std::size_t i = 0; i < x.rows; ++i)
    {
        const int first = input.byRow.starts[i];
        add_constraintex(lp, input.byRow.starts[i + 1] - first, values.data() + first,
                         indices.data() + first, LE, static_cast<double>(x.b[i]));
    }
    set_add_rowmode(lp, FALSE);
    set_maxim(lp);
    return lp;
}

Verdict VerdictOf(int result)
{
    switch (result)
    {
    case OPTIMAL:
        return Verdict::Optimal;
    case INFEASIBLE:
        return Verdict::Infeasible;
    case UNBOUNDED:
        return Verdict::Unbounded;
    default:
        return Verdict::Stopped;
    }
}

Run RunMethod(const Input& input, const Conditions& conditions, bool isPrimal)
{
    Run run = {};
    Stopwatch watch(conditions.clock);
    lprec* const lp = Build(input);
    run.building = watch.Seconds();
    if (isPrimal)
        set_simplextype(lp, SIMPLEX_PRIMAL_PRIMAL);
    set_timeout(lp, static_cast<long>(conditions.patience) + 1);
    watch.Restart();
    const int result = solve(lp);
    run.solving = watch.Seconds();
    run.verdict = VerdictOf(result);
    run.objective = get_objective(lp);
    run.pivots = static_cast<std::uint64_t>(get_total_iter(lp));
    delete_lp(lp);
    return run;
}
}  // namespace

const char* LpSolveVersion()
{
    static const std::string kVersion = []
    {
        int parts[4] = {};
        lp_solve_version(&parts[0], &parts[1], &parts[2], &parts[3]);
        std::string joined;
        for (const int part : parts)
            joined += (joined.empty() ? "" : ".") + std::to_string(part);
        return joined;
    }();
    return kVersion.c_str();
}

Run RunLpSolveDefault(const Input& input, const Conditions& conditions)
{
    return RunMethod(input, conditions, false);
}

Run RunLpSolvePrimal(const Input& input, const Conditions& conditions)
{
    return RunMethod(input, conditions, true);
}
}  // namespace bench
