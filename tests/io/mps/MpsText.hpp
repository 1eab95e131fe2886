/// Reading MPS text in a test: the reading, what it said, and what was read, each in a form that a
/// test can state in one line.
#pragma once

#include "Nuv/Io/Mps/MpsReader.hpp"
#include "tests/io/lp/LpText.hpp"

#include <string>
#include <string_view>

namespace nuv::test
{

inline ReadResult ReadMpsText(std::string_view text, const ReadOptions& options = {})
{
    return ReadMps(text, "model.mps", options);
}

inline ReadOptions Relaxed()
{
    ReadOptions options;
    options.relax = true;
    return options;
}

/// What a reading said, without the note about the form.
inline std::string SaidOf(ReadResult reading)
{
    std::erase_if(reading.diagnostics,
                  [](const Diagnostic& said) { return said.error.code == "mps.form"; });
    return Said(reading);
}

/// What the text was read as ("fixed", "free" or "both"), from the note about the form.
inline std::string FormOf(const ReadResult& reading)
{
    for (const Diagnostic& said : reading.diagnostics)
    {
        if (said.error.code != "mps.form")
            continue;
        if (said.error.text.find("the same") != std::string::npos)
            return "both";
        return said.error.text.find("fixed") != std::string::npos ? "fixed" : "free";
    }
    return "unknown";
}

/// The normal form of the model in the text, or what was said if it was refused.
inline std::string ModelIn(std::string_view text, const ReadOptions& options = {})
{
    const ReadResult reading = ReadMpsText(text, options);
    return reading.Ok() ? Written(*reading.model) : SaidOf(reading);
}

/// What was said about the text, whether it was read or not.
inline std::string SaidAbout(std::string_view text, const ReadOptions& options = {})
{
    return SaidOf(ReadMpsText(text, options));
}

/// The text of the first diagnostic with this code.
inline std::string TextOf(const ReadResult& reading, std::string_view code)
{
    for (const Diagnostic& said : reading.diagnostics)
    {
        if (said.error.code == code)
            return said.error.text;
    }
    return "";
}

}  // namespace nuv::test
