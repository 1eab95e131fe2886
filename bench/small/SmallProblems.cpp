// Small problems by the thousand, each another one of its family: as a batch, one by one through
// arrays, one by one as models, by the hand-written tableau, and by the libraries.
//
//     bench_small [--quick] [--shape FAMILY ROWS COLUMNS] [--ours] [--output FILE]
//
// The file gets a line for each shape and contender, for bench/report/document.py. --shape measures
// one shape, and --ours leaves the libraries out, for a quick look. The program ends with 1 unless
// the batch's objectives are the models' to the bit and the tableau's to 1e-3.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>

#include "bench/JsonLine.hpp"
#include "bench/contenders/Tableau.hpp"
#include "bench/small/Problems.hpp"
#include "bench/small/Turns.hpp"

namespace bench
{
namespace
{
constexpr Shape kShapes[] = {
    {Family::MixedSigns, 2, 3},       {Family::MixedSigns, 5, 5},
    {Family::MixedSigns, 10, 10},     {Family::MixedSigns, 20, 20},
    {Family::MixedSigns, 30, 30},     {Family::MixedSigns, 50, 50},
    {Family::MixedSigns, 20, 100},    {Family::NonDegenerate, 5, 5},
    {Family::NonDegenerate, 10, 10},  {Family::NonDegenerate, 20, 20},
    {Family::NonDegenerate, 30, 30},  {Family::NonDegenerate, 50, 50},
    {Family::NonDegenerate, 20, 100}, {Family::Positive, 5, 5},
    {Family::Positive, 10, 10},       {Family::Positive, 20, 20},
    {Family::Positive, 30, 30},       {Family::Positive, 50, 50},
    {Family::Positive, 20, 100},      {Family::ProductionMix, 5, 5},
    {Family::ProductionMix, 10, 10},  {Family::ProductionMix, 20, 20},
    {Family::ProductionMix, 30, 30},  {Family::ProductionMix, 50, 50},
    {Family::ProductionMix, 20, 100}, {Family::Sparse, 5, 5},
    {Family::Sparse, 10, 10},         {Family::Sparse, 20, 20},
    {Family::Sparse, 30, 30},         {Family::Sparse, 50, 50},
    {Family::Sparse, 20, 100},        {Family::Assignment, 5, 5},
    {Family::Assignment, 10, 10},     {Family::Assignment, 20, 20},
    {Family::Assignment, 30, 30},     {Family::Assignment, 50, 50},
    {Family::Assignment, 20, 100},
};

struct Arguments
{
    bool isQuick = false;
    bool hasLibraries = true;
    std::optional<Shape> single;
    const char* output = nullptr;
};

/// As many problems as take the tableau a few milliseconds.
std::size_t CountFor(const Shape& shape)
{
    const std::size_t size = shape.rows * shape.columns * (shape.rows + shape.columns);
    return std::clamp<std::size_t>(2000000 / size, 64, 1024);
}

/// The caller's side of a solve of a model: mark, solve, take back.
void Solve(NuvScratchAllocator* scratch, NuvLinearProgramming* lp)
{
    const NuvSizeT mark = NuvScratchAllocatorMark(scratch);
    (void)NuvLinearProgrammingSolve(lp);
    NuvScratchAllocatorRelease(scratch, mark, lp);
}

/// So few models that stay are timed that they do not drive each other out of the caches.
constexpr std::size_t kFewModels = 64;
constexpr const char* kTableau = "tableau, native";

/// Models that stay, each on a scratch allocator of its own.
class Models
{
public:
    explicit Models(std::span<const Input> inputs) : scratches(inputs.size()), lps(inputs.size())
    {
        for (std::size_t k = 0; k != inputs.size(); ++k)
        {
            NuvScratchAllocatorConstruct(&scratches[k], nuv::HeapAllocator());
            Build(inputs[k], &scratches[k].allocator, &lps[k]);
        }
    }

    ~Models()
    {
        for (NuvScratchAllocator& scratch : scratches)
            NuvScratchAllocatorDestruct(&scratch);
    }

    Models(const Models&) = delete;
    Models& operator=(const Models&) = delete;

    void SolveAll()
    {
        for (std::size_t k = 0; k != lps.size(); ++k)
            Solve(&scratches[k], &lps[k]);
    }

    float Objective(std::size_t k) const
    {
        return NuvLinearProgrammingGetObjectiveValue(&lps[k]);
    }

    static void Build(const Input& input, NuvAllocator* allocator, NuvLinearProgramming* lp)
    {
        const auto view = [](std::span<const nuv::IndexedTerm> terms)
        {
            auto* const first = const_cast<nuv::IndexedTerm*>(terms.data());
            return NuvVector_NuvPair_NuvUint__NuvFloat32{nullptr, first, first + terms.size(),
                                                         first + terms.size()};
        };
        NuvLinearProgrammingConstruct(lp, static_cast<NuvUint>(input.instance.columns), allocator);
        for (std::size_t i = 0; i != input.instance.rows; ++i)
        {
            const auto row = view(input.TermsOf(i));
            NuvLinearProgrammingSetConstraintByIndex(lp, static_cast<NuvUint>(i) + 1, &row,
                                                     input.instance.b[i]);
        }
        const auto objective = view(input.objective);
        NuvLinearProgrammingSetObjectiveByIndex(lp, &objective);
    }

private:
    std::vector<NuvScratchAllocator> scratches;
    std::vector<NuvLinearProgramming> lps;
};

/// Models that are built, solved once, and destructed.
void SolveNewModels(const std::vector<Input>& inputs)
{
    for (const Input& input : inputs)
    {
        NuvScratchAllocator scratch;
        NuvScratchAllocatorConstruct(&scratch, nuv::HeapAllocator());
        NuvLinearProgramming lp;
        Models::Build(input, &scratch.allocator, &lp);
        (void)NuvLinearProgrammingSolve(&lp);
        NuvScratchAllocatorDestruct(&scratch);
    }
}

/// @return whether the batch has the models' objectives, and the tableau's within reason.
bool Agree(const Problems& problems)
{
    Models models(problems.Inputs());
    models.SolveAll();
    for (std::size_t k = 0; k != problems.Inputs().size(); ++k)
    {
        const Input& input = problems.Inputs()[k];
        const double found = static_cast<double>(problems.Objectives()[k]);
        const TableauResult tableau =
            SolveByNativeTableau(input.instance, TableauLimit(input.instance));
        const float ofModel = models.Objective(k);
        if (std::memcmp(&ofModel, &problems.Objectives()[k], sizeof ofModel) != 0 ||
            std::fabs(found - tableau.objective) > 1e-3 * std::max(1.0, std::fabs(found)))
        {
            std::fprintf(stderr,
                         "%s, %zu x %zu, problem %zu: %.9g as a batch, %.9g as a model, "
                         "%.9g by the tableau\n",
                         NameOf(input.instance.family), input.instance.rows, input.instance.columns,
                         k, found, static_cast<double>(ofModel), tableau.objective);
            return false;
        }
    }
    return true;
}

void AddBatches(std::vector<Turn>* turns, Problems* problems)
{
    const double count = static_cast<double>(problems->Inputs().size());
    const auto add = [&](const char* name, const nuv::BatchWay& way) {
        turns->push_back({name, count, [problems, way] { problems->SolveBy(way); }});
    };
    const nuv::BatchWay own = problems->OwnWay();
    add("batch", own);
    const nuv::Kernels* const kernels = own.kernels;
    if (const nuv::LaneLoops* const lanes = nuv::LanesOf(nuv::InstructionSet::Avx512))
        add("16 lanes", {kernels, lanes, nullptr});
    if (const nuv::LaneLoops* const lanes = nuv::LanesOf(nuv::InstructionSet::Avx2))
        add("8 lanes", {nuv::KernelsOf(nuv::InstructionSet::Avx2), lanes, nullptr});
    add("one by one", {kernels, nullptr, nullptr});
}

/// The tableau alone: two readings of a clock for each problem would take half of its time.
void AddTableau(std::vector<Turn>* turns, const std::vector<Input>& inputs)
{
    turns->push_back({kTableau, static_cast<double>(inputs.size()),
                      [&inputs]
                      {
                          for (const Input& input : inputs)
                              (void)SolveByNativeTableau(input.instance,
                                                         TableauLimit(input.instance));
                      }});
}

void AddLibraries(std::vector<Turn>* turns, const std::vector<Input>& inputs)
{
    // A library takes so long for one that a few are enough.
    const std::size_t count = std::min<std::size_t>(16, inputs.size());
    for (const Contender& contender : Contenders())
    {
        if (contender.version()[0] == '\0')
            continue;
        std::string name = contender.name;
        if (contender.setting[0] != '\0')
            name += std::string(", ") + contender.setting;
        turns->push_back({name, static_cast<double>(count),
                          [&inputs, &contender, count]
                          {
                              for (std::size_t k = 0; k != count; ++k)
                                  (void)contender.run(inputs[k], {1.0, Clock::Monotonic});
                          }});
    }
}

bool Measure(const Shape& shape, const Arguments& arguments, std::FILE* file)
{
    Problems problems(shape, CountFor(shape));
    problems.SolveBy(problems.OwnWay());
    const bool isAgreed = Agree(problems);
    const double count = static_cast<double>(problems.Inputs().size());
    Models models(std::span(problems.Inputs()).first(kFewModels));
    std::vector<Turn> turns;
    AddBatches(&turns, &problems);
    turns.push_back({"models", kFewModels, [&] { models.SolveAll(); }});
    turns.push_back({"new models", count, [&] { SolveNewModels(problems.Inputs()); }});
    AddTableau(&turns, problems.Inputs());
    if (arguments.hasLibraries)
        AddLibraries(&turns, problems.Inputs());
    TakeTurns(&turns, arguments.isQuick ? TurnEffort{1e-3, 5} : TurnEffort{4e-3, 11});

    double tableau = 0.0;
    for (const Turn& turn : turns)
        tableau = turn.name == kTableau ? MedianOf(turn.seconds) : tableau;
    std::printf("%s, %zu x %zu, %.1f pivots\n", NameOf(shape.family), shape.rows, shape.columns,
                problems.MeanPivots());
    for (const Turn& turn : turns)
    {
        const double seconds = MedianOf(turn.seconds);
        std::printf("  %-18s %10.3f us  tableau / it %.2f\n", turn.name.c_str(), seconds * 1e6,
                    tableau / seconds);
        if (!file)
            continue;
        JsonLine line("small");
        line.Add("family", NameOf(shape.family)).Add("rows", shape.rows);
        line.Add("columns", shape.columns).Add("pivots", problems.MeanPivots());
        line.Add("contender", turn.name).Add("seconds", seconds);
        std::fputs(line.Text().c_str(), file);
    }
    std::fflush(stdout);
    return isAgreed;
}

bool Parse(int count, char** words, Arguments* arguments)
{
    for (int i = 1; i < count; ++i)
    {
        const std::string word = words[i];
        if (word == "--quick")
            arguments->isQuick = true;
        else if (word == "--ours")
            arguments->hasLibraries = false;
        else if (word == "--output" && i + 1 < count)
            arguments->output = words[++i];
        else if (word == "--shape" && i + 3 < count)
        {
            Shape shape = {Family::Positive, std::strtoul(words[i + 2], nullptr, 10),
                           std::strtoul(words[i + 3], nullptr, 10)};
            if (!FindFamily(words[i + 1], &shape.family) || shape.rows < 2 || shape.columns < 2)
                return false;
            arguments->single = shape;
            i += 3;
        }
        else
            return false;
    }
    return true;
}

int Main(const Arguments& arguments)
{
    std::FILE* const file = arguments.output ? std::fopen(arguments.output, "w") : nullptr;
    if (arguments.output && !file)
    {
        std::perror(arguments.output);
        return EXIT_FAILURE;
    }
    bool isAgreed = true;
    if (arguments.single)
        isAgreed = Measure(*arguments.single, arguments, file);
    else
        for (const Shape& shape : kShapes)
            isAgreed = Measure(shape, arguments, file) && isAgreed;
    if (file)
        std::fclose(file);
    return isAgreed ? EXIT_SUCCESS : EXIT_FAILURE;
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    bench::Arguments arguments;
    if (bench::Parse(count, words, &arguments))
        return bench::Main(arguments);
    std::fprintf(stderr, "usage: bench_small [--quick] [--shape FAMILY ROWS COLUMNS] [--ours] "
                         "[--output FILE]\n");
    return 64;
}
