/// Solving a range of scenarios on several threads.
///
/// Invariant: what is found for a scenario depends on the model and on that scenario alone. Each
/// solve starts from the basis of the unchanged model, never from that of a neighbour, so that
/// threads and shards change nothing.
#pragma once

#include "apps/nuvlp/batch/ScenarioTable.hpp"

#include "Nuv/Solve/Solution.hpp"

#include <functional>

namespace nuvlp
{

struct ScenarioRun
{
    const nuv::Model& model;
    const ScenarioTable& table;
    nuv::SolveOptions options;  ///< of each solve
    std::size_t first = 0;
    std::size_t last = 0;
    std::size_t threads = 1;
    /// Makes a scenario's lines of the result; called from any thread.
    std::function<std::string(std::size_t scenario, const nuv::Solution& solution)> write;
    /// Told now and then how many are done.
    std::function<void(std::size_t done)> progress;
};

/// The lines of the scenarios that are done, in their order: after an interrupt not of all.
struct ScenarioLines
{
    std::string text;
    std::size_t done = 0;
};

[[nodiscard]] ScenarioLines SolveScenarios(const ScenarioRun& run);

}  // namespace nuvlp
