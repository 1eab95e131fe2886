/// What every writer of model files gives: the text, or the reason why the format cannot hold the
/// model, and all that is worth saying about what the text does not hold as it was.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nuv
{

struct Writing
{
    /// Empty if there was an error.
    std::optional<std::string> text;
    std::vector<Diagnostic> diagnostics;

    [[nodiscard]] bool Ok() const noexcept
    {
        return text.has_value();
    }

    void Report(Severity severity, std::string code, std::string what, std::string hint = {})
    {
        Error error;
        error.code = std::move(code);
        error.text = std::move(what);
        error.hint = std::move(hint);
        diagnostics.push_back(WithoutPlace(std::move(error), severity));
    }
};

}  // namespace nuv
