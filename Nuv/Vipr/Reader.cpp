/// Words between blanks, one after the other. The first thing that is not as it should be is kept,
/// and ends the loops.
#include "Nuv/Vipr/Text.hpp"

#include <algorithm>
#include <charconv>
#include <limits>

namespace nuv::vipr
{
namespace
{

constexpr std::string_view kBlanks = " \t\n\v\f\r";

bool IsDigits(std::string_view text)
{
    return !text.empty() && std::ranges::all_of(text, [](char c) { return c >= '0' && c <= '9'; });
}

int HexDigit(char c)
{
    const std::string_view digits = "0123456789abcdef";
    const char lower = c >= 'A' && c <= 'F' ? static_cast<char>(c - 'A' + 'a') : c;
    const std::size_t at = digits.find(lower);
    return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

/// Takes %20 and the like back.
std::string Decoded(std::string_view word)
{
    std::string name;
    for (std::size_t k = 0; k < word.size(); ++k)
    {
        const bool isCode = word[k] == '%' && k + 2 < word.size() && HexDigit(word[k + 1]) >= 0 &&
                            HexDigit(word[k + 2]) >= 0;
        if (!isCode)
        {
            name += word[k];
            continue;
        }
        name += static_cast<char>(16 * HexDigit(word[k + 1]) + HexDigit(word[k + 2]));
        k += 2;
    }
    return name;
}

/// Digits as an integer; the leading zeros do not make it octal.
Integer ToInteger(std::string_view digits)
{
    const std::size_t first = std::min(digits.find_first_not_of('0'), digits.size() - 1);
    return Integer(std::string(digits.substr(first)));
}

/// -12, 0.5 or 2/3. @return nothing if the word is no number.
std::optional<Rational> ToValue(std::string_view word)
{
    const bool negative = word.starts_with('-');
    word.remove_prefix(negative ? 1 : 0);
    const std::size_t mark = std::min(word.find_first_of("./"), word.size());
    const std::string_view whole = word.substr(0, mark);
    if (!IsDigits(whole))
        return std::nullopt;
    Integer numerator = ToInteger(whole);
    Integer denominator = 1;
    if (mark != word.size())
    {
        const std::string_view rest = word.substr(mark + 1);
        if (!IsDigits(rest))
            return std::nullopt;
        if (word[mark] == '/')
            denominator = ToInteger(rest);
        else
        {
            denominator = Power(10, static_cast<unsigned>(rest.size()));
            numerator = numerator * denominator + ToInteger(rest);
        }
        if (denominator == 0)
            return std::nullopt;
    }
    return Rational(negative ? Integer(-numerator) : numerator, denominator);
}

class Reader
{
public:
    Reader(std::string_view text, const std::string& file) : m_text(text), m_file(file)
    {
        while (m_text.substr(m_at).starts_with('%'))
            m_at = std::min(m_text.find('\n', m_at), m_text.size() - 1) + 1;
    }

    Result<Certificate> Run()
    {
        ReadProblem();
        ReadGoal();
        m_certificate.points = ReadVectors("SOL");
        if (m_certificate.goal == Goal::Unbounded)
            m_certificate.rays = ReadVectors("RAY");
        Expect("DER");
        const std::size_t derivations = ReadIndex();
        for (std::size_t k = 0; k < derivations && m_error.empty(); ++k)
            m_certificate.derivations.push_back(
                ReadDerivation(m_certificate.problem.constraints.size() + k));
        if (m_error.empty() && !Next().empty())
            Fail();
        if (m_error.empty())
            return std::move(m_certificate);
        Error error;
        error.code = "vipr.malformed";
        error.text = m_error;
        error.file = m_file;
        const std::string_view before = m_text.substr(0, m_errorAt);
        error.line = 1 + static_cast<std::size_t>(std::ranges::count(before, '\n'));
        error.column = m_errorAt - (before.rfind('\n') + 1) + 1;
        return error;
    }

private:
    /// The next word; empty at the end of the text.
    std::string_view Next()
    {
        m_begin = std::min(m_text.find_first_not_of(kBlanks, m_at), m_text.size());
        m_at = std::min(m_text.find_first_of(kBlanks, m_begin), m_text.size());
        return m_text.substr(m_begin, m_at - m_begin);
    }

    void Fail(std::string text = {})
    {
        if (!m_error.empty())
            return;
        m_errorAt = m_begin;
        const std::string_view word =
            m_text.substr(m_begin, std::min<std::size_t>(m_at - m_begin, 40));
        m_error = !text.empty()  ? std::move(text)
                  : word.empty() ? std::string("it ends too early")
                                 : std::string("'").append(word).append("' is out of place");
    }

    /// The place in `words` of the next word, which must be one of them.
    std::size_t Choose(std::initializer_list<std::string_view> words)
    {
        const auto found = std::ranges::find(words, Next());
        if (found != words.end())
            return static_cast<std::size_t>(found - words.begin());
        Fail();
        return 0;
    }
    void Expect(std::string_view word)
    {
        (void)Choose({word});
    }

    std::string_view ReadWord()
    {
        const std::string_view word = Next();
        if (word.empty())
            Fail();
        return word;
    }

    /// An index below `end`.
    std::size_t ReadIndex(std::size_t end = std::numeric_limits<std::size_t>::max())
    {
        const std::string_view word = Next();
        std::size_t index = 0;
        const std::errc fault = std::from_chars(word.data(), word.data() + word.size(), index).ec;
        if (!IsDigits(word) || fault != std::errc{})
            Fail();
        else if (index >= end)
            Fail("the index " + std::to_string(index) + " is too large");
        return m_error.empty() ? index : 0;
    }

    Rational ReadValue()
    {
        std::optional<Rational> value = ToValue(Next());
        if (!value)
            Fail();
        return value.value_or(Rational(0));
    }

    Terms ReadTerms(std::size_t end)
    {
        Terms terms;
        const std::size_t count = ReadIndex();
        for (std::size_t k = 0; k < count && m_error.empty(); ++k)
        {
            const std::size_t index = ReadIndex(end);
            terms.push_back({index, ReadValue()});
        }
        std::ranges::sort(terms, {}, &Term::index);
        if (std::ranges::adjacent_find(terms, {}, &Term::index) != terms.end())
            Fail("an index stands twice");
        std::erase_if(terms, [](const Term& term) { return term.value == 0; });
        return terms;
    }

    Constraint ReadConstraint()
    {
        const Problem& problem = m_certificate.problem;
        Constraint constraint;
        constraint.label = ReadWord();
        constexpr Relation kRelations[] = {Relation::AtMost, Relation::Equal, Relation::AtLeast};
        constraint.relation = kRelations[Choose({"L", "E", "G"})];
        constraint.side = ReadValue();
        const std::size_t before = m_at;
        if (Next() == "OBJ")
        {
            constraint.terms = problem.objective;
            return constraint;
        }
        m_at = before;
        constraint.terms = ReadTerms(problem.variables.size());
        return constraint;
    }

    void ReadProblem()
    {
        Problem& problem = m_certificate.problem;
        Expect("VER");
        Expect("1.0");
        Expect("VAR");
        const std::size_t variables = ReadIndex();
        for (std::size_t k = 0; k < variables && m_error.empty(); ++k)
            problem.variables.push_back(Decoded(ReadWord()));
        Expect("INT");
        Expect("0");
        Expect("OBJ");
        problem.maximize = Choose({"min", "max"}) == 1;
        problem.objective = ReadTerms(problem.variables.size());
        Expect("CON");
        const std::size_t constraints = ReadIndex();
        problem.bounds = ReadIndex();
        for (std::size_t k = 0; k < constraints && m_error.empty(); ++k)
            problem.constraints.push_back(ReadConstraint());
    }

    /// A number, or nothing where the word is the infinity of either sign.
    std::optional<Rational> ReadEnd()
    {
        const std::size_t before = m_at;
        const std::string_view word = Next();
        if (word == "-inf" || word == "inf")
            return std::nullopt;
        m_at = before;
        return ReadValue();
    }

    void ReadGoal()
    {
        Expect("RTP");
        constexpr Goal kGoals[] = {Goal::Infeasible, Goal::Range, Goal::Unbounded};
        m_certificate.goal = kGoals[Choose({"infeas", "range", "unbounded"})];
        if (m_certificate.goal != Goal::Range)
            return;
        m_certificate.lower = ReadEnd();
        m_certificate.upper = ReadEnd();
    }

    std::vector<Terms> ReadVectors(std::string_view keyword)
    {
        std::vector<Terms> vectors;
        Expect(keyword);
        const std::size_t count = ReadIndex();
        for (std::size_t k = 0; k < count && m_error.empty(); ++k)
        {
            (void)ReadWord();  // its name
            vectors.push_back(ReadTerms(m_certificate.problem.variables.size()));
        }
        return vectors;
    }

    /// The derivation of constraint `index`.
    Derivation ReadDerivation(std::size_t index)
    {
        Derivation derivation;
        derivation.constraint = ReadConstraint();
        Expect("{");
        constexpr Reason kReasons[] = {Reason::Assumption, Reason::Combination, Reason::Rounding,
                                       Reason::Split};
        derivation.reason = kReasons[Choose({"asm", "lin", "rnd", "uns"})];
        if (derivation.reason == Reason::Combination || derivation.reason == Reason::Rounding)
            derivation.multipliers = ReadTerms(index);
        if (derivation.reason == Reason::Split)
            for (std::size_t& place : derivation.split)
                place = ReadIndex(index);
        Expect("}");
        const std::size_t before = m_at;
        if (Next() == "-1")
            return derivation;
        m_at = before;
        derivation.lastUser = ReadIndex();
        return derivation;
    }

    std::string_view m_text;
    const std::string& m_file;
    std::size_t m_at = 0;     ///< behind the last word
    std::size_t m_begin = 0;  ///< of the last word
    std::string m_error;
    std::size_t m_errorAt = 0;
    Certificate m_certificate;
};

}  // namespace

Result<Certificate> Read(std::string_view text, const std::string& file)
{
    return Reader(text, file).Run();
}

}  // namespace nuv::vipr
