/// What stands behind the handles of the C interface, and the two rules of its border: a handle is
/// told from other memory by its first word, and no exception passes.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Model/NuvModel.h"
#include "Nuv/Solve/Solution.hpp"

#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv::c
{

/// The first word of each kind of handle; 0 in one that was given back.
enum class Kind : std::uint64_t
{
    None = 0,
    Model = 0x4E75764D6F64656Cu,
    Solution = 0x4E7576536F6C7574u,
    Solver = 0x4E7576536F6C7665u,
    Repair = 0x4E75765265706169u,
    Claim = 0x4E7576436C61696Du,
    Diagnostics = 0x4E75764469616700u,
    Text = 0x4E75765465787400u,
};

template <Kind kind>
struct Tagged
{
    static constexpr Kind kKind = kind;

    Tagged() = default;
    Tagged(const Tagged&) = delete;
    Tagged& operator=(const Tagged&) = delete;
    /// Volatile, since a compiler may leave out a store to what nobody may read any more.
    ~Tagged()
    {
        *const_cast<volatile Kind*>(&tag) = Kind::None;
    }

    Kind tag = kind;
};

}  // namespace nuv::c

/// Shared with its copies and solutions until it changes.
struct NuvModel : nuv::c::Tagged<nuv::c::Kind::Model>
{
    NuvModel() : model(std::make_shared<nuv::Model>()) {}
    explicit NuvModel(std::shared_ptr<nuv::Model> shared) : model(std::move(shared)) {}

    std::shared_ptr<nuv::Model> model;
    std::vector<std::uint64_t> starts;  ///< for NuvModelGetArrays, where size_t is no uint64_t
};

struct NuvSolution : nuv::c::Tagged<nuv::c::Kind::Solution>
{
    std::shared_ptr<const nuv::Model> model;  ///< as it was solved
    nuv::Solution solution;
    // Flat, two numbers a range.
    std::vector<double> costRanges;
    std::vector<double> rowLowerRanges;
    std::vector<double> rowUpperRanges;
    std::vector<NuvIisMember> iis;
};

struct NuvDiagnostics : nuv::c::Tagged<nuv::c::Kind::Diagnostics>
{
    std::vector<nuv::Diagnostic> diagnostics;
};

struct NuvText : nuv::c::Tagged<nuv::c::Kind::Text>
{
    explicit NuvText(std::string content) : text(std::move(content)) {}

    std::string text;
};

namespace nuv::c
{

template <class Handle>
[[nodiscard]] bool IsHandle(const Handle* handle) noexcept
{
    return handle && handle->tag == Handle::kKind;
}

/// Destructs and frees a handle; whatever is none is left alone.
template <class Handle>
void Destruct(Handle* handle) noexcept
{
    if (IsHandle(handle))
        delete handle;
}

/// A handle that stands on the caller's side, or null where there is no memory.
template <class Handle, class... Arguments>
[[nodiscard]] Handle* Construct(Arguments&&... arguments) noexcept
{
    try
    {
        return new Handle(std::forward<Arguments>(arguments)...);
    }
    catch (...)
    {
        return nullptr;
    }
}

/// What went wrong, thrown within the room by what finds it. An error without a code has been told.
struct Failure
{
    NuvModelResult result;
    Error error;
};

/// Throws a failure with its code, text and hint.
[[noreturn]] void Fail(NuvModelResult result, std::string code, std::string text,
                       std::string hint = {});
/// The same with the diagnostics' own error.
[[noreturn]] void Fail(NuvModelResult result, Error error);

/// Adds an error to the diagnostics, where there are any and there is memory for it: if not, the
/// result of the call is all that is said.
void Tell(NuvDiagnostics* diagnostics, Error error) noexcept;

/// @return whether a handle for diagnostics is none or one, which is empty then.
[[nodiscard]] bool Clear(NuvDiagnostics* diagnostics) noexcept;

/// Runs a call: what it throws becomes its result and its diagnostics.
template <class Call>
NuvModelResult Guarded(NuvDiagnostics* diagnostics, const Call& call) noexcept
{
    if (!Clear(diagnostics))
        return NUV_MODELRESULT_InvalidHandle;
    try
    {
        call();
        return NUV_MODELRESULT_Ok;
    }
    catch (Failure& failure)
    {
        Tell(diagnostics, std::move(failure.error));
        return failure.result;
    }
    catch (const std::bad_alloc&)
    {
        return NUV_MODELRESULT_NoMemory;
    }
    catch (const std::length_error&)
    {
        return NUV_MODELRESULT_NoMemory;
    }
    catch (...)
    {
        return NUV_MODELRESULT_Internal;
    }
}

/// The handle, or the failure InvalidHandle.
template <class Handle>
Handle& Checked(Handle* handle)
{
    if (!IsHandle(handle))
        Fail(NUV_MODELRESULT_InvalidHandle, "c.handle", "a handle is null, or of another kind");
    return *handle;
}

/// What a pointer points to, or the failure InvalidArgument.
template <class Value>
Value& Given(Value* value, const char* name)
{
    if (!value)
        Fail(NUV_MODELRESULT_InvalidArgument, "c.null", std::string(name) + " is null");
    return *value;
}

/// The failure InvalidArgument unless it holds.
void Require(bool holds, const char* text);

/// The failure InvalidArgument unless `number` is one of an enumeration's first `count`.
void RequireOneOf(std::uint32_t number, std::uint32_t count, const char* name);

/// Hands a text to the caller.
void MakeText(NuvText** text, std::string content);

/// Writes `text` with its NUL into the buffer, cut to its size.
/// @return the bytes that the whole of it takes.
std::uint64_t CopyText(std::string_view text, char* buffer, std::uint64_t size) noexcept;

/// The model to change: a copy of its own if anybody else has it too.
[[nodiscard]] Model& Changeable(NuvModel& handle);

}  // namespace nuv::c
