/// The model that an LP file states. The grammar hands over what it has understood, one term, limit
/// or bound at a time; here repeated terms are added up, numbers checked, and what is odd about the
/// model said. Every name is a part of the text. A function that returns bool has reported an error
/// when it returns false.
#pragma once

#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Io/Lp/LpMessages.hpp"
#include "Nuv/Model/ModelBuilder.hpp"

#include <cstdint>
#include <string_view>
#include <vector>

namespace nuv::lp
{

/// A number that limits a row or variable, infinite ones included, and where it stands.
struct Limit
{
    WrittenNumber number;
    const char* at = nullptr;
};

class Builder
{
public:
    explicit Builder(Messages& messages) : m_messages(messages), m_log(messages.Log()) {}

    void SetName(std::string_view name)
    {
        m_builder.SetName(name);
    }
    void SetSense(Sense sense) noexcept
    {
        m_builder.SetSense(sense);
    }
    void SetObjectiveName(std::string_view name)
    {
        m_builder.SetObjectiveName(name);
    }

    /// A row, with an empty label if it has none; `at` is where it starts. Terms go into the
    /// objective before the first one, into the last one afterwards.
    bool EndObjective(const WrittenNumber& constant);
    bool BeginRow(std::string_view label, const char* at);
    bool AddTerm(std::string_view name, WrittenNumber coefficient);
    /// Takes `body relation limit`, where the body had a constant besides its terms, into the last
    /// row.
    bool SetLimit(TokenKind relation, const Limit& limit, const WrittenNumber& bodyConstant);
    bool EndRow(const WrittenNumber& bodyConstant);
    /// Takes in the terms that wait; also to be called where a row did not come to its end.
    bool TakeTerms();

    /// The column of a name in Bounds, new or not.
    bool FindBounded(std::string_view name, std::uint32_t& column);
    bool SetBound(std::uint32_t column, TokenKind relation, const Limit& limit);
    bool SetFree(std::string_view name);
    /// A variable of General or, with `isBinary`, of Binary, taken for a continuous one.
    bool AddInteger(std::string_view name, bool isBinary);

    /// The model, when all of the file has been handed over.
    [[nodiscard]] Model Finish();

private:
    /// Which bounds a file has given a variable, and where it did so last.
    struct BoundPlace
    {
        const char* at = nullptr;
        bool lower = false;
        bool upper = false;
    };

    /// The last row that a column occurs in, and which of that row's entries it is.
    struct Mark
    {
        std::uint32_t row;
        std::uint32_t entry;
    };

    /// A term whose variable is still to be looked up. Terms wait for some others, so that their
    /// lookups wait for memory together.
    struct Term
    {
        NameTable::Key key;
        std::string_view name;
        WrittenNumber coefficient;
        std::uint32_t column;
    };
    static constexpr std::size_t kTermsTogether = 32;

    [[nodiscard]] const Model& Made() const noexcept
    {
        return m_builder.Made();
    }
    [[nodiscard]] std::uint32_t LastRow() const noexcept
    {
        return Made().RowCount() - 1;
    }
    bool InternVariable(std::string_view name, const NameTable::Key& key, std::uint32_t& column);
    bool TakeTerm(const Term& term);
    bool AddRepeated(const Term& term);
    void NoteRepeat(std::string_view name);
    bool LimitOf(TokenKind relation, const Limit& limit, WrittenNumber& number);
    void CheckRow(const char* at);
    void SetBinary(std::uint32_t column, std::string_view name);
    void CheckBounds();
    void CheckNames();

    Messages& m_messages;
    DiagnosticLog& m_log;
    ModelBuilder m_builder;
    std::vector<Term> m_terms;
    std::vector<Mark> m_marks;
    std::vector<const char*> m_variablePlaces;  ///< where each is named first
    std::vector<const char*> m_rowPlaces;
    std::vector<BoundPlace> m_boundPlaces;
    bool m_rowHasZeros = false;
};

}  // namespace nuv::lp
