/// Reading LP text in a test: the reading, and what was read, in a form that a test can state in
/// one line.
#pragma once

#include "Nuv/Io/Lp/LpReader.hpp"
#include "tests/io/Said.hpp"
#include "tests/model/ModelText.hpp"

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

/// The normal form of the text, or what was said if it was refused.
inline std::string Read(std::string_view text)
{
    const ReadResult reading = ReadText(text);
    return reading.Ok() ? Written(*reading.model) : Said(reading);
}

}  // namespace nuv::test
