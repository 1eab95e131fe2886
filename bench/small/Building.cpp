// What stands around a solve: making a model, entering rows, the standard form, and a solve without
// a pivot, in turns with the hand-written tableau on problems of 5 × 5.
//
//     bench_building [--quick] [--output FILE]
//
// The file gets a line for each, for bench/report/document.py.
#include <cstdio>
#include <memory>
#include <string>

#include "bench/JsonLine.hpp"
#include "bench/QuickOrWhole.hpp"
#include "bench/contenders/Contender.hpp"
#include "bench/contenders/Tableau.hpp"
#include "bench/small/Turns.hpp"

namespace bench
{
namespace
{
using Terms = NuvVector_NuvPair_NuvUint__NuvFloat32;

/// One model after the other on the memory of the C library.
void MakeModels(NuvUint numVariables, std::size_t count)
{
    for (std::size_t k = 0; k != count; ++k)
    {
        NuvLinearProgramming lp;
        NuvLinearProgrammingConstruct(&lp, numVariables, nuv::HeapAllocator());
        NuvLinearProgrammingDestruct(&lp);
    }
}

void MakeScratchModels(NuvUint numVariables, std::size_t count)
{
    for (std::size_t k = 0; k != count; ++k)
    {
        NuvScratchAllocator scratch;
        NuvScratchAllocatorConstruct(&scratch, nuv::HeapAllocator());
        NuvLinearProgramming lp;
        NuvLinearProgrammingConstruct(&lp, numVariables, &scratch.allocator);
        NuvScratchAllocatorDestruct(&scratch);
    }
}

/// A model without variables, as rows are not tested before a solve.
class Rows
{
public:
    Rows(std::size_t rows, std::size_t entries) : count(rows)
    {
        for (std::size_t k = 0; k != entries; ++k)
            terms.push_back({static_cast<NuvUint>(k) + 1, 1.0F});
        NuvLinearProgrammingConstructDefault(&lp, nuv::HeapAllocator());
    }

    ~Rows()
    {
        NuvLinearProgrammingDestruct(&lp);
    }

    Rows(const Rows&) = delete;
    Rows& operator=(const Rows&) = delete;

    /// Enters all rows and takes them away again.
    void EnterAll()
    {
        const Terms row = {nullptr, terms.data(), terms.data() + terms.size(),
                           terms.data() + terms.size()};
        for (std::size_t i = 0; i != count; ++i)
            NuvLinearProgrammingSetConstraintByIndex(&lp, static_cast<NuvUint>(i) + 1, &row, 1.0F);
        for (std::size_t i = 0; i != count; ++i)
            NuvLinearProgrammingRemoveConstraint(&lp, static_cast<NuvUint>(i) + 1);
    }

private:
    std::size_t count;
    std::vector<nuv::IndexedTerm> terms;
    NuvLinearProgramming lp;
};

struct Small
{
    std::vector<Input> inputs;
    std::vector<nuv::LinearProgram> programs;
    /// The same without costs, so that the first basis is optimal.
    std::vector<nuv::LinearProgram> costless;

    explicit Small(std::size_t count)
    {
        for (std::uint64_t seed = 1; inputs.size() != count; ++seed)
        {
            Input input = MakeInput(MakeInstance(Family::MixedSigns, 5, 5, seed));
            if (CountPivots(input, 200, 1.0).verdict == Verdict::Stopped)
                continue;
            programs.push_back(BuildProgram(input));
            costless.push_back(BuildProgram(input));
            costless.back().SetObjective(std::span<const nuv::IndexedTerm>());
            inputs.push_back(std::move(input));
        }
    }
};

void SolveModels(std::vector<nuv::LinearProgram>& programs)
{
    for (nuv::LinearProgram& program : programs)
        (void)NuvLinearProgrammingSolve(program.Record());
}

void AddSolves(std::vector<Turn>* turns, Small* small)
{
    const double count = static_cast<double>(small->inputs.size());
    turns->push_back({"standard form, 5 × 5", count,
                      [small]
                      {
                          for (nuv::LinearProgram& program : small->programs)
                              (void)NuvLinearProgrammingPrepareInputs_(program.Record());
                      }});
    turns->push_back(
        {"solve without a pivot, 5 × 5", count, [small] { SolveModels(small->costless); }});
    turns->push_back({"solve, 5 × 5", count, [small] { SolveModels(small->programs); }});
    turns->push_back({"tableau, native, 5 × 5", count,
                      [small]
                      {
                          for (const Input& input : small->inputs)
                              (void)SolveByNativeTableau(input.instance,
                                                         TableauLimit(input.instance));
                      }});
}

void MeasureAll(bool isQuick, std::FILE* file)
{
    std::vector<Turn> turns;
    turns.push_back({"model of 20 variables", 100.0, [] { MakeModels(20, 100); }});
    turns.push_back({"model of 20 variables, scratch", 100.0, [] { MakeScratchModels(20, 100); }});
    Rows shortRows(20, 5);
    Rows rows(20, 20);
    Rows longRows(20, 100);
    turns.push_back({"entry of a row of 5", 100.0, [&] { shortRows.EnterAll(); }});
    turns.push_back({"entry of a row of 20", 400.0, [&] { rows.EnterAll(); }});
    turns.push_back({"entry of a row of 100", 2000.0, [&] { longRows.EnterAll(); }});
    Small small(200);
    AddSolves(&turns, &small);
    TakeTurns(&turns, isQuick ? TurnEffort{1e-3, 7} : TurnEffort{4e-3, 25});
    for (const Turn& turn : turns)
    {
        const double seconds = MedianOf(turn.seconds);
        std::printf("%-34s %10.1f ns\n", turn.name.c_str(), seconds * 1e9);
        JsonLine line("building");
        std::fputs(line.Add("what", turn.name).Add("seconds", seconds).Text().c_str(), file);
    }
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    return bench::RunQuickOrWhole(count, words, "bench_building", bench::MeasureAll);
}
