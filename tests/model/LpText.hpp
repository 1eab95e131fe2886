/// Reading LP text in a test: the reading, and what it said, in a form that a test can state in one
/// line.
#pragma once

#include "Nuv/Io/Lp/LpReader.hpp"

#include <string>
#include <string_view>

namespace nuv::test
{

inline ReadResult ReadText(std::string_view text, bool relax = false)
{
    ReadOptions options;
    options.relax = relax;
    return ReadLp(text, "model.lp", options);
}

/// "error lp.quotient 3:4", one a line, in the order of reporting.
inline std::string Said(const ReadResult& reading)
{
    std::string said;
    for (const Diagnostic& diagnostic : reading.diagnostics)
    {
        said += said.empty() ? "" : "\n";
        said += std::string(SeverityName(diagnostic.severity)) + " " + diagnostic.error.code + " " +
                std::to_string(diagnostic.error.line) + ":" +
                std::to_string(diagnostic.error.column);
    }
    return said;
}

/// What was read, as one normal form: "max 5 + 3 x + 2 y; c1: -inf <= 1 x + 1 y <= 4; 0 <= x <=
/// inf; ..."
std::string Written(const Model& model);

/// The normal form of the text, or what was said if it was refused.
inline std::string Read(std::string_view text)
{
    const ReadResult reading = ReadText(text);
    return reading.Ok() ? Written(*reading.model) : Said(reading);
}

}  // namespace nuv::test
