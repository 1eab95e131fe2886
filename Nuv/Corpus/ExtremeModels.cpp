// Families of data that no one should ask a solver for: what comes out is still the same
// everywhere.
#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Makers.hpp"

namespace nuv::corpus
{
namespace
{
/// ±0, subnormals, pivots too small to have a reciprocal, the largest numbers, infinities, NaN.
float SpecialValueOfSelfTest(Random* random)
{
    static const uint32_t kPatterns[] = {
        0x00000000U, 0x80000000U,  // ±0
        0x00000001U, 0x80000001U,  // the smallest subnormals
        0x007FFFFFU, 0x807FFFFFU,  // the largest subnormals
        0x00200000U, 0x001FFFFFU,  // 2^-128 has a reciprocal, the number below it has none
        0x00800000U, 0x80800000U,  // the smallest normal numbers
        0x7F7FFFFFU, 0xFF7FFFFFU,  // the largest finite numbers
        0x7F800000U, 0xFF800000U,  // infinities
        0x7FC00000U, 0x3F800000U};
    return FloatOfBits(kPatterns[random->Below(sizeof kPatterns / sizeof *kPatterns)]);
}
}  // namespace

/// Every number of a size of its own.
void MakeWideExponents(Problem* p, Random* random)
{
    Fill(
        p, [random] { return Signed(random, random->Between(-40, 40)); },
        [random] { return Positive(random, random->Between(-40, 40)); },
        [random] { return Signed(random, random->Between(-40, 40)); });
}

/// Products and sums beyond the largest number.
void MakeOverflowing(Problem* p, Random* random)
{
    Fill(
        p, [random] { return Signed(random, random->Between(50, 127)); },
        [random] { return Signed(random, random->Between(90, 127)); },
        [random] { return Signed(random, random->Between(60, 127)); });
}

/// Data and results around the smallest normal number.
void MakeSubnormal(Problem* p, Random* random)
{
    Fill(
        p, [random] { return Signed(random, random->Between(-3, 3)); },
        [random] { return Positive(random, random->Between(-135, -120)); },
        [random] { return Signed(random, random->Between(-135, -120)); });
}

void MakeSpecialValues(Problem* p, Random* random)
{
    MakeTwoPhases(p, random);
    Sprinkle(p->A, p->NumCoefficients(), 4, SpecialValueOfSelfTest, random);
    Sprinkle(p->b, p->rows, 6, SpecialValueOfSelfTest, random);
    Sprinkle(p->c, p->columns, 6, SpecialValueOfSelfTest, random);
}
}  // namespace nuv::corpus
