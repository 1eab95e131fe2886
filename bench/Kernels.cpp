// The parts that a solve's time goes into, against what the machine's memory allows: products with
// a vector and inversions by the streams that they cannot do without, whole pivots by a pass over
// the inverse (read and written) and the matrix (read). The sizes step through the caches.
#include <initializer_list>
#include <string>

#include "bench/contenders/Contender.hpp"
#include "bench/ResultFile.hpp"
#include "bench/Stopwatch.hpp"
#include "bench/contenders/Streaming.hpp"

namespace bench
{
namespace
{
/// A matrix of small numbers on the heap, with a diagonal that keeps it well away from singular.
class Matrix
{
public:
    Matrix(std::size_t rows, std::size_t columns)
    {
        NuvMatrix_NuvFloat32Construct(&matrix, static_cast<NuvUint>(rows),
                                      static_cast<NuvUint>(columns), nuv::HeapAllocator());
        for (std::size_t i = 0; i < rows; ++i)
            for (std::size_t j = 0; j < columns; ++j)
                matrix.data[i * columns + j] =
                    static_cast<float>((i * 7 + j * 13) % 17) + (i == j ? 512.0F : 1.0F);
    }
    Matrix(const Matrix&) = delete;
    Matrix& operator=(const Matrix&) = delete;
    ~Matrix()
    {
        NuvMatrix_NuvFloat32Destruct(&matrix);
    }

    NuvMatrix_NuvFloat32* Get()
    {
        return &matrix;
    }

private:
    NuvMatrix_NuvFloat32 matrix;
};

/// Names what took `seconds` an iteration and how it compares with the limit.
void SetCounters(benchmark::State& state, std::size_t m, std::size_t n, double bytes, double limit,
                 double seconds)
{
    state.counters["m"] = static_cast<double>(m);
    state.counters["n"] = static_cast<double>(n);
    state.counters["bytes"] = bytes;
    state.counters["limit"] = limit;
    state.counters["ratio"] = seconds / limit;
    state.counters["median"] = seconds;
}

/// Times `step` by hand, in samples of at least 20 µs, and compares the median with the limit,
/// which is measured before and after.
template <class Step>
void Measure(benchmark::State& state, std::size_t m, std::size_t n, double passes,
             StreamingPass* pass, double workingSet, Step step)
{
    std::vector<double> samples;
    const double before = pass->Seconds(0.01);
    std::size_t repeats = 1;
    for (auto _ : state)
    {
        const Stopwatch watch;
        for (std::size_t i = 0; i < repeats; ++i)
            step();
        const double elapsed = watch.Seconds();
        samples.push_back(elapsed / static_cast<double>(repeats));
        state.SetIterationTime(elapsed);
        if (elapsed < 20e-6)
        {
            repeats *= 2;
            samples.clear();
        }
    }
    const double limit = passes * (before + pass->Seconds(0.01)) / 2.0;
    const double seconds = samples.empty() ? limit : MedianOf(samples);
    SetCounters(state, m, n, workingSet, limit, seconds);
}

void MatrixTimesColumn(benchmark::State& state, std::size_t m)
{
    Matrix matrix(m, m);
    Matrix column(m, 1);
    Matrix result(m, 1);
    StreamingPass pass(0, m * m);
    Measure(state, m, m, 1.0, &pass, pass.Bytes(),
            [&] { NuvMatrix_NuvFloat32Multiply(matrix.Get(), column.Get(), result.Get()); });
}

void RowTimesMatrix(benchmark::State& state, std::size_t m)
{
    Matrix row(1, m);
    Matrix matrix(m, m);
    Matrix result(1, m);
    StreamingPass pass(0, m * m);
    Measure(state, m, m, 1.0, &pass, pass.Bytes(),
            [&] { NuvMatrix_NuvFloat32Multiply(row.Get(), matrix.Get(), result.Get()); });
}

/// Against one stream per inner index over the m × m sums, which a product without blocking makes.
void MatrixTimesMatrix(benchmark::State& state, std::size_t m)
{
    Matrix x(m, m);
    Matrix y(m, m);
    Matrix result(m, m);
    StreamingPass pass(m * m, 0);
    Measure(state, m, m, static_cast<double>(m), &pass, pass.Bytes() / 2.0 * 3.0,
            [&] { NuvMatrix_NuvFloat32Multiply(x.Get(), y.Get(), result.Get()); });
}

/// Against one pass per row over the matrix and its growing inverse, both read and written.
void Inverse(benchmark::State& state, std::size_t m)
{
    Matrix x(m, m);
    Matrix result(m, m);
    StreamingPass pass(2 * m * m, 0);
    Measure(state, m, m, static_cast<double>(m), &pass, pass.Bytes() / 2.0,
            [&] { NuvMatrix_NuvFloat32Inverse(x.Get(), result.Get()); });
}

/// The pivots of a solve's last third, when most columns of the inverse have filled up. The solve
/// ends after 3 m pivots.
class SettledPivots
{
public:
    SettledPivots(std::size_t m, std::size_t n)
        : input(MakeInput(MakeInstance(Family::NonDegenerate, m, n, 1))),
          program(BuildProgram(input))
    {
        last = CountPivots(input, 3 * m, 60.0).pivots;
        first = last - last / 3;
    }

    /// @return the seconds that these pivots take together.
    double Measure()
    {
        Stopwatch watch;
        double elapsed = 0.0;
        program.Solve(
            [&](const NuvLinearProgrammingPivot& pivot)
            {
                if (pivot.number == first)
                    watch.Restart();
                if (pivot.number == last)
                    elapsed = watch.Seconds();
                return pivot.number < last;
            });
        return elapsed;
    }

    double Count() const
    {
        return static_cast<double>(last - first);
    }

private:
    Input input;
    nuv::LinearProgram program;
    std::uint64_t first = 0;
    std::uint64_t last = 0;
};

void Pivots(benchmark::State& state, std::size_t m, std::size_t n)
{
    SettledPivots pivots(m, n);
    StreamingPass pass = PivotPass(m, n);
    std::vector<double> samples;
    const double before = pass.Seconds(0.01);
    for (auto _ : state)
    {
        const double elapsed = pivots.Measure();
        state.SetIterationTime(elapsed);
        samples.push_back(elapsed / pivots.Count());
    }
    const double limit = (before + pass.Seconds(0.01)) / 2.0;
    const double workingSet = static_cast<double>((m * m + m * n) * sizeof(float));
    SetCounters(state, m, n, workingSet, limit, MedianOf(samples));
}

void Register(bool isQuick)
{
    const auto add = [](const char* name, std::size_t m, auto step, auto... sizes)
    {
        benchmark::RegisterBenchmark((std::string(name) + "/" + std::to_string(m)).c_str(), step,
                                     sizes...)
            ->UseManualTime();
    };
    for (const std::size_t m : std::initializer_list<std::size_t>{40, 100, 200, 400, 1000})
    {
        add("matrix times column", m, MatrixTimesColumn, m);
        add("row times matrix", m, RowTimesMatrix, m);
    }
    for (const std::size_t m : std::initializer_list<std::size_t>{20, 50, 100, 200})
    {
        add("product", m, MatrixTimesMatrix, m);
        add("inverse", m, Inverse, m);
    }
    for (const std::size_t m : std::initializer_list<std::size_t>{20, 40, 100, 200, 400})
        add("pivots", m, Pivots, m, m);
    if (isQuick)
        return;
    add("pivots", 1000, Pivots, std::size_t(1000), std::size_t(1000));
    // Beyond most machines' last cache.
    add("pivots", 1500, Pivots, std::size_t(1500), std::size_t(6000));
}
}  // namespace
}  // namespace bench

int main(int count, char** words)
{
    // Of this program alone; the rest is for Google Benchmark.
    const bool isQuick = count > 1 && std::string_view(words[1]) == "--quick";
    if (isQuick)
    {
        words[1] = words[0];
        --count;
        ++words;
    }
    bench::Register(isQuick);
    return bench::RunBenchmarks("kernels", count, words);
}
