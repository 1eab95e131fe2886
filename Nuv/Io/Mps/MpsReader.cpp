/// Fixed or free: a file is read as free MPS first, since that is also how most fixed files can be
/// read. One that is not free MPS is tried by its columns; so is one that is, but whose records lie
/// so that the columns may mean something else.
#include "Nuv/Io/Mps/MpsReader.hpp"

#include "Nuv/Io/Mps/MpsParser.hpp"

#include <string>
#include <utility>

namespace nuv
{
namespace
{

constexpr const char* kBoth = "read as fixed MPS; free MPS reads the same";

ReadResult WithForm(ReadResult reading, std::string_view file, std::string text)
{
    Error error;
    error.code = "mps.form";
    error.file = file;
    error.text = std::move(text);
    reading.diagnostics.insert(reading.diagnostics.begin(),
                               WithoutPlace(std::move(error), Severity::Note));
    return reading;
}

ReadResult ReadByContent(std::string_view text, std::string_view file, const ReadOptions& options)
{
    mps::Parser free(text, file, options, MpsForm::Free);
    ReadResult freely = free.Run();
    if (freely.Ok() && free.FitsColumns())
        return WithForm(std::move(freely), file, kBoth);
    mps::Parser fixed(text, file, options, MpsForm::Fixed);
    ReadResult byColumns = fixed.Run();
    if (!byColumns.Ok())
    {
        // Of two refusals the one counts that came later: it understood more of the file.
        if (!freely.Ok() && free.Reached() < fixed.Reached())
            return WithForm(std::move(byColumns), file, "read as fixed MPS");
        return WithForm(std::move(freely), file, free.FitsColumns() ? kBoth : "read as free MPS");
    }
    if (freely.Ok())
    {
        Error error;
        error.code = "mps.two-forms";
        error.file = file;
        error.text = "this is both fixed and free MPS, and they differ; it is read as fixed";
        error.hint = "--mps-fixed or --mps-free says which of them is meant";
        byColumns.diagnostics.push_back(WithoutPlace(std::move(error), Severity::Warning));
    }
    return WithForm(std::move(byColumns), file, "read as fixed MPS");
}

}  // namespace

ReadResult ReadMps(std::string_view text, std::string_view file, const ReadOptions& options)
{
    text = WithoutByteOrderMark(text);
    if (options.mpsForm == MpsForm::ByContent)
        return ReadByContent(text, file, options);
    const bool fixed = options.mpsForm == MpsForm::Fixed;
    return WithForm(mps::Parser(text, file, options, options.mpsForm).Run(), file,
                    fixed ? "read as fixed MPS, as asked" : "read as free MPS, as asked");
}

}  // namespace nuv
