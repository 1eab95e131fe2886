// How fast model files are read: bytes a second of text that is in memory, over models of two
// structures. In a staircase each column meets rows near its own, as most real models have it; in
// the scattered model any rows at all, so that nearly every lookup of a name waits for memory.
//
//     bench_read_models                the generated models, a hundred megabytes in all
//     bench_read_models model.mps...   these files as well
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Model/ModelBuilder.hpp"

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace
{

using Text = std::shared_ptr<const std::string>;

constexpr std::uint32_t kRows = 40000;
constexpr std::uint32_t kColumns = 120000;
constexpr std::uint32_t kEntriesEach = 8;

std::uint64_t Next(std::uint64_t& state)
{
    state ^= state << 13;
    state ^= state >> 7;
    state ^= state << 17;
    return state;
}

std::string Name(char letter, std::uint32_t index)
{
    char name[16];
    std::snprintf(name, sizeof name, "%c%07u", letter, index);
    return name;
}

/// A number of up to seven digits, as models mostly have them.
double Number(std::uint64_t& state)
{
    return (1.0 + static_cast<double>(Next(state) % 9999999)) / 1000.0;
}

nuv::Model Generate(bool isScattered)
{
    std::uint64_t state = 88172645463325252u;
    nuv::ModelBuilder model;
    for (std::uint32_t row = 0; row < kRows; ++row)
        (void)model.AppendRow(Name('R', row), {-nuv::Infinity, Number(state)});
    std::vector<std::size_t> starts{0};
    std::vector<std::uint32_t> rows;
    std::vector<double> entries;
    for (std::uint32_t column = 0; column < kColumns; ++column)
    {
        (void)model.InternVariable(Name('C', column));
        model.SetObjectiveCoefficient(column, Number(state));
        model.SetVariableBounds(column, {0.0, Number(state)});
        for (std::uint32_t k = 0; k < kEntriesEach; ++k)
        {
            // One row of each eighth, so that none comes twice.
            constexpr std::uint32_t kEighth = kRows / kEntriesEach;
            const std::uint32_t near = column / 3 / kEntriesEach * kEntriesEach + k;
            const auto anywhere = static_cast<std::uint32_t>(Next(state) % kEighth) + k * kEighth;
            rows.push_back(isScattered ? anywhere : near);
            entries.push_back(Number(state));
        }
        starts.push_back(rows.size());
    }
    model.AssignColumns(starts, rows, entries);
    return model.Take();
}

void ReadMps(benchmark::State& state, const Text& text)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(nuv::ReadMps(*text, "model.mps"));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
}

void ReadLp(benchmark::State& state, const Text& text)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(nuv::ReadLp(*text, "model.lp"));
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text->size()));
}

void ReadFile(benchmark::State& state, const std::string& path)
{
    for (auto _ : state)
        benchmark::DoNotOptimize(nuv::ReadModelFile(path));
}

void Register(const char* name, void (*read)(benchmark::State&, const Text&), std::string text)
{
    const auto shared = std::make_shared<const std::string>(std::move(text));
    benchmark::RegisterBenchmark(name, read, shared)->Unit(benchmark::kMillisecond);
}

}  // namespace

int main(int count, char** arguments)
{
    benchmark::Initialize(&count, arguments);
    for (int at = 1; at < count; ++at)
        benchmark::RegisterBenchmark(arguments[at], ReadFile, std::string(arguments[at]))
            ->Unit(benchmark::kMillisecond);
    const nuv::Model staircase = Generate(false);
    Register("mps/staircase", ReadMps, *nuv::WriteMps(staircase).text);
    Register("lp/staircase", ReadLp, *nuv::WriteLp(staircase).text);
    const nuv::Model scattered = Generate(true);
    Register("mps/scattered", ReadMps, *nuv::WriteMps(scattered).text);
    Register("lp/scattered", ReadLp, *nuv::WriteLp(scattered).text);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
