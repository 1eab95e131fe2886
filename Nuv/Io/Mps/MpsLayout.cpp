#include "Nuv/Io/Mps/MpsLayout.hpp"

namespace nuv::mps
{
namespace
{

// The fields 1 to 6, from column 0.
constexpr std::size_t kField1 = 1;
constexpr std::size_t kField2 = 4;
constexpr std::size_t kField3 = 14;
constexpr std::size_t kField4 = 24;
constexpr std::size_t kField5 = 39;
constexpr std::size_t kField6 = 49;

}  // namespace

void Layout::Name(std::string_view model)
{
    Field(0, "NAME", kField3);
    if (!model.empty())
        Field(kField3, model, model.size());
    EndLine();
}

void Layout::PutLine(std::string_view line)
{
    m_text.append(line);
    EndLine();
}

void Layout::BeginSection(std::string_view header)
{
    m_sectionBegin = m_text.size();
    PutLine(header);
    m_recordsBegin = m_text.size();
}

void Layout::EndSection()
{
    EndPairs();
    if (m_text.size() == m_recordsBegin)
        m_text.resize(m_sectionBegin);
    m_lineBegin = m_text.size();
}

void Layout::Row(char type, std::string_view name)
{
    Field(kField1, {&type, 1}, 2);
    Field(kField2, name, kNameColumns);
    EndLine();
}

void Layout::Pair(std::string_view name, std::string_view row, std::string_view number)
{
    if (!m_hasOnePair)
        Field(kField2, name, kNameColumns);
    Field(m_hasOnePair ? kField5 : kField3, row, kNameColumns);
    Field(m_hasOnePair ? kField6 : kField4, number, kNumberColumns);
    m_hasOnePair = !m_hasOnePair;
    if (!m_hasOnePair)
        EndLine();
}

void Layout::EndPairs()
{
    if (m_hasOnePair)
        EndLine();
    m_hasOnePair = false;
}

void Layout::Bound(std::string_view type, std::string_view column, std::string_view number)
{
    Field(kField1, type, 2);
    Field(kField2, "BND", kNameColumns);
    Field(kField3, column, kNameColumns);
    if (!number.empty())
        Field(kField4, number, kNumberColumns);
    EndLine();
}

void Layout::Field(std::size_t column, std::string_view text, std::size_t width)
{
    const std::size_t at = m_text.size() - m_lineBegin;
    if (at < column)
        m_text.append(column - at, ' ');
    else if (at != 0)
        m_text += ' ';
    if (text.size() > width && m_misfit.empty())
        m_misfit = text;
    m_text.append(text);
}

void Layout::EndLine()
{
    m_text += '\n';
    m_lineBegin = m_text.size();
}

}  // namespace nuv::mps
