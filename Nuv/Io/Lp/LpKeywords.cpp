/// Two tables, of single words and of pairs, behind a test of the first letter that most names
/// fail.
#include "Nuv/Io/Lp/LpKeywords.hpp"

namespace nuv::lp
{
namespace
{

struct Word
{
    std::string_view text;
    Section section;
};

constexpr Word kWords[] = {
    {"st", Section::Constraints},
    {"s.t.", Section::Constraints},
    {"st.", Section::Constraints},
    {"bounds", Section::Bounds},
    {"bound", Section::Bounds},
    {"end", Section::End},
    {"general", Section::General},
    {"generals", Section::General},
    {"gen", Section::General},
    {"integer", Section::General},
    {"integers", Section::General},
    {"int", Section::General},
    {"binary", Section::Binary},
    {"binaries", Section::Binary},
    {"bin", Section::Binary},
    {"semi", Section::SemiContinuous},
    {"semis", Section::SemiContinuous},
    {"sos", Section::SpecialOrderedSets},
    {"sos1", Section::SpecialOrderedSets},
    {"sos2", Section::SpecialOrderedSets},
    {"pwlobj", Section::PiecewiseLinear},
    {"max", Section::Maximize},
    {"maximize", Section::Maximize},
    {"maximise", Section::Maximize},
    {"maximum", Section::Maximize},
    {"min", Section::Minimize},
    {"minimize", Section::Minimize},
    {"minimise", Section::Minimize},
    {"minimum", Section::Minimize},
};

struct Pair
{
    std::string_view first;
    std::string_view second;
    bool hyphen;
    Section section;
};

constexpr Pair kPairs[] = {
    {"subject", "to", false, Section::Constraints},
    {"such", "that", false, Section::Constraints},
    {"semi", "continuous", true, Section::SemiContinuous},
    {"semi", "integer", true, Section::SemiContinuous},
    {"multi", "objectives", true, Section::MultiObjectives},
    {"lazy", "constraints", false, Section::LazyConstraints},
    {"user", "cuts", false, Section::UserCuts},
    {"general", "constraints", false, Section::GeneralConstraints},
};

bool MayStartKeyword(std::string_view name) noexcept
{
    constexpr std::string_view kFirstLetters = "begilmpsuBEGILMPSU";
    return name.size() >= 2 && name.size() <= 8 &&
           kFirstLetters.find(name[0]) != std::string_view::npos;
}

Section FindWord(std::string_view name) noexcept
{
    for (const Word& word : kWords)
    {
        if (EqualsIgnoringCase(name, word.text))
            return word.section;
    }
    return Section::None;
}

/// The second half of a pair, on the same line.
bool FollowsAs(const Pair& pair, Lexer& lexer) noexcept
{
    Token next = lexer.Next();
    if (pair.hyphen)
    {
        if (next.kind != TokenKind::Minus || !next.glued)
            return false;
        next = lexer.Next();
        if (!next.glued)
            return false;
    }
    return !next.firstOfLine && next.kind == TokenKind::Name &&
           EqualsIgnoringCase(next.text, pair.second);
}

}  // namespace

Keyword MatchKeyword(const Token& token, const Lexer& after) noexcept
{
    Keyword keyword{Section::None, false, token.text, after};
    if (token.kind != TokenKind::Name || !MayStartKeyword(token.text))
        return keyword;
    for (const Pair& pair : kPairs)
    {
        if (!EqualsIgnoringCase(token.text, pair.first))
            continue;
        Lexer lexer = after;
        if (!FollowsAs(pair, lexer))
            continue;
        const std::size_t length = static_cast<std::size_t>(lexer.Position() - token.Begin());
        return {pair.section, true, {token.Begin(), length}, lexer};
    }
    keyword.section = FindWord(token.text);
    return keyword;
}

bool IsKeyword(std::string_view name) noexcept
{
    return MayStartKeyword(name) && FindWord(name) != Section::None;
}

}  // namespace nuv::lp
