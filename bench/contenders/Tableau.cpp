// The tableau. Row i holds, for the basic variable of that row, its coefficients in the nonbasic
// variables and its value; then follow the objective rows, which hold reduced costs and the negated
// objective.
//
// Invariant: the column of a variable exists exactly while it is nonbasic. A pivot exchanges the
// entering variable's column for the leaving one's. Compiled twice, as NUV_BENCH_TABLEAU says.
#include "bench/contenders/Tableau.hpp"

#include <cstdlib>
#include <limits>
#include <memory>

namespace bench
{
namespace
{
constexpr double kEpsilon = 1e-9;
constexpr std::size_t kNone = std::numeric_limits<std::size_t>::max();
constexpr std::size_t kDoublesPerLine = 8;

struct FreeMemory
{
    void operator()(double* memory) const
    {
        std::free(memory);
    }
};

class Tableau
{
public:
    Tableau(const Instance& instance, bool needsArtificial)
        : m(instance.rows),
          width(instance.columns + (needsArtificial ? 1 : 0)),
          // The value stands behind the coefficients; rows start on a cache line.
          stride((width + 1 + kDoublesPerLine - 1) / kDoublesPerLine * kDoublesPerLine),
          cells(static_cast<double*>(std::aligned_alloc(kDoublesPerLine * sizeof(double),
                                                        (m + 2) * stride * sizeof(double))))
    {
        artificial = needsArtificial ? instance.columns : kNone;
        for (std::size_t i = 0; i < m; ++i)
        {
            double* const row = Row(i);
            for (std::size_t j = 0; j < instance.columns; ++j)
                row[j] = static_cast<double>(instance.A[i * instance.columns + j]);
            if (needsArtificial)
                row[artificial] = -1.0;
            row[width] = static_cast<double>(instance.b[i]);
        }
        double* const costs = Row(m);
        double* const auxiliary = Row(m + 1);
        for (std::size_t j = 0; j < width + 1; ++j)
        {
            costs[j] = j < instance.columns ? static_cast<double>(instance.c[j]) : 0.0;
            auxiliary[j] = j == artificial ? -1.0 : 0.0;
        }
    }

    /// Phases I and II.
    Verdict Solve(std::uint64_t maxPivots)
    {
        limit = maxPivots;
        if (artificial != kNone)
        {
            const Verdict feasibility = FindFeasiblePoint();
            if (feasibility != Verdict::Optimal)
                return feasibility;
        }
        return Maximize(m, m + 1);
    }

    double Objective() const
    {
        return -Row(m)[width];
    }

    std::uint64_t Pivots() const
    {
        return pivots;
    }

private:
    std::size_t m;
    std::size_t width;
    std::size_t stride;
    std::unique_ptr<double[], FreeMemory> cells;
    /// The artificial variable's column while it is nonbasic, and its row while it is basic.
    std::size_t artificial = kNone;
    std::size_t artificialRow = kNone;
    std::uint64_t pivots = 0;
    std::uint64_t limit = 0;

    double* Row(std::size_t i)
    {
        return cells.get() + i * stride;
    }

    const double* Row(std::size_t i) const
    {
        return cells.get() + i * stride;
    }

    /// The largest reduced cost, the last one on ties.
    std::size_t ChooseEntering(std::size_t objectiveRow) const
    {
        const double* const costs = Row(objectiveRow);
        double largest = kEpsilon;
        std::size_t entering = kNone;
        for (std::size_t j = 0; j < width; ++j)
        {
            if (costs[j] < largest)
                continue;
            largest = costs[j];
            entering = j;
        }
        return entering;
    }

    /// The smallest ratio, the first one on ties; the artificial variable goes before others.
    std::size_t ChooseLeaving(std::size_t entering) const
    {
        double smallest = std::numeric_limits<double>::infinity();
        std::size_t leaving = kNone;
        for (std::size_t i = 0; i < m; ++i)
        {
            const double* const row = Row(i);
            if (row[entering] <= kEpsilon)
                continue;
            const double ratio = row[width] / row[entering];
            if (ratio < smallest || (ratio == smallest && i == artificialRow))
            {
                smallest = ratio;
                leaving = i;
            }
        }
        return leaving;
    }

    void Pivot(std::size_t leaving, std::size_t entering, std::size_t numRows)
    {
        double* const pivotRow = Row(leaving);
        const double reciprocal = 1.0 / pivotRow[entering];
        for (std::size_t j = 0; j <= width; ++j)
            pivotRow[j] *= reciprocal;
        pivotRow[entering] = reciprocal;
        for (std::size_t i = 0; i < numRows; ++i)
            if (i != leaving && Row(i)[entering] != 0.0)
                SubtractMultiple(Row(i), pivotRow, entering);
        ++pivots;
        if (leaving == artificialRow)
        {
            artificialRow = kNone;
            artificial = entering;
        }
        else if (entering == artificial)
        {
            artificialRow = leaving;
            artificial = kNone;
        }
    }

    void SubtractMultiple(double* __restrict row, const double* __restrict pivotRow,
                          std::size_t entering) const
    {
        const double multiplier = row[entering];
        row[entering] = 0.0;
        for (std::size_t j = 0; j <= width; ++j)
            row[j] -= multiplier * pivotRow[j];
    }

    Verdict Maximize(std::size_t objectiveRow, std::size_t numRows)
    {
        while (pivots < limit)
        {
            const std::size_t entering = ChooseEntering(objectiveRow);
            if (entering == kNone)
                return Verdict::Optimal;
            const std::size_t leaving = ChooseLeaving(entering);
            if (leaving == kNone)
                return Verdict::Unbounded;
            const bool isFeasibleNow = leaving == artificialRow;
            Pivot(leaving, entering, numRows);
            if (isFeasibleNow)
                return Verdict::Optimal;
        }
        return Verdict::Stopped;
    }

    /// The artificial variable enters for the most negative value; then its value is driven to 0.
    Verdict FindFeasiblePoint()
    {
        std::size_t leaving = 0;
        for (std::size_t i = 1; i < m; ++i)
            if (Row(i)[width] < Row(leaving)[width])
                leaving = i;
        Pivot(leaving, artificial, m + 2);
        const Verdict verdict = Maximize(m + 1, m + 2);
        if (verdict != Verdict::Optimal)
            return verdict;
        if (artificialRow != kNone && !DriveOut())
            return Verdict::Infeasible;
        RemoveColumn(artificial);
        return Verdict::Optimal;
    }

    /// Makes an artificial variable that is basic at 0 nonbasic.
    bool DriveOut()
    {
        const double* const row = Row(artificialRow);
        if (row[width] > kEpsilon * 1000.0)
            return false;
        std::size_t entering = 0;
        for (std::size_t j = 1; j < width; ++j)
            if (row[j] * row[j] > row[entering] * row[entering])
                entering = j;
        Pivot(artificialRow, entering, m + 2);
        return true;
    }

    void RemoveColumn(std::size_t column)
    {
        for (std::size_t i = 0; i <= m; ++i)
        {
            double* const row = Row(i);
            row[column] = row[width - 1];
            row[width - 1] = row[width];
        }
        --width;
        artificial = kNone;
    }
};

bool NeedsPhaseI(const Instance& instance)
{
    for (const float b : instance.b)
        if (b < 0.0F)
            return true;
    return false;
}
}  // namespace

TableauResult NUV_BENCH_TABLEAU(const Instance& instance, std::uint64_t maxPivots)
{
    Tableau tableau(instance, NeedsPhaseI(instance));
    const Verdict verdict = tableau.Solve(maxPivots);
    return {verdict, tableau.Objective(), tableau.Pivots()};
}
}  // namespace bench
