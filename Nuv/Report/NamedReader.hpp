/// What the readers of both kinds of solution files share: the model's names, and where the numbers
/// under them go.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/Model.hpp"
#include "Nuv/Report/Claim.hpp"

#include <optional>
#include <string_view>

namespace nuv::claim
{

enum class What
{
    Variable,
    Row
};

/// What both formats need: the model's names, and where numbers go.
class NamedReader
{
public:
    NamedReader(const Model& model, DiagnosticLog& log) : m_model(model), m_log(log) {}

protected:
    /// @return nothing, after an error, if the model has no such name.
    std::optional<std::uint32_t> Find(What what, std::string_view name, const char* at);

    /// @return false, after an error, if there is a number already.
    bool Set(Claim::Numbers& numbers, What what, std::uint32_t index, Rational value,
             const char* at);

    const Model& m_model;
    DiagnosticLog& m_log;
};

}  // namespace nuv::claim
