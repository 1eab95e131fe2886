/// Arrays of the caller's: their lengths are checked against each other and their numbers before
/// any of them reaches a model.
#pragma once

#include "Nuv/CInterface/Handles.hpp"
#include "Nuv/SparseSimplex/Basis.hpp"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace nuv::c
{

/// Number k of an array that may be null.
[[nodiscard]] inline double At(const double* numbers, std::uint32_t k, double otherwise) noexcept
{
    return numbers ? numbers[k] : otherwise;
}

/// The bounds that two arrays have at k. Fails with InvalidModel where no number could keep them;
/// `what` is "column" or "row", `index` its number in the model.
[[nodiscard]] Bounds BoundsAt(const double* lower, const double* upper, std::uint32_t k,
                              Bounds otherwise, const char* what, std::uint32_t index);

/// Fails with InvalidModel where `value` is not finite.
double Finite(double value, const char* what, std::uint32_t index);

/// Names that lie one behind the other, each ended by a NUL. All are empty where there is no block.
class Names
{
public:
    Names(const char* block, std::uint64_t size, std::uint32_t count);

    /// The next name; to be asked `count` times at most.
    [[nodiscard]] std::string_view Next() noexcept;

private:
    std::string_view m_rest;
};

/// Sparse vectors of the caller's, each with increasing places in `starts` and no index twice.
struct Vectors
{
    std::uint32_t count = 0;
    const std::uint64_t* starts = nullptr;  ///< null: all are empty
    const std::uint32_t* indices = nullptr;
    const double* values = nullptr;

    [[nodiscard]] std::span<const std::uint32_t> Indices(std::uint32_t k) const noexcept;
    [[nodiscard]] std::span<const double> Values(std::uint32_t k) const noexcept;

    /// Fails unless all is as it should be: indices below `indexCount`, finite values. `what` is
    /// "row" or "column", `first` the number in the model of the first of them.
    void Check(std::uint32_t indexCount, const char* what, std::uint32_t first) const;
};

/// `indices`, or the first `count` where that is null; fails unless all are below `size`.
void CheckIndices(const std::uint32_t* indices, std::uint32_t count, std::uint32_t size,
                  const char* what);

/// NUV_BASISSTATUS_... of the caller's; fails with InvalidArgument for any other number.
[[nodiscard]] std::vector<BasisStatus> StatusesIn(const std::uint8_t* statuses,
                                                  std::uint32_t count);

}  // namespace nuv::c
