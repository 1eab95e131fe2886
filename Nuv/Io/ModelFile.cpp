/// Which reader a file is for. What the text looks like counts before what the file is called; the
/// name decides only about text that looks like neither format.
#include "Nuv/Io/ModelFile.hpp"

#include "Nuv/Io/LetterCase.hpp"
#include "Nuv/Io/Lp/LpKeywords.hpp"
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/Mps/MpsLine.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/TextFile.hpp"

#include <algorithm>
#include <utility>

namespace nuv
{
namespace
{

bool EndsWith(std::string_view path, std::string_view ending) noexcept
{
    return path.size() >= ending.size() &&
           EqualsIgnoringCase(path.substr(path.size() - ending.size()), ending);
}

bool EndsLikeMps(std::string_view path) noexcept
{
    if (EndsWith(path, ".gz"))
        path.remove_suffix(3);
    return EndsWith(path, ".mps") || EndsWith(path, ".sif") || EndsWith(path, ".qps");
}

/// Whether the text opens the way an MPS file does: with a comment, or a section in the first
/// column.
bool OpensLikeMps(std::string_view text) noexcept
{
    mps::Lines lines(text);
    const mps::Line line = lines.Next();
    if (mps::Trimmed(line.text).starts_with('*'))
        return true;
    if (line.kind != mps::LineKind::Header)
        return false;
    const mps::Words words = mps::SplitWords(line.text);
    constexpr std::string_view kOpenings[] = {"name", "rows", "objsense", "objname"};
    return std::any_of(std::begin(kOpenings), std::end(kOpenings),
                       [&](std::string_view opening)
                       { return EqualsIgnoringCase(words.word[0], opening); });
}

/// Whether the text opens with a comment or with the sense of the objective, as LP files do.
bool OpensLikeLp(std::string_view text) noexcept
{
    if (text.starts_with('\\'))
        return true;
    lp::Lexer lexer(text);
    const lp::Token token = lexer.Next();
    const lp::Section section = lp::MatchKeyword(token, lexer).section;
    return section == lp::Section::Maximize || section == lp::Section::Minimize;
}

}  // namespace

ModelFormat FormatOf(std::string_view text, std::string_view path) noexcept
{
    text = WithoutByteOrderMark(text);
    if (OpensLikeMps(text))
        return ModelFormat::Mps;
    return EndsLikeMps(path) && !OpensLikeLp(text) ? ModelFormat::Mps : ModelFormat::Lp;
}

ReadResult ReadModel(std::string_view text, const std::string& path, const ReadOptions& options)
{
    return FormatOf(text, path) == ModelFormat::Mps ? ReadMps(text, DisplayName(path), options)
                                                    : ReadLp(text, DisplayName(path), options);
}

ReadResult ReadModelFile(const std::string& path, const ReadOptions& options)
{
    const Result<std::string> text = ReadTextFile(path);
    if (!text)
    {
        ReadResult reading;
        reading.diagnostics.push_back(WithoutPlace(text.GetError()));
        return reading;
    }
    return ReadModel(*text, path, options);
}

WriteResult WriteModel(const Model& model, std::string_view path)
{
    return FormatOf({}, path) == ModelFormat::Mps ? WriteMps(model) : WriteLp(model);
}

Result<Model> Model::Read(const std::string& path)
{
    ReadResult reading = ReadModelFile(path);
    if (!reading.Ok())
        return reading.GetError();
    return std::move(*reading.model);
}

std::optional<Error> Model::Write(const std::string& path) const
{
    if (m_failure)
        return m_failure;
    const WriteResult writing = WriteModel(*this, path);
    return writing.Ok() ? WriteTextFile(path, *writing.text) : writing.GetError();
}

}  // namespace nuv
