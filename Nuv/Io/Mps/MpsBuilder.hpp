/// The model that an MPS file states, record by record. Rows and columns go into it as they come;
/// the matrix, which the file has by columns and the model by rows, is collected and turned at the
/// end. So are the bounds of rows and the defaults of variables, since what they depend on may
/// follow.
///
/// Places are pointers into the text: the line of a row, of a column or of a bound is found from
/// them only when something is to be said about it. Every function that returns bool has reported
/// an error when it returns false.
#pragma once

#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsMessages.hpp"
#include "Nuv/Io/ReadResult.hpp"
#include "Nuv/Model/ModelBuilder.hpp"
#include "Nuv/Model/NameTable.hpp"

#include <cstdint>
#include <string_view>
#include <vector>

namespace nuv::mps
{

/// Whether a record of this type of bound ends with a number.
[[nodiscard]] bool BoundNeedsValue(std::string_view type) noexcept;

class Builder
{
public:
    Builder(Messages& messages, const ReadOptions& options)
        : m_messages(messages), m_log(messages.Log()), m_options(options)
    {
    }

    void SetName(std::string_view name)
    {
        m_builder.SetName(name);
    }
    void SetSense(Sense sense) noexcept
    {
        m_builder.SetSense(sense);
    }
    /// OBJNAME: this row of type N is the objective, not the first one. Before ROWS.
    void AskForObjective(std::string_view name) noexcept
    {
        m_objectiveAsked = name;
    }
    [[nodiscard]] std::string_view ObjectiveAsked() const noexcept
    {
        return m_objectiveAsked;
    }
    [[nodiscard]] Sense ObjectiveSense() const noexcept
    {
        return Made().ObjectiveSense();
    }
    [[nodiscard]] bool HasRow(std::string_view name) const noexcept
    {
        return m_rowNames.Find(name) != NameTable::kNone;
    }
    [[nodiscard]] bool HasColumn(std::string_view name) const noexcept
    {
        return Made().FindVariable(name).has_value();
    }

    // A record of each section.
    bool AddRow(const Record& record);
    bool AddColumn(const Record& record);
    bool AddRightHandSide(const Record& record);
    bool AddRange(const Record& record);
    bool AddBound(const Record& record);

    /// Takes in the entries that wait; to be called where COLUMNS ends, or the reading does.
    bool TakeEntries();

    /// Makes the model of all that was added.
    bool Finish();
    [[nodiscard]] Model Take()
    {
        return m_builder.Take();
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
        WrittenNumber number;
        std::string_view text;
    };

    /// What ROWS said of a row, and the last place in COLUMNS that names it.
    struct RowState
    {
        const char* lastEntry;
        std::uint32_t to;  ///< its index in the model, kObjective or kDropped
    };

    /// An entry whose row is still to be looked up. Entries wait for some others, so that their
    /// lookups wait for memory together.
    struct Entry
    {
        NameTable::Key key;
        std::string_view name;  ///< of the row
        std::string_view number;
        std::uint32_t column;
        std::uint32_t row;
    };
    static constexpr std::size_t kEntriesTogether = 16;

    struct BoundType;
    friend bool BoundNeedsValue(std::string_view type) noexcept;

    [[nodiscard]] const Model& Made() const noexcept
    {
        return m_builder.Made();
    }
    bool IsInFirstSet(FirstSet& set, const Record& record);

    // ROWS and COLUMNS: MpsColumns.cpp.
    void AddFreeRow(std::string_view name);
    bool BeginColumn(const Record& record);
    bool AddMarker(const Record& record);
    bool AddEntry(std::string_view row, std::string_view number);
    bool TakeEntry(const Entry& entry);
    bool AddCoefficient(const Entry& entry, const WrittenNumber& number);
    bool FindRow(std::string_view name, std::uint32_t& index);
    void FinishColumns();

    // RHS and RANGES: MpsRightHandSides.cpp.
    bool SetRightHandSide(std::string_view row, std::string_view text);
    void SetConstant(std::string_view row, const WrittenNumber& number);
    bool SetSide(std::uint32_t row, WrittenNumber number, std::string_view text);
    bool SetRange(std::string_view row, std::string_view text);
    bool OnlyOnce(std::vector<const char*>& places, std::uint32_t index, std::string_view row,
                  std::string_view what);
    bool FinishRows();
    bool FinishRange(const RangeEntry& range);
    void StoreSides(std::uint32_t row, const WrittenNumber& lower, const WrittenNumber& upper);

    // BOUNDS: MpsBounds.cpp.
    bool TakeBoundValue(const BoundType& type, const Record& record, WrittenNumber& number);
    bool RefuseInteger(const BoundType& type, const Record& record);
    void SetBound(const BoundType& type, std::uint32_t column, const WrittenNumber& number,
                  const Record& record);
    void StoreBounds(std::uint32_t column, const WrittenNumber& lower, const WrittenNumber& upper);
    void NoteSecondBound(const char* before, const Record& record);
    void FinishBounds();
    void FinishBound(std::uint32_t column);
    void FinishIntegers();
    static const BoundType* FindBoundType(std::string_view name) noexcept;

    Messages& m_messages;
    DiagnosticLog& m_log;
    ReadOptions m_options;
    ModelBuilder m_builder;

    NameTable m_rowNames;  ///< of all rows, those of type N too
    std::vector<RowState> m_rowStates;
    std::vector<const char*> m_rowPlaces;
    std::vector<const char*> m_rhsPlaces;
    std::vector<const char*> m_rangePlaces;
    std::vector<char> m_types;  ///< of the model's rows: L, G or E
    std::vector<WrittenNumber> m_rightHandSides;
    std::vector<RangeEntry> m_ranges;
    std::string_view m_objectiveAsked;
    bool m_hasObjective = false;

    std::string_view m_column;  ///< the one that COLUMNS is at
    std::vector<Entry> m_waiting;
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
