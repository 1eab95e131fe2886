// What every kind of iterator can do, as members of the struct that includes this. NUV_KIND is the
// kind's name within the container's.
using Position = NUV_JOIN(NUV_SELF, NUV_KIND);
static constexpr auto Destruct = NUV_KIND_OP(Destruct);
static constexpr auto ConstructCopy = NUV_KIND_OP(ConstructCopy);
static constexpr auto ConstructExceptional = NUV_KIND_OP(ConstructExceptional);
static constexpr auto IsExceptional = NUV_KIND_OP(IsExceptional);
static constexpr auto Assign = NUV_KIND_OP(Assign);
static constexpr auto Swap = NUV_KIND_OP(Swap);
static constexpr auto Equal = NUV_KIND_OP(Equal);
static constexpr auto Less = NUV_KIND_OP(Less);
static constexpr auto ContentOf = NUV_KIND_OP(ContentOf);
static constexpr auto ContentOfConst = NUV_KIND_OP(ContentOfConst);
static constexpr auto Increment = NUV_KIND_OP(Increment);
static constexpr auto Decrement = NUV_KIND_OP(Decrement);
