/// What the reader of MPS files says in more than one section, and the places of the sections that
/// it refers to. Every function that returns bool has reported an error when it returns false.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsSection.hpp"

#include <string>
#include <string_view>
#include <utility>

namespace nuv::mps
{

class Messages
{
public:
    /// `text` is the whole file and outlives this object.
    Messages(std::string_view text, std::string_view file)
        : m_log(file, text), m_end(text.data() + text.size())
    {
    }

    [[nodiscard]] DiagnosticLog& Log() noexcept
    {
        return m_log;
    }

    void Enter(Section section, const char* at) noexcept
    {
        m_places[static_cast<std::size_t>(section)] = at;
    }
    /// Where a section started; null if it has not.
    [[nodiscard]] const char* PlaceOf(Section section) const noexcept
    {
        return m_places[static_cast<std::size_t>(section)];
    }
    [[nodiscard]] std::size_t LineOf(Section section)
    {
        return m_log.LineOf(PlaceOf(section));
    }

    bool Fail(const char* at, std::string code, std::string text, std::string hint)
    {
        return m_log.Fail(at, std::move(code), std::move(text), std::move(hint));
    }
    /// Returns false.
    bool RefuseSection(Section section, std::string_view word, bool isFirst);
    bool UnknownRow(std::string_view name);
    bool UnknownColumn(std::string_view name);

    /// Takes a number that may be infinite. `of` is what it belongs to.
    bool TakeNumber(std::string_view text, std::string_view of, WrittenNumber& number);
    /// Checks the name of a row or column, where it is met first.
    bool CheckName(std::string_view name, std::string_view what);

private:
    /// `hint`, or, where nothing follows in the file, that there should.
    [[nodiscard]] std::string HintAt(const char* at, std::string hint) const;

    DiagnosticLog m_log;
    const char* m_end;
    const char* m_places[static_cast<std::size_t>(Section::Unknown) + 1] = {};
};

}  // namespace nuv::mps
