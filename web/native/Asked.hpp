/// What a solve is asked for by JavaScript, besides its limits.
#pragma once

#include "Host.hpp"

enum Flag : std::uint32_t
{
    WithSensitivity = 1,
    WithExact = 2,
    WithPath = 4,
    WithProgress = 8,
    StoredNumbers = 16,
};
