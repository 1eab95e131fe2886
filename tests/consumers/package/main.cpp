// A user's program in C++17, found by CMake: maximise 3x + 2y under x <= 4 and x + y <= 6. It must
// find 16 at (4, 2).
#include "Nuv/Utils/NuvLinearProgramming.h"
#include "Nuv/Utils/NuvScratchAllocator.h"

#include <cstdlib>
#include <initializer_list>
#include <iostream>
#include <utility>

namespace
{

class Terms
{
public:
    Terms(NuvAllocator* allocator, std::initializer_list<std::pair<NuvUint, NuvFloat32>> terms)
    {
        NuvVector_NuvPair_NuvUint__NuvFloat32ConstructDefault(&terms_, allocator);
        for (const auto& [index, value] : terms)
        {
            const NuvPair_NuvUint__NuvFloat32 term{index, value};
            if (!NuvVector_NuvPair_NuvUint__NuvFloat32PushBack(&terms_, &term))
                std::abort();
        }
    }
    ~Terms()
    {
        NuvVector_NuvPair_NuvUint__NuvFloat32Destruct(&terms_);
    }
    Terms(const Terms&) = delete;
    Terms& operator=(const Terms&) = delete;

    const NuvVector_NuvPair_NuvUint__NuvFloat32* Get() const
    {
        return &terms_;
    }

private:
    NuvVector_NuvPair_NuvUint__NuvFloat32 terms_;
};

bool Solve(NuvLinearProgramming* lp, NuvAllocator* allocator)
{
    NuvLinearProgrammingSetConstraintByIndex(lp, 1, Terms(allocator, {{1, 1.0f}}).Get(), 4.0f);
    NuvLinearProgrammingSetConstraintByIndex(lp, 2, Terms(allocator, {{1, 1.0f}, {2, 1.0f}}).Get(),
                                             6.0f);
    NuvLinearProgrammingSetObjectiveByIndex(lp, Terms(allocator, {{1, 3.0f}, {2, 2.0f}}).Get());
    if (NuvLinearProgrammingSolve(lp) != NUV_LINEARPROGRAMMINGRESULTTYPE_Ok)
        return false;
    const auto* values = NuvLinearProgrammingGetVariableValues(lp)->begin;
    const NuvFloat32 objective = NuvLinearProgrammingGetObjectiveValue(lp);
    std::cout << objective << " at (" << values[0].second << ", " << values[1].second << ")\n";
    return objective == 16.0f && values[0].second == 4.0f && values[1].second == 2.0f;
}

}  // namespace

int main()
{
    NuvAllocator upstream{
        [](NuvAllocator*, NuvSizeT size) { return std::malloc(static_cast<std::size_t>(size)); },
        [](NuvAllocator*, void* memory, NuvSizeT) { std::free(memory); }, ~NuvSizeT{0}, nullptr};
    // Takes back what the solve leaves with its allocator.
    NuvScratchAllocator scratch;
    NuvScratchAllocatorConstruct(&scratch, &upstream);
    NuvAllocator* allocator = NuvScratchAllocatorGetAllocator(&scratch);

    bool right = false;
    NuvLinearProgramming lp;
    if (NuvLinearProgrammingConstruct(&lp, 2, allocator))
    {
        right = Solve(&lp, allocator);
        NuvLinearProgrammingDestruct(&lp);
    }
    NuvScratchAllocatorDestruct(&scratch);
    return right ? EXIT_SUCCESS : EXIT_FAILURE;
}
