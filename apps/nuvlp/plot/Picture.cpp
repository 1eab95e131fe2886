// Which picture a model gets, and what stands above it.
#include "apps/nuvlp/plot/Picture.hpp"

#include "apps/nuvlp/plot/Svg.hpp"

namespace nuv
{

std::string Headline(const Solution& solution)
{
    const std::string proof = solution.proved ? ", proved" : ", not proved";
    switch (solution.status)
    {
    case SolveStatus::Optimal:
        return "optimal: " + ShortNumber(solution.objective) + proof;
    case SolveStatus::Infeasible:
        return "infeasible" + proof;
    case SolveStatus::Unbounded:
        return "unbounded" + proof;
    case SolveStatus::Stopped:
        return "stopped before a verdict";
    case SolveStatus::Invalid:
        break;
    }
    return "not a valid model";
}

std::string DrawPicture(const Model& model, const Solution& solution)
{
    return model.VariableCount() == 2 ? DrawPlane(model, solution) : DrawCharts(model, solution);
}

}  // namespace nuv
