// The machine's limit: how fast it can update one array of floats in place and read another, with
// nothing else to do. A pivot of the revised simplex method cannot be faster than this pass over
// the inverse (read and written) and the matrix (read), unless it leaves parts of them alone.
#pragma once

#include <cstddef>
#include <cstdlib>
#include <memory>

namespace bench
{
class StreamingPass
{
public:
    StreamingPass(std::size_t updatedFloats, std::size_t readFloats);

    /// @return the median time of a pass when one follows the other for about `duration` seconds.
    double Seconds(double duration);

    /// Bytes read and written by a pass.
    double Bytes() const
    {
        return (2.0 * static_cast<double>(updatedFloats) + static_cast<double>(readFloats)) *
               static_cast<double>(sizeof(float));
    }

private:
    struct FreeMemory
    {
        void operator()(float* memory) const
        {
            std::free(memory);
        }
    };
    using Floats = std::unique_ptr<float[], FreeMemory>;

    std::size_t updatedFloats;
    std::size_t readFloats;
    Floats updated;
    Floats read;
    /// Sums of what was read, over all passes.
    Floats sums;
    float addend = 1.0F;

    static Floats Take(std::size_t floats);
    void Pass();
};

/// @return a pass over what a pivot of an m × n model touches.
inline StreamingPass PivotPass(std::size_t m, std::size_t n)
{
    return {m * m, m * n};
}
}  // namespace bench
