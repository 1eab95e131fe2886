// The passes. The lanes are arrays of a fixed length, which every compiler turns into vectors.
#include "bench/contenders/Streaming.hpp"

#include <vector>

#include "bench/Stopwatch.hpp"

namespace bench
{
namespace
{
/// Floats that a step of the reading loop handles: enough independent sums to hide the latency of
/// an addition behind the loads.
constexpr std::size_t kLanes = 128;

void UpdateInPlace(float* __restrict x, std::size_t floats, float addend)
{
    for (std::size_t i = 0; i < floats; ++i)
        x[i] += addend;
}

void Read(const float* __restrict x, std::size_t floats, float* __restrict result)
{
    float sums[kLanes];
    for (std::size_t k = 0; k < kLanes; ++k)
        sums[k] = result[k];
    const std::size_t whole = floats / kLanes * kLanes;
    for (std::size_t i = 0; i < whole; i += kLanes)
        for (std::size_t k = 0; k < kLanes; ++k)
            sums[k] += x[i + k];
    for (std::size_t k = 0; k < kLanes; ++k)
        result[k] = sums[k];
    for (std::size_t i = whole; i < floats; ++i)
        result[i - whole] += x[i];
}
}  // namespace

StreamingPass::Floats StreamingPass::Take(std::size_t floats)
{
    // Rounded up to whole cache lines, as the allocation asks for.
    const std::size_t padded = (floats / kLanes + 1) * kLanes;
    Floats taken(
        static_cast<float*>(std::aligned_alloc(kLanes * sizeof(float), padded * sizeof(float))));
    for (std::size_t i = 0; i < padded; ++i)
        taken[i] = 1.0F;
    return taken;
}

StreamingPass::StreamingPass(std::size_t updatedCount, std::size_t readCount)
    : updatedFloats(updatedCount),
      readFloats(readCount),
      updated(Take(updatedCount)),
      read(Take(readCount)),
      sums(Take(kLanes))
{
}

void StreamingPass::Pass()
{
    UpdateInPlace(updated.get(), updatedFloats, addend);
    Read(read.get(), readFloats, sums.get());
    // The values stay small for ever.
    addend = -addend;
}

double StreamingPass::Seconds(double duration)
{
    // A sample is long against the clock's resolution, and there are enough samples for a median.
    const double target = std::min(duration / 5.0, 100e-6);
    std::size_t passes = 1;
    Stopwatch watch;
    for (Pass(); watch.Seconds() < target; watch.Restart())
    {
        passes *= 2;
        watch.Restart();
        for (std::size_t i = 0; i < passes; ++i)
            Pass();
        if (watch.Seconds() >= target)
            break;
    }
    std::vector<double> samples;
    const Stopwatch whole;
    while (samples.size() < 5 || whole.Seconds() < duration)
    {
        watch.Restart();
        for (std::size_t i = 0; i < passes; ++i)
            Pass();
        samples.push_back(watch.Seconds() / static_cast<double>(passes));
    }
    return MedianOf(samples);
}
}  // namespace bench
