// The families, one function each.
#include "bench/Families.hpp"

#include <array>

namespace bench
{
namespace
{
/// A 64-bit generator (Vigna, An experimental exploration of Marsaglia's xorshift generators,
/// scrambled).
class Random
{
public:
    explicit Random(std::uint64_t seed) : state(seed * 0x9E3779B97F4A7C15U + 0x632BE59BD9B4E019U)
    {
        // Seeds that differ in few bits start alike; a few steps part them.
        for (int i = 0; i < 8; ++i)
            Step();
    }

    /// An integer between the two, both included.
    int Between(int first, int last)
    {
        const auto range = static_cast<std::uint64_t>(last - first) + 1U;
        return first + static_cast<int>(((Step() >> 32U) * range) >> 32U);
    }

    /// The same as a float; the integers asked for here are exact in one.
    float Float(int first, int last)
    {
        return static_cast<float>(Between(first, last));
    }

    std::size_t Below(std::size_t limit)
    {
        return static_cast<std::size_t>(Between(0, static_cast<int>(limit) - 1));
    }

    bool Chance(int percent)
    {
        return Between(1, 100) <= percent;
    }

private:
    std::uint64_t state;

    std::uint64_t Step()
    {
        if (state == 0)
            state = 1;
        state ^= state >> 12U;
        state ^= state << 25U;
        state ^= state >> 27U;
        return state * 0x2545F4914F6CDD1DU;
    }
};

float& At(Instance* x, std::size_t row, std::size_t column)
{
    return x->A[row * x->columns + column];
}

void FillPositive(Instance* x, Random* random)
{
    for (float& a : x->A)
        a = random->Float(1, 9);
    for (float& b : x->b)
        b = random->Float(2000, 9999);
    for (float& c : x->c)
        c = random->Float(1, 9);
}

/// Row 0 with positive coefficients alone: whatever the other rows allow, no variable grows without
/// end.
void FillBudgetRow(Instance* x, Random* random, int budget)
{
    for (std::size_t j = 0; j < x->columns; ++j)
        At(x, 0, j) = random->Float(1, 9);
    x->b[0] = static_cast<float>(budget);
}

void FillMixedSigns(Instance* x, Random* random)
{
    for (float& a : x->A)
        a = random->Float(-9, 9);
    for (float& b : x->b)
        b = random->Float(100, 9999);
    for (float& c : x->c)
        c = random->Float(-9, 9);
    FillBudgetRow(x, random, 99999);
}

void FillNonDegenerate(Instance* x, Random* random)
{
    for (float& a : x->A)
        a = random->Float(-99, 99);
    for (float& b : x->b)
        b = random->Float(5000000, 9999999);
    for (float& c : x->c)
        c = random->Float(500, 999);
    FillBudgetRow(x, random, 9999991);
}

void FillPhaseI(Instance* x, Random* random)
{
    std::vector<float> point(x->columns);
    for (float& value : point)
        value = random->Float(1, 3);
    for (std::size_t i = 0; i < x->rows; ++i)
    {
        // At least one row of each direction: the first calls for Phase I, the last bounds all.
        const bool isLower = i == 0 || (i + 1 < x->rows && random->Chance(40));
        float activity = 0.0F;
        for (std::size_t j = 0; j < x->columns; ++j)
        {
            const float a = random->Float(1, 9);
            At(x, i, j) = isLower ? -a : a;
            activity += At(x, i, j) * point[j];
        }
        // Less than any activity: what calls for Phase I must not be let off by it.
        x->b[i] = activity + random->Float(0, static_cast<int>(x->columns) - 1);
    }
    for (float& c : x->c)
        c = random->Float(-9, 9);
}

/// Column j joins a random row of the first half and one of the second; the entries are +1 and
/// `second`.
void JoinHalves(Instance* x, Random* random, float second, std::vector<std::size_t>* rowsOfColumn)
{
    const std::size_t half = x->rows / 2;
    for (std::size_t j = 0; j < x->columns; ++j)
    {
        // The first columns reach every row once.
        const std::size_t first = j < half ? j : random->Below(half);
        const std::size_t last = half + (j < x->rows - half ? j : random->Below(x->rows - half));
        At(x, first, j) = 1.0F;
        At(x, last, j) = second;
        rowsOfColumn->push_back(first);
        rowsOfColumn->push_back(last);
    }
}

void FillAssignment(Instance* x, Random* random)
{
    std::vector<std::size_t> unused;
    JoinHalves(x, random, 1.0F, &unused);
    for (float& b : x->b)
        b = 1.0F;
    for (float& c : x->c)
        c = random->Float(1, 99);
}

void FillTransport(Instance* x, Random* random)
{
    std::vector<std::size_t> rowsOfColumn;
    JoinHalves(x, random, -1.0F, &rowsOfColumn);
    // Supplies and demands are those of a shipment that exists, with some room in the supplies.
    for (std::size_t i = 0; i < x->rows / 2; ++i)
        x->b[i] = random->Float(0, 9);
    for (std::size_t j = 0; j < x->columns; ++j)
    {
        const float shipped = random->Float(1, 9);
        x->b[rowsOfColumn[2 * j]] += shipped;
        x->b[rowsOfColumn[2 * j + 1]] -= shipped;
        x->c[j] = -random->Float(1, 99);
    }
}

void FillProductionMix(Instance* x, Random* random)
{
    for (std::size_t i = 0; i < x->rows; ++i)
        for (std::size_t j = 0; j < x->columns; ++j)
            // Every product needs at least one resource.
            if (i == j % x->rows || random->Chance(60))
                At(x, i, j) = random->Float(1, 9);
    for (float& b : x->b)
        b = random->Float(40, 900);
    for (float& c : x->c)
        c = random->Float(1, 40);
}

void FillDiet(Instance* x, Random* random)
{
    for (std::size_t i = 0; i < x->rows; ++i)
        for (std::size_t j = 0; j < x->columns; ++j)
            // Every nutrient is in at least one food.
            if (j == i % x->columns || random->Chance(70))
                At(x, i, j) = -random->Float(1, 40);
    for (float& b : x->b)
        b = -random->Float(10, 3000);
    for (float& c : x->c)
        c = -random->Float(5, 90);
}

void FillSparse(Instance* x, Random* random)
{
    for (float& a : x->A)
        if (random->Chance(10))
            a = random->Chance(25) ? -random->Float(1, 9) : random->Float(1, 9);
    for (float& b : x->b)
        b = random->Float(100, 9999);
    for (float& c : x->c)
        c = random->Float(-9, 30);
    FillBudgetRow(x, random, 99999);
}

struct FamilyEntry
{
    const char* name;
    void (*fill)(Instance*, Random*);
};

constexpr std::array<FamilyEntry, 9> entries = {{{"positive", FillPositive},
                                                 {"mixed signs", FillMixedSigns},
                                                 {"phase I", FillPhaseI},
                                                 {"assignment", FillAssignment},
                                                 {"transport", FillTransport},
                                                 {"production mix", FillProductionMix},
                                                 {"diet", FillDiet},
                                                 {"sparse 10 %", FillSparse},
                                                 {"non-degenerate", FillNonDegenerate}}};

/// The non-zeros line by line; element k of line i stands at i · lineStep + k · step.
NonZeros Collect(const std::vector<float>& A, std::size_t lines, std::size_t lineStep,
                 std::size_t length, std::size_t step)
{
    NonZeros found;
    for (std::size_t i = 0; i < lines; ++i)
    {
        found.starts.push_back(static_cast<int>(found.indices.size()));
        for (std::size_t k = 0; k < length; ++k)
        {
            const float a = A[i * lineStep + k * step];
            if (a == 0.0F)
                continue;
            found.indices.push_back(static_cast<int>(k));
            found.values.push_back(static_cast<double>(a));
        }
    }
    found.starts.push_back(static_cast<int>(found.indices.size()));
    return found;
}
}  // namespace

const char* NameOf(Family family)
{
    return entries[static_cast<std::size_t>(family)].name;
}

bool FindFamily(std::string_view name, Family* family)
{
    for (std::size_t i = 0; i < entries.size(); ++i)
    {
        if (name != entries[i].name)
            continue;
        *family = static_cast<Family>(i);
        return true;
    }
    return false;
}

Instance MakeInstance(Family family, std::size_t rows, std::size_t columns, std::uint64_t seed)
{
    Instance x;
    x.family = family;
    x.rows = rows;
    x.columns = columns;
    x.A.assign(rows * columns, 0.0F);
    x.b.assign(rows, 0.0F);
    x.c.assign(columns, 0.0F);
    const auto index = static_cast<std::size_t>(family);
    Random random(seed * 16U + index);
    entries[index].fill(&x, &random);
    return x;
}

NonZeros RowsOf(const Instance& instance)
{
    return Collect(instance.A, instance.rows, instance.columns, instance.columns, 1);
}

NonZeros ColumnsOf(const Instance& instance)
{
    return Collect(instance.A, instance.columns, 1, instance.rows, instance.columns);
}
}  // namespace bench
