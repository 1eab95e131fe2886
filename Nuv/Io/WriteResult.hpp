/// What every writer of model files gives: the text, or the reason why the format cannot hold the
/// model, and all that is worth saying about what the text does not hold as it was.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace nuv
{

/// A written text, or why there is none.
struct WriteResult
{
    /// Empty if there was an error.
    std::optional<std::string> text;
    std::vector<Diagnostic> diagnostics;  ///< in the order in which they came up

    /// Whether there is a text.
    [[nodiscard]] bool Ok() const noexcept
    {
        return text.has_value();
    }

    /// The first error, of which there is one unless Ok().
    [[nodiscard]] const Error& GetError() const noexcept
    {
        const auto found = std::find_if(diagnostics.begin(), diagnostics.end(), IsError);
        static const Error kNone;
        return found == diagnostics.end() ? kNone : found->error;
    }

    /// Whether one of the diagnostics is an error.
    [[nodiscard]] bool HasError() const noexcept
    {
        return std::any_of(diagnostics.begin(), diagnostics.end(), IsError);
    }

    /// Adds a diagnostic; `what` is its text.
    void Report(Severity severity, std::string code, std::string what, std::string hint = {})
    {
        Error error;
        error.code = std::move(code);
        error.text = std::move(what);
        error.hint = std::move(hint);
        diagnostics.push_back(WithoutPlace(std::move(error), severity));
    }

private:
    [[nodiscard]] static bool IsError(const Diagnostic& diagnostic) noexcept
    {
        return diagnostic.severity == Severity::Error;
    }
};

/// The limit of a row or variable as the formats take it, infinite from 1e30 on. One that changes
/// is reported under `code`: with a warning if it loosens, as an error if no number could keep it.
[[nodiscard]] double WrittenLimit(WriteResult& result, std::string code, double value, bool isLower,
                                  std::string_view what, std::string_view name);

}  // namespace nuv
