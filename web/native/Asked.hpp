/// What a solve is asked for by JavaScript.
#pragma once

#include "Host.hpp"

#include "Nuv/Model/NuvModel.h"

inline int32_t TellProgress(void* /*userData*/, const NuvProgress* progress)
{
    return HostProgress(progress->stage, static_cast<double>(progress->pivots), progress->seconds,
                        progress->objective, progress->feasible);
}

/// What a solve is asked for, besides its limits.
enum Flag : std::uint32_t
{
    WithSensitivity = 1,
    WithExact = 2,
    WithPath = 4,
    WithProgress = 8,
    StoredNumbers = 16,
};

inline NuvSolveOptions OptionsOf(std::uint32_t flags, double seconds, double pivots)
{
    NuvSolveOptions options;
    (void)NuvSolveOptionsInit(&options, sizeof options);
    options.sensitivity = flags & WithSensitivity;
    options.exact = flags & WithExact;
    options.numbers = flags & StoredNumbers ? NUV_NUMBERS_Stored : NUV_NUMBERS_Written;
    options.seconds = seconds;
    if (pivots < 9e15)
        options.doublePivots = options.exactPivots = static_cast<uint64_t>(pivots);
    if (flags & WithProgress)
        options.progress = TellProgress;
    return options;
}
