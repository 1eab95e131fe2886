/// What a reading said, in a form that a test can state in one line each.
#pragma once

#include "Nuv/Io/ReadResult.hpp"

#include <string>

namespace nuv::test
{

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

}  // namespace nuv::test
