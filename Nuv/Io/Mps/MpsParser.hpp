/// The grammar of an MPS file: one pass over its lines in one of the two forms, headers of sections
/// and comments that speak here, each record handed to the Builder by the section that it stands
/// in. Every function that returns bool has reported an error when it returns false.
#pragma once

#include "Nuv/Io/Mps/MpsBuilder.hpp"
#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsMessages.hpp"
#include "Nuv/Io/Mps/MpsRecords.hpp"
#include "Nuv/Io/ReadResult.hpp"

#include <string_view>

namespace nuv::mps
{

class Parser
{
public:
    /// `form` is Fixed or Free.
    Parser(std::string_view text, std::string_view file, const ReadOptions& options, MpsForm form);
    // Its parts refer to each other.
    Parser(const Parser&) = delete;
    Parser& operator=(const Parser&) = delete;

    [[nodiscard]] ReadResult Run();

    // After Run():

    /// Whether every record of a free reading lies in the columns of the fixed form, so that both
    /// read the same.
    [[nodiscard]] bool FitsColumns() const noexcept
    {
        return m_records.FitColumns();
    }
    /// The start of the last line that was read.
    [[nodiscard]] const char* Reached() const noexcept
    {
        return m_line.Begin();
    }

private:
    bool ReadLines();
    bool ReadHeader();
    bool ReadRecord();
    bool OpenSection(const Words& words);
    bool CheckOrder(Section section);
    bool ReadObjectiveSense(std::string_view word);
    bool ReadObjectiveName(std::string_view name);
    void ReadComment();
    bool CheckObjective();
    bool CheckComplete();
    void FinishSense();

    std::string_view m_text;
    ReadOptions m_options;
    Messages m_messages;
    DiagnosticLog& m_log;
    Builder m_builder;
    Records m_records;
    Lines m_lines;
    Line m_line;

    Section m_section = Section::None;
    const char* m_sensePlace = nullptr;    ///< of OBJSENSE's word
    const char* m_senseComment = nullptr;  ///< of the first `*SENSE:` comment
    Sense m_commentedSense = Sense::Minimize;
};

}  // namespace nuv::mps
