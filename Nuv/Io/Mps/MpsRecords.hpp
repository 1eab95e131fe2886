/// The grammar of a record: which word of a line is which field, and what is a comment. In fixed
/// MPS that follows from columns; in free MPS from the number of words, and where that is not
/// enough from what is a row or a column, which the Builder knows.
#pragma once

#include "Nuv/Io/Mps/MpsBuilder.hpp"
#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsMessages.hpp"
#include "Nuv/Io/ReadResult.hpp"

#include <string_view>

namespace nuv::mps
{

class Records
{
public:
    /// `form` is Fixed or Free.
    Records(MpsForm form, const Builder& builder, Messages& messages)
        : m_form(form), m_builder(builder), m_messages(messages)
    {
    }

    /// Whether a line that does not start in its first column is a comment all the same: its first
    /// word begins with '*', and it is no record of a column or set that is called so.
    bool IsComment(const Line& line, Section section);

    /// Takes a line of a section apart.
    /// @return false if an error was reported.
    bool Read(const Line& line, Section section, Record& record);

    /// Whether every record of a free reading lies in the columns of the fixed form, so that both
    /// read the same.
    [[nodiscard]] bool FitColumns() const noexcept
    {
        return m_fitColumns;
    }

private:
    bool ReadColumns(Record& record);
    bool TakeMarker(Record& record);
    bool AssignWords(const Words& words, Record& record);
    void AssignRow(const Words& words, Record& record);
    void AssignColumn(const Words& words, Record& record);
    void AssignRightHandSide(const Words& words, Record& record);
    void AssignBound(const Words& words, Record& record);
    void DropComment(Words& words);
    [[nodiscard]] bool NamesARow(const Line& line, MpsForm form) const;
    [[nodiscard]] bool IsKnown(std::string_view word) const noexcept;

    MpsForm m_form;
    const Builder& m_builder;
    Messages& m_messages;
    Line m_line;
    Section m_section = Section::None;
    bool m_fitColumns = true;
};

}  // namespace nuv::mps
