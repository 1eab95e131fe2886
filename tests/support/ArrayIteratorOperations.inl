// What every kind of iterator of the growable array can do, as members of the struct that includes
// this.
#include "tests/support/IteratorOperations.inl"
using DifferenceType = NUV_KIND_OP(DifferenceType);
static constexpr auto At = NUV_KIND_OP(At);
static constexpr auto IncrementN = NUV_KIND_OP(IncrementN);
static constexpr auto DecrementN = NUV_KIND_OP(DecrementN);
static constexpr auto Add = NUV_KIND_OP(Add);
static constexpr auto Subtract = NUV_KIND_OP(Subtract);
#undef NUV_KIND
