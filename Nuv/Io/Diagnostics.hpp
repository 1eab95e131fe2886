/// What a reader has to say about a file: errors, warnings and notes, each with its place, and the
/// form in which people see them:
///
///     factory.lp:7:3: warning: the upper bound -3 of 'x' is below its lower bound 0
///     [lp.negative-upper-bound]
///       x <= -3
///       ^
///       hint: write -inf <= x <= -3 if x may be negative
///
/// How a reader uses it: make one DiagnosticLog over the whole text, report with the byte offset
/// (or a pointer into the text) where the trouble stands, and hand Take() over with the model. The
/// first Error ends the reading: nothing is loaded. Of two errors, which a reader may meet in any
/// order, the one that comes first in the text is kept. The log finds line and column itself, so
/// that a reader which has nothing to say pays nothing for positions; it keeps the source line with
/// each diagnostic, so that the text may go away; and it keeps the first few of each code and
/// counts the others, so that a file with a million oddities has a short report.
#pragma once

#include "Nuv/Model/Error.hpp"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace nuv
{

/// How serious a diagnostic is: an error ends what was tried, a warning says that the result may
/// not be what was meant, a note explains.
enum class Severity
{
    Error,
    Warning,
    Note
};

/// One thing that reading or writing had to say.
struct Diagnostic
{
    Severity severity = Severity::Error;  ///< an error has ended what was tried
    /// What happened and where. Columns count characters, not bytes; a tab is one.
    Error error;
    /// The part of the source line around the place, tabs expanded, ready to print; empty if there
    /// is no place.
    std::string excerpt;
    /// Where the caret goes, in columns of the terminal from the start of the excerpt.
    std::size_t caret = 0;
};

/// "error", "warning" or "note".
[[nodiscard]] std::string_view SeverityName(Severity severity) noexcept;

/// The form above, with a line feed at its end. Lines that the diagnostic has nothing for are left
/// out.
[[nodiscard]] std::string Render(const Diagnostic& diagnostic, bool colour = false);

/// A diagnostic about a whole file or a model, without a place.
[[nodiscard]] Diagnostic WithoutPlace(Error error, Severity severity = Severity::Error);

/// Collects what is said about one text; places are pointers into it.
class DiagnosticLog
{
public:
    /// Of each code this many are kept.
    static constexpr std::size_t kKeptPerCode = 10;

    /// `text` is the whole file and outlives the log.
    DiagnosticLog(std::string_view file, std::string_view text) : m_file(file), m_text(text) {}

    ///@{
    /// Each returns false, so that a parser can write `return log.Fail(...)`.
    bool Fail(const char* at, std::string code, std::string text, std::string hint = {});
    bool Warn(const char* at, std::string code, std::string text, std::string hint = {});
    bool Note(const char* at, std::string code, std::string text, std::string hint = {});
    ///@}

    ///@{
    /// Counts one more of `code` and tells whether it is among the first few, so that its text is
    /// worth composing. Warn and Note count by themselves; ask before them only where they may be
    /// called very often.
    [[nodiscard]] bool Full(std::string_view code) const noexcept;
    void CountOnly(std::string_view code);
    ///@}

    /// The line of a place, from 1.
    [[nodiscard]] std::size_t LineOf(const char* at);

    /// Whether Fail was called.
    [[nodiscard]] bool HasError() const noexcept
    {
        return m_errorPlace != nullptr;
    }

    /// All diagnostics in the order of reporting; where some were only counted, a note says how
    /// many.
    [[nodiscard]] std::vector<Diagnostic> Take();

private:
    struct Tally
    {
        std::string code;
        std::size_t count;
    };

    void Report(Severity severity, const char* at, std::string code, std::string text,
                std::string hint);
    Tally& TallyOf(std::string_view code);

    std::string m_file;
    std::string_view m_text;
    std::vector<Diagnostic> m_diagnostics;
    std::vector<Tally> m_tallies;
    const char* m_errorPlace = nullptr;  ///< of the error, if there is one
    // The last place asked for: places mostly come in order, so each line is counted once.
    std::size_t m_knownOffset = 0;
    std::size_t m_knownLine = 1;
};

}  // namespace nuv
