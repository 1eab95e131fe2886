/// The words that open the sections of a CPLEX-LP file, in any letter case.
#pragma once

#include "Nuv/Io/Lp/LpLexer.hpp"

#include <cstdint>
#include <string_view>

namespace nuv::lp
{

enum class Section : std::uint8_t
{
    None,
    Maximize,
    Minimize,
    Constraints,
    Bounds,
    General,
    Binary,
    SemiContinuous,
    SpecialOrderedSets,
    LazyConstraints,
    UserCuts,
    GeneralConstraints,
    MultiObjectives,
    PiecewiseLinear,
    End,
};

struct Keyword
{
    Section section = Section::None;
    bool manyWords = false;  ///< "subject to": two names side by side, which is nothing else
    std::string_view text;
    Lexer after;  ///< what follows the keyword
};

/// Matches the keyword that starts at `token`; `after` is the lexer behind it.
/// @return section None if there is none.
[[nodiscard]] Keyword MatchKeyword(const Token& token, const Lexer& after) noexcept;

/// Whether a name is one of the single words that open a section.
[[nodiscard]] bool IsKeyword(std::string_view name) noexcept;

}  // namespace nuv::lp
