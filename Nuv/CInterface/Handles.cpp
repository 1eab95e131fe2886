#include "Nuv/CInterface/Handles.hpp"

#include "Nuv/CInterface/Records.hpp"
#include "Nuv/Utils/NuvVersion.h"

#include <atomic>
#include <cstring>
#include <iterator>

namespace nuv::c
{

void Fail(NuvModelResult result, std::string code, std::string text, std::string hint)
{
    Fail(result, {std::move(code), std::move(text), std::move(hint), {}, 0, 0});
}

void Fail(NuvModelResult result, Error error)
{
    throw Failure{result, std::move(error)};
}

void Tell(NuvDiagnostics* diagnostics, Error error) noexcept
{
    if (!diagnostics || error.code.empty())
        return;
    try
    {
        diagnostics->diagnostics.push_back(WithoutPlace(std::move(error)));
    }
    catch (...)
    {
        // The result of the call says what happened.
    }
}

bool Clear(NuvDiagnostics* diagnostics) noexcept
{
    if (!diagnostics)
        return true;
    if (!IsHandle(diagnostics))
        return false;
    diagnostics->diagnostics.clear();
    return true;
}

void Require(bool holds, const char* text)
{
    if (!holds)
        Fail(NUV_MODELRESULT_InvalidArgument, "c.argument", text);
}

void RequireOneOf(std::uint32_t number, std::uint32_t count, const char* name)
{
    if (number >= count)
        Fail(NUV_MODELRESULT_InvalidArgument, "c.argument",
             std::to_string(number) + " is no " + name);
}

void MakeText(NuvText** text, std::string content)
{
    *text = new NuvText(std::move(content));
}

std::uint64_t CopyText(std::string_view text, char* buffer, std::uint64_t size) noexcept
{
    if (buffer && size != 0)
    {
        const std::size_t copied =
            text.size() < size ? text.size() : static_cast<std::size_t>(size - 1);
        std::memcpy(buffer, text.data(), copied);
        buffer[copied] = '\0';
    }
    return text.size() + 1;
}

Model& Changeable(NuvModel& handle)
{
    if (handle.model.use_count() != 1)
        handle.model = std::make_shared<Model>(*handle.model);
    // Whoever had it last has read it before giving it back.
    std::atomic_thread_fence(std::memory_order_acquire);
    return *handle.model;
}

}  // namespace nuv::c

using namespace nuv::c;

const char* NuvModelGetVersion(void)
{
    return NUV_VERSION;
}

uint32_t NuvModelGetVersionNumber(void)
{
    return 10000 * NUV_VERSION_MAJOR + 100 * NUV_VERSION_MINOR + NUV_VERSION_PATCH;
}

const char* NuvModelGetResultName(NuvModelResult result)
{
    constexpr const char* kNames[] = {
        "Ok",      "InvalidArgument", "InvalidHandle", "NoMemory", "InvalidModel", "CannotRead",
        "BadText", "CannotWrite",     "NotKnown",      "Refused",  "Internal"};
    return result >= 0 && result < static_cast<int32_t>(std::size(kNames)) ? kNames[result]
                                                                           : nullptr;
}

NuvDiagnostics* NuvDiagnosticsConstruct(void)
{
    return Construct<NuvDiagnostics>();
}

void NuvDiagnosticsDestruct(NuvDiagnostics* diagnostics)
{
    Destruct(diagnostics);
}

uint32_t NuvDiagnosticsGetCount(const NuvDiagnostics* diagnostics)
{
    return IsHandle(diagnostics) ? static_cast<uint32_t>(diagnostics->diagnostics.size()) : 0;
}

NuvModelResult NuvDiagnosticsGet(const NuvDiagnostics* diagnostics, uint32_t index,
                                 NuvDiagnostic* diagnostic)
{
    return Guarded(nullptr,
                   [&]
                   {
                       const auto& held = Checked(diagnostics).diagnostics;
                       Require(index < held.size(), "there is no diagnostic of this index");
                       const nuv::Error& error = held[index].error;
                       FillIn(diagnostic, "diagnostic",
                              {0, static_cast<uint32_t>(held[index].severity), error.line,
                               error.column, error.code.c_str(), error.text.c_str(),
                               error.hint.c_str(), error.file.c_str(),
                               held[index].excerpt.c_str()});
                   });
}

NuvModelResult NuvDiagnosticsMakeText(const NuvDiagnostics* diagnostics, NuvText** text)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(text, "text") = nullptr;
                       std::string rendered;
                       for (const nuv::Diagnostic& diagnostic : Checked(diagnostics).diagnostics)
                           rendered += Render(diagnostic);
                       MakeText(text, std::move(rendered));
                   });
}

const char* NuvTextGetData(const NuvText* text)
{
    return IsHandle(text) ? text->text.c_str() : nullptr;
}

uint64_t NuvTextGetSize(const NuvText* text)
{
    return IsHandle(text) ? text->text.size() : 0;
}

void NuvTextDestruct(NuvText* text)
{
    Destruct(text);
}
