/// @file
/// The C++ side of the library: an owner of the C record, with spans and string views for
/// arguments. Nothing throws; every refusal is a return value. What solves leave with the allocator
/// is taken back after each one.
///
///     nuv::LinearProgram plan(2);
///     plan.SetConstraint(1, {{1, 2.0F}, {2, 5.0F}}, 300.0F);
///     plan.SetObjective({{1, 30.0F}, {2, 70.0F}});
///     if (plan.Solve() == nuv::Verdict::Ok) use(plan.Objective(), plan.Value(1), plan.Value(2));
#ifndef NUV_UTILS_NUVLINEARPROGRAMMING_HPP
#define NUV_UTILS_NUVLINEARPROGRAMMING_HPP

#include <cstdlib>
#include <initializer_list>
#include <span>
#include <string_view>
#include <type_traits>
#include <utility>

#include "Nuv/Utils/NuvLinearProgramming.h"
#include "Nuv/Utils/NuvLinearProgrammingMonitor.h"
#include "Nuv/Utils/NuvPivotLimit.h"
#include "Nuv/Utils/NuvScratchAllocator.h"

namespace nuv
{
/// What a solve answers.
enum class Verdict
{
    Ok = NUV_LINEARPROGRAMMINGRESULTTYPE_Ok,
    InvalidInput = NUV_LINEARPROGRAMMINGRESULTTYPE_InvalidInput,
    Unbounded = NUV_LINEARPROGRAMMINGRESULTTYPE_Unbounded,
    Infeasible = NUV_LINEARPROGRAMMINGRESULTTYPE_Infeasible,
    Stopped = NUV_LINEARPROGRAMMINGRESULTTYPE_Stopped
};

/// A coefficient of the variable at `first`, from 1.
using IndexedTerm = NuvPair_NuvUint__NuvFloat32;

/// A coefficient of the variable of that name.
struct NamedTerm
{
    std::string_view name;   ///< of the variable
    NuvFloat32 coefficient;  ///< of the variable
};

/// @return the allocator over the C library's malloc and free.
inline NuvAllocator* HeapAllocator() noexcept
{
    static constinit NuvAllocator heap = {
        [](NuvAllocator*, NuvSizeT size) -> void*
        { return size <= SIZE_MAX ? std::malloc(static_cast<std::size_t>(size)) : nullptr; },
        [](NuvAllocator*, void* memory, NuvSizeT) { std::free(memory); }, 0, nullptr};
    return &heap;
}

/// A linear program max cᵀx, A x ≤ b, x ≥ 0 and its solution. Movable, not copyable. An object
/// whose memory was refused, and one that was moved from, is false: its edits answer false, its
/// solves InvalidInput, its results 0.
class LinearProgram
{
public:
    /// Makes a program of that many variables, numbered from 1, on memory from `upstream`.
    explicit LinearProgram(NuvUint numVariables, NuvAllocator* upstream = HeapAllocator()) noexcept
    {
        void* const memory = NuvAllocatorAllocate(upstream, sizeof(State));
        if (!memory)
            return;
        state = static_cast<State*>(memory);
        NuvScratchAllocatorConstruct(&state->scratch, upstream);
        if (!NuvLinearProgrammingConstruct(&state->lp, numVariables, &state->scratch.allocator))
            Release();
    }

    ///@{
    /// Takes the program over; nothing is copied.
    LinearProgram(LinearProgram&& other) noexcept : state(std::exchange(other.state, nullptr)) {}

    LinearProgram& operator=(LinearProgram&& other) noexcept
    {
        std::swap(state, other.state);
        return *this;
    }
    ///@}

    ~LinearProgram()
    {
        Release();
    }

    /// Whether there is a program: memory was there for it, and it was not moved away.
    explicit operator bool() const noexcept
    {
        return state != nullptr;
    }

    /// @return how many variables it was made with.
    NuvUint NumVariables() const noexcept
    {
        return state ? NuvLinearProgrammingGetNumVars(&state->lp) : 0;
    }

    /// @return how many constraints there are now.
    NuvUint NumConstraints() const noexcept
    {
        return state ? NuvLinearProgrammingGetNumConstraints(&state->lp) : 0;
    }

    /// Names a variable, which is "X1", "X2", ... until then.
    /// @return false for an index that does not exist, a name that is taken, or refused memory.
    bool SetName(NuvUint variable, std::string_view name) noexcept
    {
        const NuvString borrowed = Borrow(name);
        return state && NuvLinearProgrammingSetVariableInfo(
                            &state->lp, variable, &borrowed,
                            NUV_LINEARPROGRAMMINGVARIABLETYPE_FLOAT32) != NUV_FALSE;
    }

    /// Enters or replaces the row Σ coefficient × variable ≤ rhs under a number other than 0.
    /// @return false for number 0 or refused memory. Indices and names are tested by the solve.
    ///@{
    bool SetConstraint(NuvUint number, std::span<const IndexedTerm> terms, NuvFloat32 rhs) noexcept
    {
        const IndexedTerms row = Borrow(terms);
        return state &&
               NuvLinearProgrammingSetConstraintByIndex(&state->lp, number, &row, rhs) != NUV_FALSE;
    }

    bool SetConstraint(NuvUint number, std::initializer_list<IndexedTerm> terms,
                       NuvFloat32 rhs) noexcept
    {
        return SetConstraint(number, std::span<const IndexedTerm>(terms.begin(), terms.size()),
                             rhs);
    }

    bool SetConstraint(NuvUint number, std::span<const NamedTerm> terms, NuvFloat32 rhs) noexcept
    {
        return WithNames(terms,
                         [&](const NamedTerms* row) {
                             return NuvLinearProgrammingSetConstraintByName(&state->lp, number, row,
                                                                            rhs) != NUV_FALSE;
                         });
    }
    ///@}

    /// @return false when there is no constraint of that number.
    bool RemoveConstraint(NuvUint number) noexcept
    {
        return state && NuvLinearProgrammingRemoveConstraint(&state->lp, number) != NUV_FALSE;
    }

    /// Sets the objective Σ coefficient × variable, to be maximised.
    /// @return false only for an object without memory.
    ///@{
    bool SetObjective(std::span<const IndexedTerm> terms) noexcept
    {
        const IndexedTerms objective = Borrow(terms);
        if (state)
            NuvLinearProgrammingSetObjectiveByIndex(&state->lp, &objective);
        return state != nullptr;
    }

    bool SetObjective(std::initializer_list<IndexedTerm> terms) noexcept
    {
        return SetObjective(std::span<const IndexedTerm>(terms.begin(), terms.size()));
    }
    ///@}

    /// @return false when a name is unknown; the objective then stays.
    bool SetObjective(std::span<const NamedTerm> terms) noexcept
    {
        return WithNames(
            terms, [&](const NamedTerms* objective)
            { return NuvLinearProgrammingSetObjective(&state->lp, objective) != NUV_FALSE; });
    }

    /// Solves within 100 × (m + n) pivots.
    Verdict Solve() noexcept
    {
        const NuvSizeT limit = (NuvSizeT{NumVariables()} + NumConstraints()) * 100;
        return SolveWithin(limit < UINT32_MAX ? static_cast<NuvUint>(limit) : UINT32_MAX);
    }

    /// Solves; a solve that wants more pivots, or goes round in a circle, is Stopped.
    Verdict SolveWithin(NuvUint pivotLimit) noexcept
    {
        NuvPivotLimit limit;
        return SolveMonitored(NuvPivotLimitConstruct(&limit, pivotLimit));
    }

    /// Solves, and calls `beforePivot(const NuvLinearProgrammingPivot&)` before each pivot; it
    /// answers false to end the solve.
    template <class BeforePivot>
    Verdict Solve(BeforePivot&& beforePivot) noexcept
    {
        using Callable = std::remove_reference_t<BeforePivot>;
        NuvLinearProgrammingMonitor monitor = {
            [](NuvLinearProgrammingMonitor* self, const NuvLinearProgrammingPivot* pivot) -> NuvBool
            { return (*static_cast<Callable*>(self->userData))(*pivot) ? NUV_TRUE : NUV_FALSE; },
            const_cast<std::remove_const_t<Callable>*>(&beforePivot)};
        return SolveMonitored(&monitor);
    }

    /// @return the optimum after a solve that answered Ok.
    NuvFloat32 Objective() const noexcept
    {
        return state ? NuvLinearProgrammingGetObjectiveValue(&state->lp) : 0.0F;
    }

    /// @return the value of a variable, from 1, after a solve that answered Ok; 0 for one that does
    /// not exist.
    NuvFloat32 Value(NuvUint variable) const noexcept
    {
        const NuvPair_NuvString__NuvFloat32* const pair = PairOf(variable);
        return pair ? pair->second : 0.0F;
    }

    /// @return the name of a variable, from 1; it stays until the next edit.
    std::string_view Name(NuvUint variable) const noexcept
    {
        const NuvPair_NuvString__NuvFloat32* const pair = PairOf(variable);
        return pair ? std::string_view(pair->first.buf, static_cast<std::size_t>(pair->first.size))
                    : std::string_view();
    }

    /// @return the C record, owned by this object, or null.
    NuvLinearProgramming* Record() noexcept
    {
        return state ? &state->lp : nullptr;
    }

private:
    using IndexedTerms = NuvVector_NuvPair_NuvUint__NuvFloat32;
    using NamedTerms = NuvVector_NuvPair_NuvString__NuvFloat32;

    /// The record and its allocator hold pointers to themselves: they have one place for life.
    struct State
    {
        NuvScratchAllocator scratch;
        NuvLinearProgramming lp;
    };

    State* state = nullptr;

    void Release() noexcept
    {
        if (!state)
            return;
        NuvAllocator* const upstream = state->scratch.upstream;
        NuvScratchAllocatorDestruct(&state->scratch);  // all that the record holds lies there
        NuvAllocatorDeallocate(upstream, state, sizeof(State));
        state = nullptr;
    }

    /// A string or an array over the caller's memory, to be read only while a call lasts.
    static NuvString Borrow(std::string_view text) noexcept
    {
        return {nullptr, const_cast<char*>(text.data()), text.size(), 0};
    }

    static IndexedTerms Borrow(std::span<const IndexedTerm> terms) noexcept
    {
        IndexedTerm* const first = const_cast<IndexedTerm*>(terms.data());
        return {nullptr, first, first + terms.size(), first + terms.size()};
    }

    template <class Use>
    bool WithNames(std::span<const NamedTerm> terms, Use&& use) noexcept
    {
        if (!state)
            return false;
        NamedTerms row;
        NuvVector_NuvPair_NuvString__NuvFloat32ConstructDefault(&row, &state->scratch.allocator);
        const bool hasRoom =
            NuvVector_NuvPair_NuvString__NuvFloat32Reserve(&row, terms.size()) != NUV_FALSE;
        if (hasRoom)
            for (const NamedTerm& term : terms)
                *row.end++ = {Borrow(term.name), term.coefficient};
        const bool isUsed = hasRoom && use(&row);
        row.end = row.begin;  // the names are borrowed
        NuvVector_NuvPair_NuvString__NuvFloat32Destruct(&row);
        return isUsed;
    }

    Verdict SolveMonitored(NuvLinearProgrammingMonitor* monitor) noexcept
    {
        if (!state)
            return Verdict::InvalidInput;
        const NuvSizeT mark = NuvScratchAllocatorMark(&state->scratch);
        const NuvLinearProgrammingResultType result =
            NuvLinearProgrammingSolveMonitored(&state->lp, monitor);
        NuvScratchAllocatorRelease(&state->scratch, mark, &state->lp);
        return static_cast<Verdict>(result);
    }

    const NuvPair_NuvString__NuvFloat32* PairOf(NuvUint variable) const noexcept
    {
        if (!state || variable == 0 ||
            variable > NuvVector_NuvPair_NuvString__NuvFloat32Size(&state->lp.variableValues))
            return nullptr;
        return NuvVector_NuvPair_NuvString__NuvFloat32AtConst(&state->lp.variableValues,
                                                              variable - 1);
    }
};
}  // namespace nuv

#endif
