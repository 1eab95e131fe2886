#include "Nuv/Io/Smt/SmtWriter.hpp"

#include "Nuv/Model/WrittenNumber.hpp"

#include <cmath>
#include <string_view>
#include <vector>

namespace nuv
{
namespace
{

/// Numbers of QF_LRA are decimals without sign and exponent, and quotients of these.
std::string TextOf(const WrittenNumber& number)
{
    const Rational exact = number.Exactly();
    std::string text = Abs(exact.Numerator()).ToString() + ".0";
    if (exact.Denominator() != 1)
        text = "(/ " + text + " " + exact.Denominator().ToString() + ".0)";
    return exact.Sign() < 0 ? "(- " + text + ")" : text;
}

std::string SymbolOf(std::string_view name)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    std::string symbol = "|";
    for (const char c : name)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte >= ' ' && byte != 0x7F && c != '|' && c != '\\' && c != '%')
            symbol += c;
        else
            symbol.append({'%', kDigits[byte / 16], kDigits[byte % 16]});
    }
    return symbol += '|';
}

class SmtWriter
{
public:
    explicit SmtWriter(const Model& model) : m_model(model)
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
            Assert(m_symbols[j], LowerOf(m_model, m_model.VariableAt(j)),
                   UpperOf(m_model, m_model.VariableAt(j)));
        for (std::uint32_t i = 0; i < m_model.RowCount(); ++i)
            Assert(SumOfRow(i), LowerOf(m_model, m_model.RowAt(i)),
                   UpperOf(m_model, m_model.RowAt(i)));
        m_text += "(define-fun %objective () Real " + Objective() + ")\n(check-sat)\n";
        return std::move(m_text);
    }

private:
    void Assert(const std::string& sum, const WrittenNumber& lower, const WrittenNumber& upper)
    {
        if (lower == upper)
            return AssertOne("=", sum, lower);
        if (std::isfinite(lower.value))
            AssertOne(">=", sum, lower);
        if (std::isfinite(upper.value))
            AssertOne("<=", sum, upper);
    }
    void AssertOne(const char* relation, const std::string& sum, const WrittenNumber& side)
    {
        m_text.append("(assert (").append(relation).append(" ").append(sum).append(" ");
        m_text.append(TextOf(side)).append("))\n");
    }

    [[nodiscard]] std::string Term(std::uint32_t column, const WrittenNumber& coefficient) const
    {
        return "(* " + TextOf(coefficient) + " " + m_symbols[column] + ")";
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
        {
            const std::uint32_t column = m_model.RowColumns(row)[k];
            terms.push_back(Term(column, NumberAt(m_model, {NumberPlace::Of::Entry, row, column},
                                                  m_model.RowCoefficients(row)[k])));
        }
        return SumOf(terms);
    }

    [[nodiscard]] std::string Objective() const
    {
        std::vector<std::string> terms;
        for (std::uint32_t j = 0; j < m_model.VariableCount(); ++j)
            if (m_model.Objective()[j] != 0.0)
                terms.push_back(Term(j, CostOf(m_model, j)));
        if (m_model.ObjectiveConstant() != 0.0)
            terms.push_back(TextOf(ConstantOf(m_model)));
        return SumOf(terms);
    }

    const Model& m_model;
    std::vector<std::string> m_symbols;
    std::string m_text;
};

}  // namespace

std::string WriteSmt(const Model& model)
{
    return SmtWriter(model).Write();
}

}  // namespace nuv
