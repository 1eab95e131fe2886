// What the model layer can do and JavaScript never asks for, so that it need not be in the program.
#include "Nuv/Solve/SinglePrecisionSolve.hpp"
#include "Nuv/Solve/Uniqueness.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"

#include <cstdlib>

void nuv::BelieveSinglePrecision(const BoundedForm& /*form*/, double /*sign*/,
                                 const SolveOptions& /*options*/, SolveControl& /*control*/,
                                 Solution& /*solution*/)
{
    std::abort();
}

nuv::UniqueOptimum nuv::FindUniqueness(const BoundedForm& /*form*/,
                                       const CertifiedResult& /*optimum*/,
                                       SolveControl& /*control*/)
{
    std::abort();
}

nuv::Basis nuv::BasisNear(const BoundedForm& /*form*/, std::span<const double> /*point*/)
{
    std::abort();
}
