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

    /// Whether the proof is wanted beside the verdict.
    [[nodiscard]] bool KeepsProof() const noexcept
    {
        return m_given.keepProof != 0;
    }

    /// The solution as a handle. `solved` is what has its handles, of which `model` is a copy.
    /// Fails with InvalidModel where the solve had none.
    [[nodiscard]] std::unique_ptr<NuvSolution>
    Deliver(std::shared_ptr<const Model> model, const Model& solved, Solution solution) const;

private:
    NuvSolveOptions m_given;
    SolveOptions m_options;
};

[[nodiscard]] CoefficientMeaning MeaningOf(std::uint32_t numbers);
/// NUV_NUMBERS_...
[[nodiscard]] std::uint32_t NumbersOf(CoefficientMeaning meaning);

/// What the records of a solution and of a repair say alike.
template <class Result, class Info>
void SayHowItEnded(const Result& result, Info& info)
{
    info.status = static_cast<std::uint32_t>(result.status);
    info.proved = result.proved ? 1 : 0;
    info.stopReason = static_cast<std::uint32_t>(result.stopReason);
    info.numbers = NumbersOf(result.numbers);
}

/// Tells the caller's callback, and asks it.
[[nodiscard]] bool KeepGoing(NuvProgressCallback callback, void* userData,
                             const Progress& progress);

}  // namespace nuv::c
