/// A line on the terminal that says how far a solve is, and is gone when the solve is over.
#pragma once

#include "Nuv/Solve/Solution.hpp"

#include <cstddef>
#include <string>

namespace nuvlp
{

class ProgressLine
{
public:
    /// Shows nothing unless it is wanted and stderr is a terminal.
    explicit ProgressLine(bool isWanted);
    ~ProgressLine();
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    /// Shows the first state of a solve, and later ones a few times a second.
    void Show(const nuv::Progress& progress);
    void Clear();

private:
    bool m_isShown;
    std::size_t m_length = 0;  ///< of the line that stands there
    double m_shownAt = -1.0;   ///< seconds of the solve
    double m_stageSince = 0.0;
    nuv::Stage m_stage = nuv::Stage::SinglePrecision;
};

/// "double precision  1234 pivots  220/s  objective 42.5"; `rate` is in pivots a second.
[[nodiscard]] std::string ProgressText(const nuv::Progress& progress, double rate);

}  // namespace nuvlp
