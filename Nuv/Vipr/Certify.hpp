/// A proof as a certificate that others can check.
#pragma once

#include "Nuv/Certificate/Certificate.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Vipr/Certificate.hpp"

namespace nuv::vipr
{

/// What `claim`, which passed its check, says of the model in the numbers that it is about.
[[nodiscard]] Certificate CertificateOf(const Model& model, CoefficientMeaning numbers,
                                        const nuv::Certificate& claim);

}  // namespace nuv::vipr
