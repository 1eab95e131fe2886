// Running the corpus, and saying how it went.
#include "Nuv/SelfTest/SelfTest.hpp"

#include "Nuv/Corpus/Families.hpp"
#include "Nuv/Corpus/Hash.hpp"
#include "Nuv/SelfTest/Solving.hpp"
#include "Nuv/Utils/Kernels/Kernels.h"

#include <inttypes.h>
#include <string.h>

namespace nuv::selftest
{
using corpus::FamilyAt;
using corpus::FamilyCount;
using corpus::MakeModel;
using corpus::Model;

namespace
{
constexpr Loops kAllLoops[] = {Loops::OfThisMachine, Loops::Plain, Loops::Baseline, Loops::Avx2,
                               Loops::Avx512};
constexpr uint32_t kNumLoops = sizeof kAllLoops / sizeof *kAllLoops;

const char* NameOfStatus(uint32_t status)
{
    static const char* const kNames[] = {"ok", "invalid", "unbounded", "infeasible", "stopped"};
    return kNames[status];
}

bool PrintHost(FILE* out)
{
    const Host host = InspectHost();
    if (host.flushesResults || host.flushesOperands)
        fprintf(out, "This host flushes denormals to zero (%s%s%s): results will differ.\n",
                host.flushesResults ? "results" : "",
                host.flushesResults && host.flushesOperands ? " and " : "",
                host.flushesOperands ? "operands" : "");
    if (!host.roundsToNearest)
        fputs("This host does not round to nearest: results will differ.\n", out);
    return host.IsAsPromised();
}

void PrintHash(const char* name, uint64_t hash, FILE* out)
{
    fprintf(out, "{\"%s\", 0x%016" PRIX64 "U},\n", name, hash);
}

/// @return how many families differ.
uint32_t RunCorpus(Loops loops, FILE* out)
{
    fprintf(out, "instruction set: %s\n", NameOf(loops));
    uint32_t different = 0;
    uint32_t models = 0;
    uint64_t pivots = 0;
    for (uint32_t i = 0; i != FamilyCount(); ++i)
    {
        const corpus::Family& family = FamilyAt(i);
        const FamilyResult result = RunFamily(i, loops);
        const bool isSame = result.hash == corpus::GoldenHash(family.name);
        fprintf(out, "  %-22s %5u models %7u pivots  %016" PRIx64 "  %s\n", family.name,
                static_cast<unsigned>(family.models), static_cast<unsigned>(result.pivots),
                result.hash, isSame ? "same" : "DIFFERENT");
        models += family.models;
        pivots += result.pivots;
        different += isSame ? 0U : 1U;
    }
    fprintf(out, "  %-22s %5u models %7u pivots  ", "total", static_cast<unsigned>(models),
            static_cast<unsigned>(pivots));
    if (different == 0)
        fputs("the promised bits\n", out);
    else
        fprintf(out, "%u of %u families differ\n", static_cast<unsigned>(different),
                static_cast<unsigned>(FamilyCount()));
    return different;
}
}  // namespace

const char* NameOf(Loops loops)
{
    static const char* const kNames[] = {"machine", "plain", "baseline", "avx2", "avx512"};
    return kNames[static_cast<uint32_t>(loops)];
}

#if NUV_SELFTEST_CHOOSES_LOOPS
const Kernels* KernelsFor(Loops loops)
{
    switch (loops)
    {
    case Loops::Plain:
        return KernelsOf(InstructionSet::Plain);
    case Loops::Baseline:
        return KernelsOf(InstructionSet::Baseline);
    case Loops::Avx2:
        return KernelsOf(InstructionSet::Avx2);
    case Loops::Avx512:
        return KernelsOf(InstructionSet::Avx512);
    default:
        return nullptr;
    }
}

bool Has(Loops loops)
{
    return loops == Loops::OfThisMachine || KernelsFor(loops) != nullptr;
}
#else
bool Has(Loops loops)
{
    return loops == Loops::OfThisMachine;
}
#endif

FamilyResult RunFamily(uint32_t family, Loops loops)
{
    corpus::Hash hash;
    uint64_t pivots = 0;
    Model model;
    for (uint32_t number = 0; number != FamilyAt(family).models; ++number)
    {
        MakeModel(family, number, &model);
        const Outcome outcome = Solve(model.View(), loops);
        hash.Add(outcome.hash);
        pivots += outcome.pivots;
    }
    return {pivots, hash.Value()};
}

bool Run(const Loops* loops, uint32_t count, FILE* out)
{
    bool isAsPromised = PrintHost(out);
    for (uint32_t i = 0; i != count; ++i)
    {
        if (!Has(loops[i]))
        {
            fprintf(out, "instruction set: %s is not in this build or not on this machine\n",
                    NameOf(loops[i]));
            isAsPromised = false;
        }
        else if (RunCorpus(loops[i], out) != 0)
            isAsPromised = false;
    }
    return isAsPromised;
}

int RunByName(const char* name, FILE* out)
{
    const bool isAll = strcmp(name, "all") == 0;
    Loops chosen[kNumLoops];
    uint32_t count = 0;
    for (const Loops loops : kAllLoops)
        if (isAll ? Has(loops) : strcmp(name, NameOf(loops)) == 0)
            chosen[count++] = loops;
    if (count == 0)
        return 64;
    return Run(chosen, count, out) ? 0 : 70;
}

void PrintModels(Loops loops, FILE* out)
{
    Model model;
    for (uint32_t i = 0; i != FamilyCount(); ++i)
        for (uint32_t number = 0; number != FamilyAt(i).models; ++number)
        {
            MakeModel(i, number, &model);
            const Outcome outcome = Solve(model.View(), loops);
            fprintf(out, "%s %u: %u x %u %s %u %016" PRIx64 "\n", FamilyAt(i).name,
                    static_cast<unsigned>(number), static_cast<unsigned>(model.rows),
                    static_cast<unsigned>(model.columns), NameOfStatus(outcome.status),
                    static_cast<unsigned>(outcome.pivots), outcome.hash);
        }
}

uint64_t HashOfNamed(Model* model, Loops loops)
{
    return Solve(model->View(), loops, kPivotLimitOfNamed).hashOfAnswer;
}

void PrintHashes(Loops loops, FILE* out)
{
    fputs("// name, hash; `nuv_selftest --hashes` prints this file.\n// clang-format off\n", out);
    for (uint32_t i = 0; i != FamilyCount(); ++i)
        PrintHash(FamilyAt(i).name, RunFamily(i, loops).hash, out);
    for (uint32_t i = 0; i != corpus::NamedModelCount(); ++i)
    {
        Model model;
        const corpus::Name name = MakeNamedModel(i, &model);
        PrintHash(name.text, HashOfNamed(&model, loops), out);
    }
}
}  // namespace nuv::selftest
