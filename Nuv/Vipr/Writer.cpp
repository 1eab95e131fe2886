#include "Nuv/Vipr/Text.hpp"

namespace nuv::vipr
{
namespace
{

void AppendName(std::string& text, std::string_view name)
{
    constexpr char kDigits[] = "0123456789ABCDEF";
    for (const char c : name)
    {
        const auto byte = static_cast<unsigned char>(c);
        if (byte > ' ' && byte != 0x7F && c != '%')
            text += c;
        else
            text.append({'%', kDigits[byte / 16], kDigits[byte % 16]});
    }
}

class Writer
{
public:
    std::string Write(const Certificate& certificate)
    {
        const Problem& problem = certificate.problem;
        PutHead(problem);
        Put("CON ", problem.constraints.size(), ' ', problem.bounds, '\n');
        for (const Constraint& constraint : problem.constraints)
        {
            PutRelation(constraint);
            PutTerms(constraint.terms);
            m_text += '\n';
        }
        PutGoal(certificate);
        PutVectors("SOL ", "point", certificate.points);
        if (certificate.goal == Goal::Unbounded)
            PutVectors("RAY ", "ray", certificate.rays);
        Put("DER ", certificate.derivations.size(), '\n');
        for (const Derivation& derivation : certificate.derivations)
            PutDerivation(derivation, problem.objective);
        return std::move(m_text);
    }

private:
    void PutOne(std::string_view text)
    {
        m_text += text;
    }
    void PutOne(char c)
    {
        m_text += c;
    }
    void PutOne(std::size_t number)
    {
        m_text += std::to_string(number);
    }
    template <class... Pieces>
    void Put(const Pieces&... pieces)
    {
        (PutOne(pieces), ...);
    }

    void PutHead(const Problem& problem)
    {
        Put("VER 1.0\nVAR ", problem.variables.size(), '\n');
        for (const std::string& name : problem.variables)
        {
            AppendName(m_text, name);
            m_text += '\n';
        }
        Put("INT 0\nOBJ ", std::string_view(problem.maximize ? "max" : "min"), '\n');
        PutTerms(problem.objective);
        m_text += '\n';
    }

    void PutTerms(const Terms& terms)
    {
        Put(terms.size());
        for (const Term& term : terms)
            Put("  ", term.index, ' ', std::string_view(ToString(term.value)));
    }

    void PutRelation(const Constraint& constraint)
    {
        AppendName(m_text, constraint.label);
        constexpr char kLetters[] = {'L', 'E', 'G'};
        Put(' ', kLetters[static_cast<std::size_t>(constraint.relation)], ' ',
            std::string_view(ToString(constraint.side)), "  ");
    }

    void PutGoal(const Certificate& certificate)
    {
        switch (certificate.goal)
        {
        case Goal::Infeasible:
            m_text += "RTP infeas\n";
            break;
        case Goal::Range:
            m_text += "RTP range ";
            m_text += certificate.lower ? ToString(*certificate.lower) : "-inf";
            m_text += ' ';
            m_text += certificate.upper ? ToString(*certificate.upper) : "inf";
            m_text += '\n';
            break;
        case Goal::Unbounded:
            m_text += "RTP unbounded\n";
            break;
        }
    }

    void PutVectors(std::string_view keyword, std::string_view name,
                    const std::vector<Terms>& vectors)
    {
        Put(keyword, vectors.size(), '\n');
        for (const Terms& vector : vectors)
        {
            Put(name, ' ');
            PutTerms(vector);
            m_text += '\n';
        }
    }

    void PutDerivation(const Derivation& derivation, const Terms& objective)
    {
        PutRelation(derivation.constraint);
        if (!objective.empty() && derivation.constraint.terms == objective)
            m_text += "OBJ";
        else
            PutTerms(derivation.constraint.terms);
        switch (derivation.reason)
        {
        case Reason::Assumption:
            m_text += "  { asm";
            break;
        case Reason::Combination:
            m_text += "  { lin ";
            PutTerms(derivation.multipliers);
            break;
        case Reason::Rounding:
            m_text += "  { rnd ";
            PutTerms(derivation.multipliers);
            break;
        case Reason::Split:
            m_text += "  { uns";
            for (const std::size_t index : derivation.split)
                Put(' ', index);
            break;
        }
        m_text += " } ";
        m_text += derivation.lastUser ? std::to_string(*derivation.lastUser) : "-1";
        m_text += '\n';
    }

    std::string m_text;
};

}  // namespace

std::string Write(const Certificate& certificate)
{
    return Writer().Write(certificate);
}

}  // namespace nuv::vipr
