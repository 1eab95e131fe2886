// The choice of the float loops.
#include "Nuv/Utils/Kernels/Kernels.h"

#include "Nuv/Utils/Kernels/FloatContract.h"
#include "Nuv/Utils/Kernels/Switches.h"

namespace nuv
{
namespace
{
bool MachineHas(InstructionSet set)
{
#if defined(__GNUC__) && (defined(__x86_64__) || defined(__i386__))
    if (set == InstructionSet::Avx512)
        return __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
               __builtin_cpu_supports("avx512dq") && __builtin_cpu_supports("avx512vl");
    if (set == InstructionSet::Avx2)
        return __builtin_cpu_supports("avx2");
#endif
    return set == InstructionSet::Plain || set == InstructionSet::Baseline;
}
}  // namespace

const Kernels* KernelsOf(InstructionSet set)
{
    if (!MachineHas(set))
        return nullptr;
    switch (set)
    {
    case InstructionSet::Avx512:
        return Avx512Kernels();
    case InstructionSet::Avx2:
        return Avx2Kernels();
    case InstructionSet::Baseline:
        return BaselineKernels();
    default:
        return PlainKernels();
    }
}

const Kernels* KernelsOfThisMachine()
{
    const Kernels* found = switches.avx512 ? KernelsOf(InstructionSet::Avx512) : nullptr;
    if (!found && switches.avx2)
        found = KernelsOf(InstructionSet::Avx2);
    if (!found && switches.baseline)
        found = KernelsOf(InstructionSet::Baseline);
    return found ? found : PlainKernels();
}
}  // namespace nuv
