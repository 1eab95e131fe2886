// This library, the tableaus, and the list of all.
#include "bench/contenders/Contender.hpp"

#include <array>

namespace bench
{
namespace
{
Verdict VerdictOf(nuv::Verdict verdict)
{
    switch (verdict)
    {
    case nuv::Verdict::Ok:
        return Verdict::Optimal;
    case nuv::Verdict::Unbounded:
        return Verdict::Unbounded;
    case nuv::Verdict::Infeasible:
        return Verdict::Infeasible;
    case nuv::Verdict::InvalidInput:
    case nuv::Verdict::Stopped:
        break;
    }
    return Verdict::Stopped;
}

Run TimeTableau(decltype(SolveByTableau)* solve, const Input& input, const Conditions& conditions)
{
    const Stopwatch watch(conditions.clock);
    const TableauResult result = solve(input.instance, TableauLimit(input.instance));
    return {result.verdict, result.objective, result.pivots, 0.0, watch.Seconds()};
}

const char* NoVersion()
{
    return "";
}

constexpr Contender kContenders[] = {
    {"nuv", "", NoVersion, RunNuv},
    {"tableau", "", NoVersion, RunTableau},
    {"tableau, native", "", NoVersion, RunNativeTableau},
#ifdef NUV_BENCH_GLPK
    {"GLPK", "primal", GlpkVersion, RunGlpkPrimal},
    {"GLPK", "dual", GlpkVersion, RunGlpkDual},
#endif
#ifdef NUV_BENCH_CLP
    {"CLP", "default", ClpVersion, RunClpDefault},
    {"CLP", "primal", ClpVersion, RunClpPrimal},
#endif
#ifdef NUV_BENCH_LPSOLVE
    {"lp_solve", "default", LpSolveVersion, RunLpSolveDefault},
    {"lp_solve", "primal", LpSolveVersion, RunLpSolvePrimal},
#endif
};
}  // namespace

const char* NameOf(Verdict verdict)
{
    switch (verdict)
    {
    case Verdict::Optimal:
        return "optimal";
    case Verdict::Unbounded:
        return "unbounded";
    case Verdict::Infeasible:
        return "infeasible";
    case Verdict::Stopped:
        break;
    }
    return "stopped";
}

Input MakeInput(Instance instance)
{
    Input input;
    input.byRow = RowsOf(instance);
    input.byColumn = ColumnsOf(instance);
    for (std::size_t k = 0; k < input.byRow.indices.size(); ++k)
        input.terms.push_back({static_cast<NuvUint>(input.byRow.indices[k]) + 1,
                               static_cast<NuvFloat32>(input.byRow.values[k])});
    for (std::size_t j = 0; j < instance.columns; ++j)
        if (instance.c[j] != 0.0F)
            input.objective.push_back({static_cast<NuvUint>(j) + 1, instance.c[j]});
    input.instance = std::move(instance);
    return input;
}

std::span<const Contender> Contenders()
{
    return kContenders;
}

nuv::LinearProgram BuildProgram(const Input& input)
{
    nuv::LinearProgram program(static_cast<NuvUint>(input.instance.columns));
    for (std::size_t i = 0; i < input.instance.rows; ++i)
        program.SetConstraint(static_cast<NuvUint>(i) + 1, input.TermsOf(i), input.instance.b[i]);
    program.SetObjective(input.objective);
    return program;
}

Run CountPivots(const Input& input, std::uint64_t maxPivots, double seconds)
{
    nuv::LinearProgram program = BuildProgram(input);
    Run run = {};
    const Stopwatch watch;
    const nuv::Verdict verdict = program.Solve(
        [&](const NuvLinearProgrammingPivot& pivot)
        {
            run.pivots = pivot.number;
            // The clock is read seldom: it may cost as much as a pivot.
            return pivot.number <= maxPivots &&
                   (pivot.number % 64 != 0 || watch.Seconds() < seconds);
        });
    run.solving = watch.Seconds();
    run.verdict = VerdictOf(verdict);
    run.objective = static_cast<double>(program.Objective());
    return run;
}

Run RunNuv(const Input& input, const Conditions& conditions)
{
    Run run = {};
    Stopwatch watch(conditions.clock);
    nuv::LinearProgram program = BuildProgram(input);
    run.building = watch.Seconds();
    watch.Restart();
    const nuv::Verdict verdict = program.Solve();
    run.solving = watch.Seconds();
    run.verdict = VerdictOf(verdict);
    run.objective = static_cast<double>(program.Objective());
    return run;
}

Run RunTableau(const Input& input, const Conditions& conditions)
{
    return TimeTableau(SolveByTableau, input, conditions);
}

Run RunNativeTableau(const Input& input, const Conditions& conditions)
{
    return TimeTableau(SolveByNativeTableau, input, conditions);
}
}  // namespace bench
