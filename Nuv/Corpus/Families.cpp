// The table of families, how a model of a family gets its size, and the table of hashes.
#include "Nuv/Corpus/Families.hpp"

#include "Nuv/Corpus/Makers.hpp"
#include "Nuv/Corpus/RandomModels.hpp"

#include <stdio.h>
#include <string.h>

namespace nuv::corpus
{
namespace
{
constexpr uint32_t kEach = 500;

constexpr Family kFamilies[] = {{"fixed", 16, nullptr},
                                {"plan", kEach, MakePlan},
                                {"mixed-signs", kEach, MakeMixedSigns},
                                {"two-phases", kEach, MakeTwoPhases},
                                {"covering", kEach, MakeCovering},
                                {"transport", kEach, MakeTransport},
                                {"assignment", kEach, MakeAssignment},
                                {"sparse", kEach, MakeSparse},
                                {"infeasible", kEach, MakeInfeasible},
                                {"unbounded", kEach, MakeUnbounded},
                                {"klee-minty", kEach, MakeKleeMinty},
                                {"quotients", kEach, MakeQuotients},
                                {"ties", kEach, MakeTies},
                                {"equal-coefficients", kEach, MakeEqualCoefficients},
                                {"repeated-rows", kEach, MakeRepeatedRows},
                                {"empty-rows-and-columns", kEach, MakeEmptyRowsAndColumns},
                                {"cycling", kEach, MakeCycling},
                                {"wide-exponents", kEach, MakeWideExponents},
                                {"overflowing", kEach, MakeOverflowing},
                                {"subnormal", kEach, MakeSubnormal},
                                {"special-values", kEach, MakeSpecialValues}};

constexpr Golden kHashes[] = {
#include "Nuv/Corpus/Golden.inl"
};

/// Of each random family, so many rows and three columns more.
constexpr uint32_t kSizes[] = {5, 12, 24};
constexpr uint32_t kNumSizes = sizeof kSizes / sizeof *kSizes;

/// Mostly small; one in ten is longer than the widest vectors and longer than they are in number.
void ChooseSize(uint32_t number, Model* model, Random* random)
{
    const bool isLarge = number % 10 == 9;
    model->rows = isLarge ? 16 + random->Below(48 - 15) : 1 + random->Below(12);
    model->columns = isLarge ? 16 + random->Below(64 - 15) : 1 + random->Below(14);
}

void TakeShape(const Problem& from, Model* model)
{
    model->rows = from.rows;
    model->columns = from.columns;
}
}  // namespace

uint32_t FamilyCount()
{
    return sizeof kFamilies / sizeof *kFamilies;
}

const Family& FamilyAt(uint32_t index)
{
    return kFamilies[index];
}

void MakeModel(uint32_t family, uint32_t number, Model* model)
{
    *model = {};
    const Family& made = kFamilies[family];
    Random random((static_cast<uint64_t>(family) << 32U) + number);
    ChooseSize(number, model, &random);
    Problem p = model->View();
    if (made.make)
        made.make(&p, &random);
    else
        MakeFixedModel(number, &p);
    TakeShape(p, model);
}

uint32_t NamedModelCount()
{
    return FixedModelCount() + kNumRandomFamilies * kNumSizes;
}

Name MakeNamedModel(uint32_t number, Model* model)
{
    *model = {};
    Name name = {};
    Problem p = model->View();
    if (number < FixedModelCount())
        (void)snprintf(name.text, sizeof name.text, "fixed/%s", MakeFixedModel(number, &p));
    else
    {
        const uint32_t index = number - FixedModelCount();
        const auto family = static_cast<RandomFamily>(index / kNumSizes);
        const uint32_t size = kSizes[index % kNumSizes];
        p.rows = size;
        p.columns = size + 3;
        MakeRandomModel(family, 1000 + size, &p);
        (void)snprintf(name.text, sizeof name.text, "%s-%u", NameOf(family),
                       static_cast<unsigned>(size));
    }
    TakeShape(p, model);
    return name;
}

uint32_t GoldenCount()
{
    return sizeof kHashes / sizeof *kHashes;
}

const Golden& GoldenAt(uint32_t index)
{
    return kHashes[index];
}

uint64_t GoldenHash(const char* name)
{
    for (const Golden& golden : kHashes)
        if (strcmp(golden.name, name) == 0)
            return golden.hash;
    return 0;
}
}  // namespace nuv::corpus
