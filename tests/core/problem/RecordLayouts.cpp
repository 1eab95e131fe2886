// The records that callers share with the library byte for byte: the order of their fields, their
// types, offsets and sizes. What is asserted here is checked by the compiler, tools/machines does
// so for other machines; the one test looks at values that only a run shows.
#include <cstddef>
#include <type_traits>

#include "tests/support/Instantiations.hpp"

namespace
{
template <class Field, class Expected>
constexpr bool IsOfType = std::is_same_v<Field, Expected>;

// What stands between a pointer of 32 bits and an integer of 64 that follows it, and is not there
// on i386, which aligns those to 4.
#if defined(__i386__)
constexpr std::size_t kPadding = 4;
#else
constexpr std::size_t kPadding = 0;
#endif

// Scalars ------------------------------------------------------------------------------------

static_assert(IsOfType<NuvBool, std::uint8_t>);
static_assert(IsOfType<NuvUint, std::uint32_t>);
static_assert(IsOfType<NuvInt, std::int32_t>);
static_assert(IsOfType<NuvFloat32, float>);
static_assert(IsOfType<NuvSizeT, std::uint64_t>);
static_assert(IsOfType<NuvDistanceT, std::int64_t>);

static_assert(NUV_LINEARPROGRAMMINGRESULTTYPE_Ok == 0);
static_assert(NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput == 1);
static_assert(NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded == 2);
static_assert(NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible == 3);
static_assert(NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped == 4);
static_assert(NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32 == 0);
static_assert(NUV_LINEARPROGRAMMINGVARIABLETYPE_INTEGER == 1);
static_assert(NUV_LINEARPROGRAMMINGVARIABLETYPE_BOOLEAN == 2);
static_assert(NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_INDEX == 0);
static_assert(NUV_LINEARPROGRAMMINGVARIABLEACCESSTYPE_NAME == 1);

// Runtime records ----------------------------------------------------------------------------

static_assert(IsOfType<decltype(NuvAllocator::allocate), void* (*)(NuvAllocator*, NuvSizeT)>);
static_assert(
    IsOfType<decltype(NuvAllocator::deallocate), void (*)(NuvAllocator*, void*, NuvSizeT)>);
static_assert(IsOfType<decltype(NuvAllocator::maxSize), NuvSizeT>);
static_assert(IsOfType<decltype(NuvAllocator::userData), void*>);
static_assert(offsetof(NuvAllocator, allocate) == 0);
static_assert(offsetof(NuvAllocator, deallocate) == sizeof(void*));
static_assert(offsetof(NuvAllocator, maxSize) == 2 * sizeof(void*));
static_assert(offsetof(NuvAllocator, userData) == 2 * sizeof(void*) + 8);

static_assert(IsOfType<decltype(NuvString::allocator), NuvAllocator*>);
static_assert(IsOfType<decltype(NuvString::buf), char*>);
static_assert(IsOfType<decltype(NuvString::size), NuvSizeT>);
static_assert(IsOfType<decltype(NuvString::capacity), NuvSizeT>);
static_assert(offsetof(NuvString, allocator) == 0);
static_assert(offsetof(NuvString, buf) == sizeof(void*));
static_assert(offsetof(NuvString, size) == 2 * sizeof(void*));
static_assert(offsetof(NuvString, capacity) == 2 * sizeof(void*) + 8);
static_assert(sizeof(NuvString) == 2 * sizeof(void*) + 16);

// Pairs --------------------------------------------------------------------------------------

template <class P>
constexpr bool IsPair = IsOfType<decltype(P::Element::first), typename P::First>&&
                                IsOfType<decltype(P::Element::second), typename P::Second>&&
                                    offsetof(typename P::Element, first) == 0 &&
                        offsetof(typename P::Element, second) >= sizeof(typename P::First) &&
                        std::is_trivially_copyable_v<typename P::Element>;

static_assert(IsPair<IndexAndFloatPair> && sizeof(IndexAndFloatPair::Element) == 8);
static_assert(IsPair<NameAndFloatPair>);
static_assert(IsPair<NameAndVariablePair>);
static_assert(IsPair<NumberAndConstraintPair>);

// Growable arrays and their iterators --------------------------------------------------------

template <class V>
constexpr bool
    IsVector = IsOfType<decltype(V::Container::allocator), NuvAllocator*>&&
                       IsOfType<decltype(V::Container::begin), typename V::Element*>&&
                           IsOfType<decltype(V::Container::end), typename V::Element*>&&
                               IsOfType<decltype(V::Container::endBuf), typename V::Element*>&&
                                   offsetof(typename V::Container, allocator) == 0 &&
               offsetof(typename V::Container, begin) == sizeof(void*) &&
               offsetof(typename V::Container, end) == 2 * sizeof(void*) &&
               offsetof(typename V::Container, endBuf) == 3 * sizeof(void*) &&
               sizeof(typename V::Container) == 4 * sizeof(void*);

template <class V>
constexpr bool HasPlainPointersAsIterators =
    IsOfType<typename V::SizeType, NuvSizeT>&& IsOfType<typename V::DifferenceType, NuvDistanceT>&&
        IsOfType<typename V::ForwardKind::Position, typename V::Element*>&&
            IsOfType<typename V::ConstForwardKind::Position, const typename V::Element*>&&
                IsOfType<typename V::ReverseKind::Position, typename V::Element*>&&
                    IsOfType<typename V::ConstReverseKind::Position, const typename V::Element*>;

static_assert(IsVector<IndexAndFloatVector> && HasPlainPointersAsIterators<IndexAndFloatVector>);
static_assert(IsVector<NameAndFloatVector> && HasPlainPointersAsIterators<NameAndFloatVector>);
static_assert(IsVector<VariableBucketVector> && HasPlainPointersAsIterators<VariableBucketVector>);
static_assert(IsVector<ConstraintBucketVector> &&
              HasPlainPointersAsIterators<ConstraintBucketVector>);

// Lists and their iterators ------------------------------------------------------------------

template <class L>
constexpr bool IsList =
    IsOfType<decltype(L::LinkPointer::n), typename L::Node*>&&
        IsOfType<decltype(L::LinkPointer::b), typename L::Link*> &&
    sizeof(typename L::LinkPointer) == sizeof(void*) &&
    IsOfType<decltype(L::Link::prev), typename L::LinkPointer>&& IsOfType<
        decltype(L::Link::next), typename L::LinkPointer>&& offsetof(typename L::Link, prev) == 0 &&
    offsetof(typename L::Link, next) == sizeof(void*) &&
    IsOfType<decltype(L::Node::b), typename L::Link>&& IsOfType<
        decltype(L::Node::obj), typename L::Element>&& offsetof(typename L::Node, b) == 0 &&
    offsetof(typename L::Node, obj) == 2 * sizeof(void*) &&
    IsOfType<decltype(L::Container::node), typename L::Link>&& IsOfType<
        decltype(L::Container::allocator), NuvAllocator*>&& offsetof(typename L::Container, node) ==
        0 &&
    offsetof(typename L::Container, allocator) == 2 * sizeof(void*) &&
    sizeof(typename L::Container) == 3 * sizeof(void*);

template <class L>
constexpr bool HasLinksAsIterators =
    IsOfType<typename L::ForwardKind::Position, typename L::Link*>&&
        IsOfType<typename L::ConstForwardKind::Position, const typename L::Link*>&&
            IsOfType<typename L::ReverseKind::Position, typename L::Link*>&&
                IsOfType<typename L::ConstReverseKind::Position, const typename L::Link*>;

static_assert(IsList<VariableList> && HasLinksAsIterators<VariableList>);
static_assert(IsList<ConstraintList> && HasLinksAsIterators<ConstraintList>);

// Maps ---------------------------------------------------------------------------------------

template <class M>
constexpr bool IsBucket = IsOfType<decltype(M::Bucket::first), typename M::Iterator>&&
                                  IsOfType<decltype(M::Bucket::count), NuvSizeT>&&
                                      offsetof(typename M::Bucket, first) == 0 &&
                          offsetof(typename M::Bucket, count) == 8 - kPadding;

template <class M, class Table>
constexpr bool
    IsMap = IsOfType<typename M::HashFunctionType, NuvSizeT (*)(const typename M::Key*)>&&
                    IsOfType<decltype(M::Container::size), NuvSizeT>&&
                        IsOfType<decltype(M::Container::hash), typename M::HashFunctionType>&&
                            IsOfType<decltype(M::Container::l), typename M::List::Container>&&
                                IsOfType<decltype(M::Container::v), typename Table::Container>&&
                                    offsetof(typename M::Container, size) == 0 &&
            offsetof(typename M::Container, hash) == 8 &&
            offsetof(typename M::Container, l) == 8 + sizeof(void*) &&
            offsetof(typename M::Container, v) == 8 + 4 * sizeof(void*);

template <class M>
constexpr bool
    HasMapTypes = IsOfType<typename M::SizeType, NuvSizeT>&&
                          IsOfType<typename M::Iterator, typename M::List::Iterator>&&
                              IsOfType<typename M::ConstIterator, typename M::List::ConstIterator>&&
                                  IsOfType<typename M::Element, typename M::List::Element>&&
                                      IsOfType<decltype(M::Statistics::loadingMin), NuvSizeT>&&
                                          IsOfType<decltype(M::Statistics::loadingMax), NuvSizeT>&&
                                              offsetof(typename M::Statistics, loadingMin) == 0 &&
                  offsetof(typename M::Statistics, loadingMax) == 8;

/// The plain records that Insert, EqualRange and EqualRangeConst answer.
template <class M>
constexpr bool HasMapResults =
    IsOfType<decltype(M::Insert(nullptr, nullptr).first), typename M::Iterator>&&
        IsOfType<decltype(M::Insert(nullptr, nullptr).second), NuvBool>&&
            IsOfType<decltype(M::EqualRange(nullptr, nullptr).first), typename M::Iterator>&&
                IsOfType<decltype(M::EqualRange(nullptr, nullptr).second), typename M::Iterator>&&
                    IsOfType<decltype(M::EqualRangeConst(nullptr, nullptr).first),
                             typename M::ConstIterator>&&
                        IsOfType<decltype(M::EqualRangeConst(nullptr, nullptr).second),
                                 typename M::ConstIterator>;

static_assert(IsBucket<VariableMap> && IsMap<VariableMap, VariableBucketVector>);
static_assert(HasMapTypes<VariableMap> && HasMapResults<VariableMap>);
static_assert(IsBucket<ConstraintMap> && IsMap<ConstraintMap, ConstraintBucketVector>);
static_assert(HasMapTypes<ConstraintMap> && HasMapResults<ConstraintMap>);

// Matrices -----------------------------------------------------------------------------------

template <class Matrix, class Element>
constexpr bool IsMatrix =
    IsOfType<decltype(Matrix::allocator), NuvAllocator*>&& IsOfType<decltype(Matrix::nr), NuvUint>&&
            IsOfType<decltype(Matrix::nc), NuvUint>&& IsOfType<decltype(Matrix::data), Element*>&&
                offsetof(Matrix, allocator) == 0 &&
    offsetof(Matrix, nr) == sizeof(void*) && offsetof(Matrix, nc) == sizeof(void*) + 4 &&
    offsetof(Matrix, data) == sizeof(void*) + 8;

static_assert(IsMatrix<NuvMatrix_NuvFloat32, NuvFloat32>);
static_assert(IsMatrix<NuvMatrix_NuvUint, NuvUint>);

// The records of a model ---------------------------------------------------------------------

using Variable = NuvLinearProgrammingVariable;
static_assert(IsOfType<decltype(Variable::type), NuvLinearProgrammingVariableType>);
static_assert(IsOfType<decltype(Variable::index), NuvUint>);
static_assert(IsOfType<decltype(Variable::name), NuvString>);
static_assert(offsetof(Variable, type) == 0);
static_assert(offsetof(Variable, index) == sizeof(NuvLinearProgrammingVariableType));
static_assert(offsetof(Variable, name) == 8);

using Constraint = NuvLinearProgrammingConstraint;
static_assert(IsOfType<decltype(Constraint::type), NuvLinearProgrammingVariableAccessType>);
static_assert(IsOfType<decltype(Constraint::u.variableCoefficientsByIndex),
                       NuvVector_NuvPair_NuvUint__NuvFloat32>);
static_assert(IsOfType<decltype(Constraint::u.variableCoefficientsByName),
                       NuvVector_NuvPair_NuvString__NuvFloat32>);
static_assert(IsOfType<decltype(Constraint::rhs), NuvFloat32>);
static_assert(sizeof(Constraint::u) == 4 * sizeof(void*));
static_assert(offsetof(Constraint, type) == 0);
static_assert(offsetof(Constraint, u) == sizeof(void*));
static_assert(offsetof(Constraint, rhs) == 5 * sizeof(void*));

using Problem = NuvLinearProgramming;
static_assert(IsOfType<decltype(Problem::alloc), NuvAllocator*>);
static_assert(IsOfType<decltype(Problem::numVars), NuvUint>);
static_assert(IsOfType<decltype(Problem::numConstraints), NuvUint>);
static_assert(IsOfType<decltype(Problem::A), NuvMatrix_NuvFloat32>);
static_assert(IsOfType<decltype(Problem::b), NuvMatrix_NuvFloat32>);
static_assert(IsOfType<decltype(Problem::c), NuvMatrix_NuvFloat32>);
static_assert(IsOfType<decltype(Problem::basic), NuvMatrix_NuvUint>);
static_assert(IsOfType<decltype(Problem::independent), NuvMatrix_NuvUint>);
static_assert(IsOfType<decltype(Problem::variables), VariableMap::Container>);
static_assert(IsOfType<decltype(Problem::constraints), ConstraintMap::Container>);
static_assert(IsOfType<decltype(Problem::objective), IndexAndFloatVector::Container>);
static_assert(IsOfType<decltype(Problem::variableValues), NameAndFloatVector::Container>);
static_assert(IsOfType<decltype(Problem::objectiveValue), NuvFloat32>);

static_assert(std::is_standard_layout_v<Problem> && std::is_trivially_copyable_v<Problem>);

// Sizes and offsets where pointers have 64 bits, and where they have 32 --------------------------

#if UINTPTR_MAX == UINT64_MAX
static_assert(sizeof(NameAndFloatPair::Element) == 40);
static_assert(sizeof(NameAndVariablePair::Element) == 72);
static_assert(sizeof(NumberAndConstraintPair::Element) == 56);
static_assert(sizeof(VariableList::Node) == 88);
static_assert(sizeof(ConstraintList::Node) == 72);
static_assert(sizeof(VariableMap::Container) == 72);
static_assert(sizeof(ConstraintMap::Container) == 72);
static_assert(sizeof(NuvMatrix_NuvFloat32) == 24);
static_assert(sizeof(NuvMatrix_NuvUint) == 24);
static_assert(sizeof(Variable) == 40);
static_assert(sizeof(Constraint) == 48);
static_assert(offsetof(Problem, alloc) == 0);
static_assert(offsetof(Problem, numVars) == 8);
static_assert(offsetof(Problem, numConstraints) == 12);
static_assert(offsetof(Problem, A) == 16);
static_assert(offsetof(Problem, b) == 40);
static_assert(offsetof(Problem, c) == 64);
static_assert(offsetof(Problem, basic) == 88);
static_assert(offsetof(Problem, independent) == 112);
static_assert(offsetof(Problem, variables) == 136);
static_assert(offsetof(Problem, constraints) == 208);
static_assert(offsetof(Problem, objective) == 280);
static_assert(offsetof(Problem, variableValues) == 312);
static_assert(offsetof(Problem, objectiveValue) == 344);
static_assert(sizeof(Problem) == 352);
#else
static_assert(sizeof(NameAndFloatPair::Element) == 32 - kPadding);
static_assert(sizeof(NameAndVariablePair::Element) == 56);
static_assert(sizeof(NumberAndConstraintPair::Element) == 28);
static_assert(sizeof(VariableList::Node) == 64);
static_assert(sizeof(ConstraintList::Node) == 36);
static_assert(sizeof(VariableMap::Container) == 40);
static_assert(sizeof(ConstraintMap::Container) == 40);
static_assert(sizeof(NuvMatrix_NuvFloat32) == 16);
static_assert(sizeof(NuvMatrix_NuvUint) == 16);
static_assert(sizeof(Variable) == 32);
static_assert(sizeof(Constraint) == 24);
static_assert(offsetof(Problem, alloc) == 0);
static_assert(offsetof(Problem, numVars) == 4);
static_assert(offsetof(Problem, numConstraints) == 8);
static_assert(offsetof(Problem, A) == 12);
static_assert(offsetof(Problem, b) == 28);
static_assert(offsetof(Problem, c) == 44);
static_assert(offsetof(Problem, basic) == 60);
static_assert(offsetof(Problem, independent) == 76);
static_assert(offsetof(Problem, variables) == 96 - kPadding);
static_assert(offsetof(Problem, constraints) == 136 - kPadding);
static_assert(offsetof(Problem, objective) == 176 - kPadding);
static_assert(offsetof(Problem, variableValues) == 192 - kPadding);
static_assert(offsetof(Problem, objectiveValue) == 208 - kPadding);
static_assert(sizeof(Problem) == 216 - 2 * kPadding);
#endif

TEST(RecordLayouts, NodeSizesAreThoseOfTheNodes)
{
    EXPECT_EQ(VariableList::GetNodeSize(), sizeof(VariableList::Node));
    EXPECT_EQ(ConstraintList::GetNodeSize(), sizeof(ConstraintList::Node));
    EXPECT_EQ(VariableMap::GetNodeSize(), sizeof(VariableList::Node));
    EXPECT_EQ(ConstraintMap::GetNodeSize(), sizeof(ConstraintList::Node));
}
}  // namespace
