// What a program for WebAssembly asks of JavaScript.
#pragma once

#include <cstddef>
#include <cstdint>

#define NUV_HOST(name) __attribute__((import_module("host"), import_name(name))) extern "C"
#define NUV_EXPORT(name) __attribute__((export_name(name))) extern "C"

/// Seconds on a clock that never goes back.
NUV_HOST("seconds") double HostSeconds();
/// Writes the shortest decimal that reads back as `value`, as JavaScript has it. @return its
/// length.
NUV_HOST("write") std::uint32_t HostWrite(double value, char* text);
/// The double nearest to a decimal.
NUV_HOST("read") double HostRead(const char* text, std::size_t size);
/// @return 0 to end the solve.
NUV_HOST("progress")
std::int32_t HostProgress(std::uint32_t stage, double pivots, double seconds, double objective,
                          std::uint32_t feasible);
/// Leaves the call by an exception of JavaScript's, which says why: a result of the C interface,
/// and where it has more to say an error's code, text and hint.
NUV_HOST("fail")
[[noreturn]] void HostFail(std::uint32_t reason, const char* code = "", const char* text = "",
                           const char* hint = "");
