/// The engine's entries as most tests want them: under a control of their own.
#pragma once

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/Iis.hpp"
#include "Nuv/Exact/Ranging.hpp"

#include <optional>
#include <utility>

namespace nuv::test
{

[[nodiscard]] inline Proof Certified(const BoundedForm& form, const Basis* start = nullptr,
                                     SolveLimits limits = {})
{
    SolveControl control(std::move(limits));
    return SolveProved(form, start, control);
}

[[nodiscard]] inline Proof CertifiedFrom(const BoundedForm& form, const Basis& start)
{
    SolveControl control;
    return ProveFrom(form, start, control);
}

[[nodiscard]] inline Iis IisOf(const BoundedForm& form, const Proof& proof,
                                         SolveLimits limits = {})
{
    SolveControl control(std::move(limits));
    return FindIis(form, proof, control);
}

[[nodiscard]] inline Sensitivity RangesOf(const BoundedForm& form, const Proof& proof)
{
    SolveControl control;
    return AnalyseSensitivity(form, proof, control).value();
}

}  // namespace nuv::test
