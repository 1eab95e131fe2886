// The measured blocks of docs/performance.md, in Markdown. Every figure in that document stands in
// one of them.
#ifndef BENCH_TABLES_HPP
#define BENCH_TABLES_HPP

#include <string>

#include "bench/Results.hpp"

namespace bench
{
/// The machine, its caches, the compiler and the libraries compared with.
std::string MachineBlock(const Results& results);
/// Aim against measured, and what falls short.
std::string AimsBlock(const Results& results);
/// Every instance, every contender.
std::string ComparisonBlock(const Results& results);
/// Building, first and further solves.
std::string StepsBlock(const Results& results);
/// Products, inversions and settled pivots against the limit.
std::string KernelsBlock(const Results& results);
/// Time per pivot against m and n, with the fitted exponents.
std::string GrowthBlock(const Results& results);
/// Memory against m and n, with the fitted exponents.
std::string MemoryBlock(const Results& results);

/// A time with its unit, to three digits.
std::string TimeText(double seconds);
/// A whole number.
std::string CountText(double number);
/// A number to so many significant digits, never in exponent notation.
std::string NumberText(double number, int digits);
}  // namespace bench

#endif
