/// What each stage of a solve did.
#pragma once

#include "Nuv/SparseSimplex/SolveControl.hpp"

#include <array>
#include <cstddef>
#include <cstdint>

namespace nuv
{

/// What one stage did.
struct StageRecord
{
    bool ran = false;          ///< whether it was begun
    std::uint64_t pivots = 0;  ///< wherever they were made, in auxiliary programs too
    double seconds = 0.0;      ///< of wall time
};

/// The records of all stages.
class StageRecords
{
public:
    ///@{
    /// Of one stage.
    [[nodiscard]] StageRecord& operator[](Stage stage) noexcept
    {
        return m_records[static_cast<std::size_t>(stage)];
    }
    [[nodiscard]] const StageRecord& operator[](Stage stage) const noexcept
    {
        return m_records[static_cast<std::size_t>(stage)];
    }
    ///@}

private:
    std::array<StageRecord, kStages> m_records;
};

}  // namespace nuv
