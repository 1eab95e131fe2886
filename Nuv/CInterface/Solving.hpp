/// Options of the C interface as those of the library.
#pragma once

#include "Nuv/CInterface/Handles.hpp"

#include <string>

namespace nuv::c
{

/// The options of a call, its callbacks, and what they need to remember. Outlives the solve.
class Solving
{
public:
    /// Null `options` are the defaults.
    explicit Solving(const NuvSolveOptions* options);
    Solving(const Solving&) = delete;
    Solving& operator=(const Solving&) = delete;

    [[nodiscard]] const SolveOptions& Options() const noexcept
    {
        return m_options;
    }

    /// The solution as a handle, logged. Fails with InvalidModel where the solve had none.
    [[nodiscard]] std::unique_ptr<NuvSolution> Deliver(std::shared_ptr<const Model> model,
                                                       Solution solution) const;

private:
    [[nodiscard]] bool KeepGoing(const Progress& progress);
    void Log(const std::string& line) const;

    NuvSolveOptions m_given;
    SolveOptions m_options;
    Stage m_stage = Stage::SinglePrecision;
    double m_nextLog = 0.0;  ///< seconds since the solve began
};

[[nodiscard]] CoefficientMeaning MeaningOf(std::uint32_t numbers);

}  // namespace nuv::c
