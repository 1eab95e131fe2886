/// The engine's entries as most tests want them: under a control of their own.
#pragma once

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Exact/Iis.hpp"
#include "Nuv/Exact/Ranging.hpp"

#include <optional>
#include <utility>

namespace nuv::test
{

[[nodiscard]] inline CertifiedResult
Certified(const BoundedForm& form, const Basis* start = nullptr, SolveLimits limits = {})
{
    SolveControl control(std::move(limits));
    return SolveCertified(form, start, control);
}

[[nodiscard]] inline CertifiedResult CertifiedFrom(const BoundedForm& form, const Basis& start)
{
    SolveControl control;
    return SolveExactly(form, start, control);
}

[[nodiscard]] inline InfeasibleBounds IisOf(const BoundedForm& form, const CertifiedResult& proof,
                                            SolveLimits limits = {})
{
    SolveControl control(std::move(limits));
    return FindIis(form, proof.certificate, control);
}

[[nodiscard]] inline Sensitivity RangesOf(const BoundedForm& form, const CertifiedResult& proof)
{
    SolveControl control;
    return AnalyseSensitivity(form, proof, control).value();
}

}  // namespace nuv::test
