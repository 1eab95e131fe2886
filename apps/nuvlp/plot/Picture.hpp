/// Pictures of a model and its solution. A model of two variables is drawn in the plane: the
/// feasible region, each row's line with its name, the objective's direction and its level through
/// the optimum, and the vertices that the simplex method passed through. A larger one gets charts:
/// the objective against the pivots, the rows with the least slack, the largest duals. Solve with
/// recordPath to have the way in the picture.
#pragma once

#include "Nuv/Solve/Solution.hpp"

#include <string>

namespace nuv
{

/// @return a page of SVG, the same bytes for the same model on every machine.
[[nodiscard]] std::string DrawPicture(const Model& model, const Solution& solution);

/// The two kinds, which DrawPicture chooses from.
[[nodiscard]] std::string DrawPlane(const Model& model, const Solution& solution);
[[nodiscard]] std::string DrawCharts(const Model& model, const Solution& solution);

/// The line above a picture: the verdict in words.
[[nodiscard]] std::string Headline(const Solution& solution);

}  // namespace nuv
