// GLPK: its primal and its dual simplex from the slack basis, without presolving.
#include <glpk.h>

#include "bench/contenders/Contender.hpp"

namespace bench
{
namespace
{
glp_prob* Build(const Input& input)
{
    const Instance& x = input.instance;
    glp_prob* const problem = glp_create_prob();
    glp_set_obj_dir(problem, GLP_MAX);
    glp_add_rows(problem, static_cast<int>(x.rows));
    glp_add_cols(problem, static_cast<int>(x.columns));
    // Its arrays count from 1.
    for (std::size_t j = 0; j < x.columns; ++j)
    {
        const int column = static_cast<int>(j) + 1;
        glp_set_col_bnds(problem, column, GLP_LO, 0.0, 0.0);
        glp_set_obj_coef(problem, column, static_cast<double>(x.c[j]));
    }
    std::vector<int> indices(x.columns + 1);
    std::vector<double> values(x.columns + 1);
    for (std::size_t i = 0; i < x.rows; ++i)
    {
        const int row = static_cast<int>(i) + 1;
        glp_set_row_bnds(problem, row, GLP_UP, 0.0, static_cast<double>(x.b[i]));
        int length = 0;
        for (int k = input.byRow.starts[i]; k != input.byRow.starts[i + 1]; ++k)
        {
            const auto position = static_cast<std::size_t>(k);
            ++length;
            indices[static_cast<std::size_t>(length)] = input.byRow.indices[position] + 1;
            values[static_cast<std::size_t>(length)] = input.byRow.values[position];
        }
        glp_set_mat_row(problem, row, length, indices.data(), values.data());
    }
    return problem;
}

Verdict VerdictOf(glp_prob* problem, int failure)
{
    if (failure != 0)
        return Verdict::Stopped;
    switch (glp_get_status(problem))
    {
    case GLP_OPT:
        return Verdict::Optimal;
    case GLP_NOFEAS:
        return Verdict::Infeasible;
    case GLP_UNBND:
        return Verdict::Unbounded;
    default:
        return Verdict::Stopped;
    }
}

Run RunMethod(const Input& input, const Conditions& conditions, int method)
{
    glp_term_out(GLP_OFF);
    Run run = {};
    Stopwatch watch(conditions.clock);
    glp_prob* const problem = Build(input);
    run.building = watch.Seconds();
    glp_smcp parameters;
    glp_init_smcp(&parameters);
    parameters.msg_lev = GLP_MSG_OFF;
    parameters.meth = method;
    parameters.tm_lim = static_cast<int>(conditions.patience * 1000.0);
    watch.Restart();
    const int failure = glp_simplex(problem, &parameters);
    run.solving = watch.Seconds();
    run.verdict = VerdictOf(problem, failure);
    run.objective = glp_get_obj_val(problem);
    run.pivots = static_cast<std::uint64_t>(glp_get_it_cnt(problem));
    glp_delete_prob(problem);
    return run;
}
}  // namespace

const char* GlpkVersion()
{
    return glp_version();
}

Run RunGlpkPrimal(const Input& input, const Conditions& conditions)
{
    return RunMethod(input, conditions, GLP_PRIMAL);
}

Run RunGlpkDual(const Input& input, const Conditions& conditions)
{
    return RunMethod(input, conditions, GLP_DUALP);
}
}  // namespace bench
