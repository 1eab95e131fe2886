// The families of the benchmarks, one function each.
#include "Nuv/Corpus/BenchmarkModels.hpp"

#include "Nuv/Corpus/Random.hpp"

namespace nuv::corpus
{
namespace
{
using Draw = Draws<XorShift>;

void FillPositive(Problem* p, Draw* draw)
{
    Fill(
        p, [draw] { return draw->Integer(1, 9); }, [draw] { return draw->Integer(2000, 9999); },
        [draw] { return draw->Integer(1, 9); });
}

/// Row 0 with positive coefficients alone: whatever the other rows allow, no variable grows without
/// end.
void FillBudgetRow(Problem* p, Draw* draw, float budget)
{
    Fill(p->Row(0), p->columns, [draw] { return draw->Integer(1, 9); });
    p->b[0] = budget;
}

void FillMixedSigns(Problem* p, Draw* draw)
{
    Fill(
        p, [draw] { return draw->Integer(-9, 9); }, [draw] { return draw->Integer(100, 9999); },
        [draw] { return draw->Integer(-9, 9); });
    FillBudgetRow(p, draw, 99999.0F);
}

void FillNonDegenerate(Problem* p, Draw* draw)
{
    Fill(
        p, [draw] { return draw->Integer(-99, 99); },
        [draw] { return draw->Integer(5000000, 9999999); },
        [draw] { return draw->Integer(500, 999); });
    FillBudgetRow(p, draw, 9999991.0F);
}

/// The point is kept where the costs will stand.
void FillPhaseI(Problem* p, Draw* draw)
{
    const float* const point = p->c;
    Fill(p->c, p->columns, [draw] { return draw->Integer(1, 3); });
    for (uint32_t i = 0; i < p->rows; ++i)
    {
        // At least one row of each direction: the first calls for Phase I, the last bounds all.
        const bool isLower = i == 0 || (i + 1 < p->rows && draw->Chance(40));
        float activity = 0.0F;
        for (uint32_t j = 0; j < p->columns; ++j)
        {
            const float a = draw->Integer(1, 9);
            p->Row(i)[j] = isLower ? -a : a;
            activity += p->Row(i)[j] * point[j];
        }
        // Less than any activity: what calls for Phase I must not be let off by it.
        p->b[i] = activity + draw->Integer(0, static_cast<int32_t>(p->columns) - 1);
    }
    Fill(p->c, p->columns, [draw] { return draw->Integer(-9, 9); });
}

/// Each column joins a random row of the first half and one of the second; the entries are +1 and
/// `second`.
void JoinHalves(Problem* p, Draw* draw, float second)
{
    const uint32_t half = p->rows / 2;
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        // The first columns reach every row once.
        const uint32_t first = j < half ? j : draw->Below(half);
        const uint32_t last = half + (j < p->rows - half ? j : draw->Below(p->rows - half));
        p->Row(first)[j] = 1.0F;
        p->Row(last)[j] = second;
    }
}

void FillAssignment(Problem* p, Draw* draw)
{
    JoinHalves(p, draw, 1.0F);
    Fill(p->b, p->rows, [] { return 1.0F; });
    Fill(p->c, p->columns, [draw] { return draw->Integer(1, 99); });
}

void FillTransport(Problem* p, Draw* draw)
{
    JoinHalves(p, draw, -1.0F);
    // Supplies and demands are those of a shipment that exists, with some room in the supplies.
    Fill(p->b, p->rows / 2, [draw] { return draw->Integer(0, 9); });
    for (uint32_t j = 0; j < p->columns; ++j)
    {
        const float shipped = draw->Integer(1, 9);
        for (uint32_t i = 0; i < p->rows; ++i)
            p->b[i] += p->Row(i)[j] * shipped;
        p->c[j] = -draw->Integer(1, 99);
    }
}

void FillProductionMix(Problem* p, Draw* draw)
{
    for (uint32_t i = 0; i < p->rows; ++i)
        for (uint32_t j = 0; j < p->columns; ++j)
            // Every product needs at least one resource.
            if (i == j % p->rows || draw->Chance(60))
                p->Row(i)[j] = draw->Integer(1, 9);
    Fill(p->b, p->rows, [draw] { return draw->Integer(40, 900); });
    Fill(p->c, p->columns, [draw] { return draw->Integer(1, 40); });
}

void FillDiet(Problem* p, Draw* draw)
{
    for (uint32_t i = 0; i < p->rows; ++i)
        for (uint32_t j = 0; j < p->columns; ++j)
            // Every nutrient is in at least one food.
            if (j == i % p->columns || draw->Chance(70))
                p->Row(i)[j] = -draw->Integer(1, 40);
    Fill(p->b, p->rows, [draw] { return -draw->Integer(10, 3000); });
    Fill(p->c, p->columns, [draw] { return -draw->Integer(5, 90); });
}

void FillSparse(Problem* p, Draw* draw)
{
    const auto coefficient = [draw]
    {
        if (!draw->Chance(10))
            return 0.0F;
        return draw->Chance(25) ? -draw->Integer(1, 9) : draw->Integer(1, 9);
    };
    Fill(
        p, coefficient, [draw] { return draw->Integer(100, 9999); },
        [draw] { return draw->Integer(-9, 30); });
    FillBudgetRow(p, draw, 99999.0F);
}

struct Entry
{
    const char* name;
    void (*fill)(Problem*, Draw*);
};

constexpr Entry kEntries[kNumBenchmarkFamilies] = {{"positive", FillPositive},
                                                   {"mixed signs", FillMixedSigns},
                                                   {"phase I", FillPhaseI},
                                                   {"assignment", FillAssignment},
                                                   {"transport", FillTransport},
                                                   {"production mix", FillProductionMix},
                                                   {"diet", FillDiet},
                                                   {"sparse 10 %", FillSparse},
                                                   {"non-degenerate", FillNonDegenerate}};
}  // namespace

const char* NameOf(BenchmarkFamily family)
{
    return kEntries[static_cast<uint32_t>(family)].name;
}

void MakeBenchmarkModel(BenchmarkFamily family, uint64_t seed, Problem* p)
{
    Draw draw(seed * 16U + static_cast<uint32_t>(family));
    kEntries[static_cast<uint32_t>(family)].fill(p, &draw);
}
}  // namespace nuv::corpus
