// Changes one bound or side of a model and solves it again in a session, against a solve from
// nothing; prints a line of JSON for each model.
//
//     bench_warm CHANGES MODEL...
//
// Ends with 1 if an answer is not that of the solve from nothing, or not proved.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iostream>
#include <random>
#include <string>
#include <vector>

#include "bench/JsonLine.hpp"
#include "bench/Stopwatch.hpp"

#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Solve/Solver.hpp"

namespace bench
{
namespace
{
/// What it took to solve again after one kind of change, over what a solve from nothing takes.
struct Ratios
{
    unsigned count = 0;
    double logarithms = 0.0;

    void Add(double ratio)
    {
        ++count;
        logarithms += std::log(ratio);
    }
    [[nodiscard]] double Mean() const
    {
        return std::exp(logarithms / count);
    }
};

/// A side of a row or a bound of a variable, moved by one to ten hundredths, or by one to ten
/// tenths from zero; both at once where they are the same.
nuv::Bounds Moved(nuv::Bounds bounds, std::mt19937& random)
{
    const bool up = random() % 2 == 0;
    const double share =
        static_cast<double>(1 + random() % 10) * (random() % 2 == 0 ? 0.01 : -0.01);
    const auto moved = [share](double bound)
    { return bound == 0.0 ? 10.0 * share : bound * (1.0 + share); };
    if (bounds.lower == bounds.upper)
        return {moved(bounds.lower), moved(bounds.lower)};
    return up ? nuv::Bounds{bounds.lower, moved(bounds.upper)}
              : nuv::Bounds{moved(bounds.lower), bounds.upper};
}

class Measurement
{
public:
    Measurement(const nuv::Model& model, std::string name)
        : m_name(std::move(name)), m_solver(model, Options())
    {
    }

    /// @return whether all answers are right; true for a model without an optimum, which is passed
    /// over.
    bool Run(unsigned changes)
    {
        if (m_solver.Solve().status != nuv::Status::Optimal)
            return true;
        for (unsigned tries = 0; m_all.count < changes && tries < 20 * changes; ++tries)
        {
            const std::uint32_t columns = Model().VariableCount();
            const auto at = static_cast<std::uint32_t>(m_random() % (columns + Model().RowCount()));
            const bool isGood =
                at < columns
                    ? Change(Model().VariableAt(at),
                             {Model().VariableLower()[at], Model().VariableUpper()[at]})
                    : Change(Model().RowAt(at - columns),
                             {Model().RowLower()[at - columns], Model().RowUpper()[at - columns]});
            if (!isGood)
                return false;
        }
        Print();
        return true;
    }

private:
    static nuv::SolveOptions Options()
    {
        nuv::SolveOptions options;
        options.iisWork = 0;
        return options;
    }
    [[nodiscard]] const nuv::Model& Model() const
    {
        return m_solver.GetModel();
    }

    /// One change, which is taken back; one that moves nothing or leaves no optimum does not count.
    template <class Handle>
    bool Change(Handle of, nuv::Bounds bounds)
    {
        const nuv::Bounds moved = Moved(bounds, m_random);
        if (moved.lower == bounds.lower && moved.upper == bounds.upper)
            return true;
        nuv::Model changed = Model();
        changed.SetBounds(of, moved);
        const Stopwatch coldWatch;
        const nuv::Solution cold = nuv::Solve(changed, Options());
        const double coldSeconds = coldWatch.Seconds();
        if (cold.status != nuv::Status::Optimal)
            return true;
        const Stopwatch warmWatch;
        m_solver.SetBounds(of, moved);
        const nuv::Solution warm = m_solver.Solve();
        const double warmSeconds = warmWatch.Seconds();
        m_coldSeconds += coldSeconds;
        m_warmSeconds += warmSeconds;
        m_all.Add(warmSeconds / coldSeconds);
        (warm.stages[nuv::Stage::Double].ran ? m_pivoted : m_stayed).Add(warmSeconds / coldSeconds);
        m_solver.SetBounds(of, bounds);
        (void)m_solver.Solve();
        if (warm.proved && warm.exactObjective == cold.exactObjective)
            return true;
        std::cerr << m_name << ": " << warm.exactObjective << " again, " << cold.exactObjective
                  << " from nothing\n";
        return false;
    }

    void Print() const
    {
        if (m_all.count == 0)
            return;
        JsonLine line("warm");
        line.Add("name", m_name)
            .Add("rows", Model().RowCount())
            .Add("columns", Model().VariableCount())
            .Add("changes", m_all.count)
            .Add("cold_seconds", m_coldSeconds / m_all.count)
            .Add("warm_seconds", m_warmSeconds / m_all.count)
            .Add("ratio", m_all.Mean())
            .Add("stayed", m_stayed.count)
            .Add("stayed_ratio", m_stayed.Mean())
            .Add("pivoted", m_pivoted.count)
            .Add("pivoted_ratio", m_pivoted.Mean());
        std::cout << line.Text() << std::flush;
        std::fprintf(stderr, "%-16s %.4f\n", m_name.c_str(), m_all.Mean());
    }

    std::string m_name;
    nuv::Solver m_solver;
    std::mt19937 m_random{1};
    double m_coldSeconds = 0.0;
    double m_warmSeconds = 0.0;
    Ratios m_all;
    Ratios m_stayed;   ///< the basis is optimal still
    Ratios m_pivoted;  ///< the simplex went on
};

bool Measure(const std::string& path, unsigned changes)
{
    const nuv::ReadResult reading = nuv::ReadModelFile(path);
    if (!reading.Ok())
    {
        std::cerr << path << ": " << reading.GetError().text << '\n';
        return false;
    }
    std::string name = std::filesystem::path(path).filename().string();
    name = name.substr(0, name.rfind(".mps"));
    return Measurement(*reading.model, name).Run(changes);
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    const unsigned long changes = count < 3 ? 0 : std::strtoul(words[1], nullptr, 10);
    if (changes == 0)
    {
        std::cerr << "usage: bench_warm CHANGES MODEL...\n";
        return 64;
    }
    bool areGood = true;
    for (int i = 2; i < count; ++i)
        areGood = bench::Measure(words[i], static_cast<unsigned>(changes)) && areGood;
    return areGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
