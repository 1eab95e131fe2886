/// The parser behind ReadMps: one pass over the lines of a file in one of the two forms, each
/// record taken apart into its fields and handed to the section it stands in. Rows and columns go
/// into the model as they come; the matrix, which the file has by columns and the model by rows, is
/// collected and turned at the end. So are the bounds of rows and the defaults of variables, since
/// what they depend on may follow.
///
/// Places are pointers into the text: the line of a row, of a column or of a bound is found from
/// them only when something is to be said about it. Every function that returns bool has reported
/// an error when it returns false.
#pragma once

#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsNumber.hpp"
#include "Nuv/Io/Reading.hpp"
#include "Nuv/Model/NameTable.hpp"

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace nuv::mps
{

enum class Section : std::uint8_t
{
    None,
    Name,
    ObjectiveSense,
    Rows,
    Columns,
    RightHandSides,
    Ranges,
    Bounds,
    End,
    Refused,  ///< known, and no part of a linear program
    Unknown,
};

class Parser
{
public:
    /// `form` is Fixed or Free.
    Parser(std::string_view text, std::string_view file, const ReadOptions& options, MpsForm form);

    [[nodiscard]] Reading Run();

    // After Run():

    /// Whether every record of a free reading lies in the columns of the fixed form, so that both
    /// read the same.
    [[nodiscard]] bool FitsColumns() const noexcept
    {
        return m_fitsColumns;
    }
    /// The start of the last line that was read.
    [[nodiscard]] const char* Reached() const noexcept
    {
        return m_line.Begin();
    }

private:
    /// Where in the model the row of an index in m_rowNames went.
    static constexpr std::uint32_t kObjective = 0xFFFFFFFEu;
    static constexpr std::uint32_t kDropped = 0xFFFFFFFFu;

    /// The first set that RHS, RANGES or BOUNDS name counts; the others are left out.
    struct FirstSet
    {
        bool known = false;
        std::string_view name;
        std::string_view lastOther;
    };

    /// What one side of a variable's bounds was last set by; null: by default.
    struct BoundPlaces
    {
        const char* lower = nullptr;
        const char* upper = nullptr;
    };

    struct RangeEntry
    {
        std::uint32_t row;
        double value;
        std::string_view text;
    };

    /// What ROWS said of a row, and the last place in COLUMNS that names it.
    struct RowState
    {
        const char* lastEntry;
        std::uint32_t to;  ///< its index in the model, kObjective or kDropped
    };

    /// An entry on its way into the matrix. Between the three steps (the hash of the row's name,
    /// the row, its state) lie some other entries, so that none of them waits for memory.
    struct PendingEntry
    {
        std::string_view name;  ///< of the row
        std::string_view number;
        NameTable::Key key;
        std::uint32_t column;
        bool isLookedUp;
        std::uint32_t row;
    };
    static constexpr std::size_t kPending = 16;

    struct BoundType;

    // The file: MpsParser.cpp.
    bool ReadLines();
    bool ReadHeader();
    bool OpenSection(Section section, const Words& words);
    bool RefuseSection(Section section, std::string_view word);
    bool CheckOrder(Section section);
    bool ReadObjectiveSense(std::string_view word);
    void ReadComment();
    bool CheckSense();
    bool CheckComplete();
    bool Finish();
    void FinishSense();

    /// The error, unless an entry that is still pending has one: that comes before it in the file.
    /// @return false.
    bool Fail(const char* at, std::string code, std::string text, std::string hint);

    // Records: MpsRecords.cpp.
    bool ReadRecord();
    bool TakeApart(Record& record);
    bool TakeMarker(Record& record);
    bool AssignWords(const Words& words, Record& record);
    void AssignRow(const Words& words, Record& record);
    void AssignColumn(const Words& words, Record& record);
    void AssignRightHandSide(const Words& words, Record& record);
    void AssignBound(const Words& words, Record& record);
    void DropComment(Words& words);
    [[nodiscard]] bool IsKnown(std::string_view word) const noexcept;
    bool TakeNumber(std::string_view text, std::string_view of, double& value);
    bool CheckNewName(std::string_view name, std::string_view what);
    bool InFirstSet(FirstSet& set, const Record& record);

    // ROWS and COLUMNS: MpsColumns.cpp.
    bool ReadRow(const Record& record);
    bool AddFreeRow(std::string_view name);
    bool ReadColumn(const Record& record);
    bool BeginColumn(std::string_view name);
    bool ReadMarker(const Record& record);
    bool AddEntry(std::string_view row, std::string_view number);
    bool SettleEntry(const PendingEntry& entry);
    bool SettleEntries();
    bool SettleOldest();
    void LookUp(PendingEntry& entry);
    bool TakeCoefficient(const PendingEntry& entry, std::uint32_t to);
    bool FindRow(std::string_view name, std::uint32_t& index);
    bool UnknownRow(std::string_view name);
    void FinishColumns();

    // RHS and RANGES: MpsRightHandSides.cpp.
    bool ReadRightHandSide(const Record& record);
    bool AddRightHandSide(std::string_view row, std::string_view number);
    void SetConstant(std::string_view row, double value);
    bool SetRightHandSide(std::uint32_t row, double value, std::string_view number);
    bool ReadRange(const Record& record);
    bool AddRange(std::string_view row, std::string_view number);
    bool OnlyOnce(std::vector<const char*>& places, std::uint32_t index, std::string_view row,
                  std::string_view what);
    bool FinishRows();
    bool FinishRange(const RangeEntry& range);

    // BOUNDS: MpsBounds.cpp.
    bool ReadBound(const Record& record);
    bool ApplyBound(const BoundType& type, std::uint32_t column, double value,
                    const Record& record);
    bool TakeBoundValue(const BoundType& type, const Record& record, double& value);
    bool RefuseInteger(const BoundType& type, const Record& record);
    void NoteSecondBound(const char* before, const Record& record);
    void FinishBounds();
    void FinishBound(std::uint32_t column);
    void FinishIntegers();
    static const BoundType* FindBoundType(std::string_view name) noexcept;
    static bool BoundNeedsValue(std::string_view type) noexcept;

    std::string_view m_text;
    ReadOptions m_options;
    MpsForm m_form;
    DiagnosticLog m_log;
    Lines m_lines;
    Line m_line;
    bool m_fitsColumns = true;
    Model m_model;

    Section m_section = Section::None;
    /// Where each section started; null for those that have not.
    const char* m_sectionPlaces[static_cast<std::size_t>(Section::Unknown) + 1] = {};
    const char* m_sensePlace = nullptr;    ///< of OBJSENSE's word
    const char* m_senseComment = nullptr;  ///< of the first `*SENSE:` comment
    Sense m_commentedSense = Sense::Minimize;

    NameTable m_rowNames;  ///< of all rows, those of type N too
    std::vector<RowState> m_rowStates;
    std::vector<const char*> m_rowPlaces;
    std::vector<const char*> m_rhsPlaces;
    std::vector<const char*> m_rangePlaces;
    std::vector<char> m_types;  ///< of the model's rows: L, G or E
    std::vector<double> m_rightHandSides;
    std::vector<RangeEntry> m_ranges;
    bool m_hasObjective = false;

    std::string_view m_column;  ///< the one that COLUMNS is at
    std::array<PendingEntry, kPending> m_pending;
    std::size_t m_firstPending = 0;
    std::size_t m_pendingCount = 0;
    const char* m_integerMarker = nullptr;  ///< of the INTORG that is open
    const char* m_firstInteger = nullptr;   ///< of the first mark of an integer
    std::size_t m_zeros = 0;
    const char* m_firstZero = nullptr;
    std::vector<const char*> m_columnPlaces;
    std::vector<std::size_t> m_starts;
    std::vector<std::uint32_t> m_entryRows;
    std::vector<double> m_entries;
    std::vector<std::uint32_t> m_integers;

    FirstSet m_rhsSet;
    FirstSet m_rangeSet;
    FirstSet m_boundSet;
    std::vector<BoundPlaces> m_boundPlaces;
};

}  // namespace nuv::mps
