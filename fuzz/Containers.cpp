// Any sequence of operations on two containers of one type, on an allocator that refuses requests:
// after each step their content is that of the same sequence in the standard library's types, and
// their links, runs and blocks are sound.
#include "fuzz/Containers.hpp"

#include "fuzz/Target.hpp"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    fuzz::Input input(data, size);
    const int kind = input.Below(6);
    const bool hasNames = kind % 2 == 1;
    if (kind < 2)
        fuzz::RunVectorSteps(&input, hasNames);
    else if (kind < 4)
        fuzz::RunListSteps(&input, hasNames);
    else
        fuzz::RunMapSteps(&input, hasNames);
    return 0;
}
