// What the model layer can do and JavaScript never asks for, so that it need not be in the program.
#include "Nuv/Solve/Uniqueness.hpp"
#include "Nuv/SparseSimplex/StartBasis.hpp"
#include "Nuv/Utils/Batch/LaneState.h"
#include "Nuv/Utils/Kernels/Kernels.h"

#include <cstdlib>

// Every engine has vectors of four floats: the loops without them, which give the same bits, are
// left out, and those with them stand in their place.
const nuv::Kernels* nuv::PlainKernels()
{
    return BaselineKernels();
}

const nuv::LaneLoops* nuv::PlainLanes()
{
    return BaselineLanes();
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
