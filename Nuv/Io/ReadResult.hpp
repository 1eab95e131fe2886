/// What every reader of model files takes and gives: text in, a model or the reason why there is
/// none out, and in both cases all that is worth saying about the file.
#pragma once

#include "Nuv/Io/Diagnostics.hpp"
#include "Nuv/Model/Model.hpp"

#include <optional>
#include <string_view>
#include <vector>

namespace nuv
{

/// Where the fields of an MPS file lie: in fixed columns, or anywhere with blanks between them.
enum class MpsForm
{
    ByContent,
    Fixed,
    Free
};

/// What a reader is to make of what formats leave open.
struct ReadOptions
{
    /// Takes integer and binary variables for continuous ones within their bounds, with a warning,
    /// instead of refusing them.
    bool relax = false;
    MpsForm mpsForm = MpsForm::ByContent;  ///< of MPS files
    /// Takes the right-hand side of an MPS file's objective row for the objective's constant as it
    /// stands, not for the constant's negative.
    bool mpsConstantPlus = false;
    /// Obeys a comment `*SENSE:Maximize` of an MPS file that has no OBJSENSE.
    bool mpsSenseComment = false;
};

/// A model that was read, or why there is none.
struct ReadResult
{
    /// Empty if there was an error; nothing is loaded by halves.
    std::optional<Model> model;
    std::vector<Diagnostic> diagnostics;  ///< in the order of their places

    /// Whether there is a model.
    [[nodiscard]] bool Ok() const noexcept
    {
        return model.has_value();
    }
    /// The error that ended the reading. Only after !Ok().
    [[nodiscard]] const Error& GetError() const noexcept
    {
        for (const Diagnostic& diagnostic : diagnostics)
        {
            if (diagnostic.severity == Severity::Error)
                return diagnostic.error;
        }
        static const Error kNone;
        return kNone;
    }
};

/// The text behind a byte-order mark, which is no part of the first line.
[[nodiscard]] inline std::string_view WithoutByteOrderMark(std::string_view text) noexcept
{
    if (text.starts_with("\xEF\xBB\xBF"))
        text.remove_prefix(3);
    return text;
}

}  // namespace nuv
