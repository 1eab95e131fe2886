// nuv_selftest: the self-test as a program of its own, for machines that have nothing else.
//
//     nuv_selftest [--instruction-set=machine|plain|baseline|avx2|avx512|all] [--models | --hashes]
//
// Exits with 0 when all is as promised, 70 when not, 64 for other arguments.
#include "Nuv/SelfTest/SelfTest.hpp"

#include <string.h>

namespace
{
constexpr char kInstructionSet[] = "--instruction-set=";
constexpr size_t kPrefixLength = sizeof kInstructionSet - 1;

int Usage()
{
    fputs("usage: nuv_selftest [--instruction-set=machine|plain|baseline|avx2|avx512|all]\n"
          "                    [--models | --hashes]\n",
          stderr);
    return 64;
}
}  // namespace

int main(int argc, char** argv)
{
    using namespace nuv::selftest;
    const char* loops = "all";
    for (int i = 1; i < argc; ++i)
    {
        if (strcmp(argv[i], "--models") == 0)
            return PrintModels(Loops::OfThisMachine, stdout), 0;
        if (strcmp(argv[i], "--hashes") == 0)
            return PrintHashes(Loops::OfThisMachine, stdout), 0;
        if (strncmp(argv[i], kInstructionSet, kPrefixLength) != 0)
            return Usage();
        loops = argv[i] + kPrefixLength;
    }
    const int code = RunByName(loops, stdout);
    return code == 64 ? Usage() : code;
}
