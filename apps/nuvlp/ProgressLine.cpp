#include "ProgressLine.hpp"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include <unistd.h>

namespace nuvlp
{
namespace
{

constexpr double kSecondsBetween = 0.1;

}  // namespace

std::string ProgressText(const nuv::Progress& progress, double rate)
{
    constexpr const char* kStages[] = {"single precision", "double precision", "exact"};
    std::string text = fmt::format("{}  {} pivots  {:.0f}/s  {:.1f} s",
                                   kStages[static_cast<std::size_t>(progress.stage)],
                                   progress.pivots, rate, progress.seconds);
    if (!std::isnan(progress.objective))
        text += fmt::format("  {} {:.6g}", progress.feasible ? "objective" : "infeasible by",
                            progress.objective);
    return text;
}

ProgressLine::ProgressLine(bool isWanted) : m_isShown(isWanted && isatty(STDERR_FILENO) != 0) {}

ProgressLine::~ProgressLine()
{
    Clear();
}

void ProgressLine::Show(const nuv::Progress& progress)
{
    if (!m_isShown)
        return;
    if (m_shownAt < 0.0 || progress.stage != m_stage)
        m_stageSince = progress.seconds;
    else if (progress.seconds < m_shownAt + kSecondsBetween)
        return;
    m_stage = progress.stage;
    m_shownAt = progress.seconds;
    const double elapsed = progress.seconds - m_stageSince;
    const double rate = elapsed > 0.0 ? static_cast<double>(progress.pivots) / elapsed : 0.0;
    const std::string text = ProgressText(progress, rate);
    // Blanks wipe what a longer line before it left, on any terminal.
    std::fprintf(stderr, "\r%s%*s", text.c_str(),
                 static_cast<int>(m_length - std::min(m_length, text.size())), "");
    std::fflush(stderr);
    m_length = std::max(m_length, text.size());
}

void ProgressLine::Clear()
{
    if (m_length == 0)
        return;
    std::fprintf(stderr, "\r%*s\r", static_cast<int>(m_length), "");
    std::fflush(stderr);
    m_length = 0;
}

}  // namespace nuvlp
