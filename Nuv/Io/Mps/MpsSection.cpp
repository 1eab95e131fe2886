#include "Nuv/Io/Mps/MpsSection.hpp"

#include "Nuv/Io/LetterCase.hpp"

namespace nuv::mps
{
namespace
{

struct SectionWord
{
    std::string_view word;
    Section section;
};

constexpr SectionWord kSections[] = {
    {"name", Section::Name},        {"objsense", Section::ObjectiveSense},
    {"rows", Section::Rows},        {"objname", Section::ObjectiveName},
    {"columns", Section::Columns},  {"rhs", Section::RightHandSides},
    {"ranges", Section::Ranges},    {"bounds", Section::Bounds},
    {"endata", Section::End},       {"quadobj", Section::Refused},
    {"qmatrix", Section::Refused},  {"qsection", Section::Refused},
    {"qcmatrix", Section::Refused}, {"sos", Section::Refused},
    {"sos1", Section::Refused},     {"sos2", Section::Refused},
    {"sets", Section::Refused},     {"indicators", Section::Refused},
    {"csection", Section::Refused}, {"gencons", Section::Refused},
    {"pwlobj", Section::Refused},   {"lazycons", Section::Refused},
    {"usercuts", Section::Refused}, {"branch", Section::Refused},
    {"multiobj", Section::Refused},
};

}  // namespace

Section FindSection(std::string_view word) noexcept
{
    for (const SectionWord& known : kSections)
    {
        if (EqualsIgnoringCase(word, known.word))
            return known.section;
    }
    return Section::Unknown;
}

}  // namespace nuv::mps
