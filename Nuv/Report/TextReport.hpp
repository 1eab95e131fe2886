/// A solution as people read it.
#pragma once

#include "Nuv/Solve/Repair.hpp"
#include "Nuv/Solve/Solution.hpp"

#include <string>
#include <string_view>

namespace nuv
{

/// How much of a solution is told.
enum class Detail
{
    Verdict,  ///< status and objective
    Full,     ///< and the tables
};

/// What a repair came to, and each change by name.
[[nodiscard]] std::string RepairText(const Model& model, const RepairResult& repair);

/// The solution of a model, as `nuvlp solve` prints it: lines that end with a line feed.
[[nodiscard]] std::string TextReport(const Model& model, const Solution& solution, Detail detail);

/// ", exactly p/q", shortened to the sizes of p and q where no one would read it; empty for "".
[[nodiscard]] std::string ExactWords(std::string_view exact);

}  // namespace nuv
