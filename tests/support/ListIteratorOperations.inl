// What every kind of iterator of the list can do, as members of the struct that includes this.
#include "tests/support/IteratorOperations.inl"
static constexpr auto Construct = NUV_KIND_OP(Construct);
#undef NUV_KIND
