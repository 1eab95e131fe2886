// The operations of one pair under common names. An include template, as those of the library:
// NUV_TEST_NAME is the type to define, NUV_SELF, NUV_FIRST and NUV_SECOND are the instantiation's.
// Include it through Instantiations.hpp.
#include "Nuv/Templates/NuvTemplateBegin.h"

struct NUV_TEST_NAME
{
    using Element = NUV_SELF;
    using First = NUV_FIRST;
    using Second = NUV_SECOND;

    static constexpr auto Construct = NUV_OP(Construct);
    static constexpr auto ConstructCopy = NUV_OP(ConstructCopy);
    static constexpr auto Destruct = NUV_OP(Destruct);
    static constexpr auto Assign = NUV_OP(Assign);
    static constexpr auto Swap = NUV_OP(Swap);
};

#undef NUV_TEST_NAME
#include "Nuv/Templates/NuvTemplateEnd.h"
