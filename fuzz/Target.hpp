// What every target includes: the entry that the fuzzer and the replay call, and the promise that
// one broken expectation of GoogleTest ends the process, as a crash does.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

/// @return 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
/// Called once before the first input.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);
