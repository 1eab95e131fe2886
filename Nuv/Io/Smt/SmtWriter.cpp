#include "Nuv/Io/Smt/SmtWriter.hpp"

#include "Nuv/Algebra/Rational.hpp"

#include <cmath>
#include <string_view>
#include <vector>

namespace nuv
{
namespace
{

/// Numbers of QF_LRA are decimals without sign and exponent, and quotients of these.
std::string NumberOf(double value)
{
    const Rational exact = ToRational(std::fabs(value), CoefficientMeaning::ShortestDecimal);
    std::string text = exact.Numerator().ToString() + ".0";
    if (exact.Denominator() != 1)
        text = "(/ " + text + " " + exact.Denominator().ToString() + ".0)";
    return value < 0.0 ? "(- " + text + ")" : text;
}

std::string SymbolOf(std::string_view name)
{
    constexpr char digits[] = "0123456789ABCDEF";
    std::string symbol = "|";
    for (const char c : name)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte != 0x7F && c != '|' && c != '\\' && c != '%')
            symbol += c;
        else
            symbol.append({'%', digits[byte / 16], digits[byte % 16]});
    }
    return symbol += '|';
}

class Writer
{
public:
    explicit Writer(const Model& model) : m_model(model)
    {
        for (std::uint32_t j = 0; j < model.VariableCount(); ++j)
            m_symbols.push_back(SymbolOf(model.VariableName(j)));
    }

    std::string Write()
    {
        m_text = "(set-logic QF_LRA)\n";
        for (const std::string& symbol : m_symbols)
            m_text += "(declare-fun " + symbol + " () Real)\n";
        for (std::uint32_t j = 0; j < m_model.VariableCount(); ++j)
            Assert(m_symbols[j], m_model.VariableLower()[j], m_model.VariableUpper()[j]);
        for (std::uint32_t i = 0; i < m_model.RowCount(); ++i)
            Assert(SumOfRow(i), m_model.RowLower()[i], m_model.RowUpper()[i]);
        m_text += "(define-fun %objective () Real " + Objective() + ")\n(check-sat)\n";
        return std::move(m_text);
    }

private:
    void Assert(const std::string& sum, double lower, double upper)
    {
        if (lower == upper)
            return AssertOne("=", sum, lower);
        if (std::isfinite(lower))
            AssertOne(">=", sum, lower);
        if (std::isfinite(upper))
            AssertOne("<=", sum, upper);
    }
    void AssertOne(const char* relation, const std::string& sum, double side)
    {
        m_text.append("(assert (").append(relation).append(" ").append(sum).append(" ");
        m_text.append(NumberOf(side)).append("))\n");
    }

    [[nodiscard]] std::string Term(std::uint32_t column, double coefficient) const
    {
        return "(* " + NumberOf(coefficient) + " " + m_symbols[column] + ")";
    }

    /// The sum of terms, of which there may be one or none.
    static std::string SumOf(const std::vector<std::string>& terms)
    {
        if (terms.size() < 2)
            return terms.empty() ? "0.0" : terms[0];
        std::string sum = "(+";
        for (const std::string& term : terms)
            sum.append(" ").append(term);
        return sum += ")";
    }

    [[nodiscard]] std::string SumOfRow(std::uint32_t row) const
    {
        std::vector<std::string> terms;
        for (std::size_t k = 0; k < m_model.RowColumns(row).size(); ++k)
            terms.push_back(Term(m_model.RowColumns(row)[k], m_model.RowCoefficients(row)[k]));
        return SumOf(terms);
    }

    [[nodiscard]] std::string Objective() const
    {
        std::vector<std::string> terms;
        for (std::uint32_t j = 0; j < m_model.VariableCount(); ++j)
            if (m_model.Objective()[j] != 0.0)
                terms.push_back(Term(j, m_model.Objective()[j]));
        if (m_model.ObjectiveConstant() != 0.0)
            terms.push_back(NumberOf(m_model.ObjectiveConstant()));
        return SumOf(terms);
    }

    const Model& m_model;
    std::vector<std::string> m_symbols;
    std::string m_text;
};

}  // namespace

std::string WriteSmt(const Model& model)
{
    return Writer(model).Write();
}

}  // namespace nuv
