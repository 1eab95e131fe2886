/// What the reader of the LP format says about words that have no place where they stand, and where
/// in the model that is. Every function returns false, so that a parser can return what it says.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Io/Lp/LpKeywords.hpp"
#include "Nuv/Io/Lp/LpLexer.hpp"

#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace nuv::lp
{

enum class Place : std::uint8_t
{
    Start,
    Objective,
    Rows,
    Bounds,
    Integers
};

class Messages
{
public:
    /// `text` is the whole file and outlives this object.
    Messages(std::string_view text, std::string_view file) : m_log(file, text), m_text(text) {}

    [[nodiscard]] DiagnosticLog& Log() noexcept
    {
        return m_log;
    }

    // Where the parser is.
    void Enter(Place place) noexcept
    {
        m_place = place;
    }
    /// `name` is empty for a row without a label; `number` counts from 1.
    void EnterRow(std::string_view name, std::uint32_t number) noexcept
    {
        m_row = name;
        m_rowNumber = number;
    }
    [[nodiscard]] Place At() const noexcept
    {
        return m_place;
    }
    /// That not every program reads such a number.
    void NoteQuotient(const Token& number);

    /// "in Bounds", "in row 'wood'".
    [[nodiscard]] std::string Where() const;

    // Errors; `next` is the word behind `token`.
    bool Unexpected(const Token& token, const Token& next);
    bool SecondRelation(const Token& token);
    bool RowWithoutRelation(const char* begin, bool isBareName, const Token& token,
                            const Token& next);
    bool Refuse(const Keyword& keyword);
    /// The first word is not Maximize or Minimize: the best guess at what the file is instead.
    bool NotAModel(const Token& token, Section section);

    bool Fail(const Token& token, std::string code, std::string text, std::string hint = {})
    {
        return m_log.Fail(token.Begin(), std::move(code), std::move(text), std::move(hint));
    }

private:
    bool NumberOutOfRange(const Token& token);
    bool UnexpectedName(const Token& token);
    bool UnexpectedNumber(const Token& token, const Token& next);
    bool UnexpectedSign(const Token& token);

    DiagnosticLog m_log;
    std::string_view m_text;
    Place m_place = Place::Start;
    std::string_view m_row;
    std::uint32_t m_rowNumber = 0;
};

}  // namespace nuv::lp
