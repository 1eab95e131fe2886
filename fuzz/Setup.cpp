// Makes a broken expectation end the process, for every target.
#include "fuzz/Target.hpp"

#include <csignal>
#include <cstdlib>

extern "C" int LLVMFuzzerInitialize(int*, char***)
{
    GTEST_FLAG_SET(break_on_failure, true);
    // GoogleTest breaks into a debugger; the fuzzer keeps the inputs of those that abort.
    (void)std::signal(SIGTRAP, [](int) { std::abort(); });
    return 0;
}
