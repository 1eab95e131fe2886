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
    case Status::Optimal:
        return "optimal: " + ShortNumber(solution.objective) + proof;
    case Status::Infeasible:
        return "infeasible" + proof;
    case Status::Unbounded:
        return "unbounded" + proof;
    case Status::Stopped:
        return "stopped before a verdict";
    case Status::Invalid:
        break;
    }
    return "not a valid model";
}

std::string DrawPicture(const Model& model, const Solution& solution)
{
    return model.VariableCount() == 2 ? DrawPlane(model, solution) : DrawCharts(model, solution);
}

}  // namespace nuv
