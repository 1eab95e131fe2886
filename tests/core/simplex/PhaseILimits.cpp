// Phase I where its artificial column is one too many for 32 bits.
#include <gtest/gtest.h>

#include "Nuv/Utils/Simplex/Phases.h"
#include "tests/support/TestAllocator.hpp"

namespace
{
// A standard form of that shape is the largest that can be counted, and takes 17 GB; whether there
// is room for one more column is asked before any of it is looked at.
TEST(PhaseI, OneColumnMoreThan32BitsCountIsRefusedBeforeAnythingIsRead)
{
    TestAllocator allocator;
    NuvLinearProgramming lp;
    ASSERT_EQ(NuvLinearProgrammingConstructDefault(&lp, allocator), &lp);
    const std::size_t requests = allocator.Requests();
    nuv::SolveContext context = {nullptr, 0, nuv::KernelsOfThisMachine(), nullptr};
    lp.numConstraints = 0xFFFF;
    lp.numVars = 2;
    const nuv::StandardForm form = {};
    EXPECT_EQ(nuv::SolvePhaseI(&lp, &context, &form), NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput);
    EXPECT_EQ(allocator.Requests(), requests);
    NuvLinearProgrammingDestruct(&lp);
}
}  // namespace
