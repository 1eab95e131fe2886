#include "Nuv/Io/Mps/MpsMessages.hpp"

#include "Nuv/Io/LetterCase.hpp"
#include "Nuv/Io/Mps/MpsNumber.hpp"

#include <fmt/core.h>

#include <algorithm>

namespace nuv::mps
{

bool Messages::RefuseSection(Section section, std::string_view word, bool isFirst)
{
    if (section == Section::Refused)
    {
        return Fail(word.data(), "mps.refused-section",
                    fmt::format("section {} is no part of a linear program", word),
                    "only rows, columns, ranges and bounds are read; take the section out if "
                    "the rest is the model");
    }
    if (isFirst)
    {
        return Fail(word.data(), "mps.no-model", "this is not a model in the MPS format",
                    "an MPS file starts with NAME or ROWS");
    }
    if (word.size() > 3 && EqualsIgnoringCase(word.substr(0, 3), "obj"))
    {
        return Fail(word.data(), "mps.unknown-section",
                    fmt::format("there is no section called '{}'", word.substr(0, 60)),
                    "OBJSENSE says whether to maximise, OBJNAME which row is the objective");
    }
    return Fail(word.data(), "mps.unknown-section",
                fmt::format("there is no section called '{}'", word.substr(0, 60)),
                "a line that belongs to a section starts with a blank");
}

std::string Messages::HintAt(const char* at, std::string hint) const
{
    return Trimmed({at, static_cast<std::size_t>(m_end - at)}).empty()
               ? "the file ends here: check that it is complete"
               : std::move(hint);
}

bool Messages::UnknownRow(std::string_view name)
{
    if (name.empty())
    {
        return Fail(name.data(), "mps.missing-row", "there is no row on this line",
                    HintAt(name.data(), "a row and its number are missing"));
    }
    return Fail(
        name.data(), "mps.unknown-row",
        fmt::format("there is no row called '{}' in ROWS, line {}", name, LineOf(Section::Rows)),
        HintAt(name.data() + name.size(), "check its spelling; letter case counts"));
}

bool Messages::UnknownColumn(std::string_view name)
{
    return Fail(name.data(), name.empty() ? "mps.missing-column" : "mps.unknown-column",
                name.empty() ? std::string("this bound names no column")
                             : fmt::format("there is no column called '{}' in COLUMNS, line {}",
                                           name, LineOf(Section::Columns)),
                "a bound is a type, a set, a column and a value; letter case counts");
}

bool Messages::TakeNumber(std::string_view text, std::string_view of, WrittenNumber& number)
{
    const Number read = ReadNumber(text);
    switch (read.fault)
    {
    case NumberFault::None:
        number = ExactNumberOf(text, read.value);
        return true;
    case NumberFault::Undefined:
        return Fail(text.data(), "mps.not-finite",
                    fmt::format("the value for '{}' is not a number", of),
                    "find out where the program that wrote the file got it from");
    case NumberFault::TooLarge:
        return Fail(text.data(), "mps.number-too-large",
                    fmt::format("{} is beyond the largest double", text), "scale the model");
    case NumberFault::TooSmall:
        return Fail(text.data(), "mps.number-too-small",
                    fmt::format("{} is nearer to 0 than any double", text),
                    "write 0, or scale the model");
    case NumberFault::NotANumber:
        break;
    }
    if (text.empty())
    {
        return Fail(text.data(), "mps.missing-number",
                    fmt::format("there is no number behind '{}'", of),
                    HintAt(text.data(), "each name is followed by its number"));
    }
    const bool comma = text.find(',') != std::string_view::npos;
    return Fail(text.data(), "mps.not-a-number",
                fmt::format("'{}' is no number, where '{}' needs one", text, of),
                comma ? "numbers have a decimal point and no marks between thousands"
                      : "each name is followed by its number");
}

bool Messages::CheckName(std::string_view name, std::string_view what)
{
    const auto isControl = [](char c)
    { return static_cast<unsigned char>(c) < 0x20u || c == 0x7F; };
    const char* const end = name.data() + name.size();
    const char* const control = std::find_if(name.data(), end, isControl);
    if (control != end)
    {
        return Fail(control, "mps.binary",
                    fmt::format("the name of a {} holds a byte that is no text", what),
                    "check that this is a text file");
    }
    if (name.size() > 255)
    {
        m_log.Warn(name.data(), "mps.long-name",
                   fmt::format("the name of a {} has {} bytes", what, name.size()),
                   "other programs take no more than 255");
    }
    return true;
}

}  // namespace nuv::mps
