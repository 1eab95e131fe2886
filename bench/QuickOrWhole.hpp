// The command line of the benchmarks that know --quick and --output alone.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace bench
{
/// Runs with the file that --output names, or with none.
/// @return the program's exit code.
inline int RunQuickOrWhole(int count, char** words, const char* program,
                           void (*run)(bool isQuick, std::FILE* file))
{
    bool isQuick = false;
    const char* output = "/dev/null";
    for (int i = 1; i < count; ++i)
    {
        if (std::strcmp(words[i], "--quick") == 0)
            isQuick = true;
        else if (std::strcmp(words[i], "--output") == 0 && i + 1 < count)
            output = words[++i];
        else
        {
            std::fprintf(stderr, "usage: %s [--quick] [--output FILE]\n", program);
            return 64;
        }
    }
    std::FILE* const file = std::fopen(output, "w");
    if (!file)
    {
        std::perror(output);
        return EXIT_FAILURE;
    }
    run(isQuick, file);
    std::fclose(file);
    return EXIT_SUCCESS;
}
}  // namespace bench
