// Models out of files and into files, and the same in memory.
#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/Texts.hpp"
#include "Nuv/Io/Lp/LpReader.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/Mps/MpsReader.hpp"
#include "Nuv/Io/Mps/MpsWriter.hpp"
#include "Nuv/Io/TextFile.hpp"

#include <limits>

namespace nuv::c
{
namespace
{

constexpr std::uint32_t kFormats = 5;

MpsForm MpsFormOf(std::uint32_t format)
{
    return format == NUV_FORMAT_MpsFixed  ? MpsForm::Fixed
           : format == NUV_FORMAT_MpsFree ? MpsForm::Free
                                          : MpsForm::ByContent;
}

NuvReadOptions OptionsOf(const NuvReadOptions* options)
{
    NuvReadOptions taken{};
    if (options)
        taken = TakeIn(options, "options");
    RequireOneOf(taken.format, kFormats, "format");
    return taken;
}

ReadResult ReadAs(const NuvReadOptions& options, std::string_view text, const std::string& path)
{
    ReadOptions read;
    read.relax = options.relax != 0;
    read.mpsConstantPlus = options.mpsConstantPlus != 0;
    read.mpsSenseComment = options.mpsSenseComment != 0;
    read.mpsForm = MpsFormOf(options.format);
    switch (options.format)
    {
    case NUV_FORMAT_ByContent:
        return ReadModel(text, path, read);
    case NUV_FORMAT_Lp:
        return ReadLp(text, DisplayName(path), read);
    default:
        return ReadMps(text, DisplayName(path), read);
    }
}

/// Makes `handle` the model in a text that was read, or could not be.
void Load(NuvModel& handle, const Result<std::string>& text, const std::string& path,
          const NuvReadOptions& options, NuvDiagnostics* diagnostics)
{
    ReadResult reading = ReadAs(options, Readable(text), path);
    if (reading.model)
        handle.model = std::make_shared<Model>(std::move(*reading.model));
    HandOver(reading.diagnostics, diagnostics);
    if (!reading.model)
        throw Failure{NUV_MODELRESULT_BadText, {}};
}

std::string TextOf(const Model& model, std::uint32_t format, NuvDiagnostics* diagnostics)
{
    WriteResult writing =
        format == NUV_FORMAT_Lp ? WriteLp(model) : WriteMps(model, MpsFormOf(format));
    HandOver(writing.diagnostics, diagnostics);
    if (!writing.text)
        throw Failure{NUV_MODELRESULT_CannotWrite, {}};
    return std::move(*writing.text);
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvReadOptionsInit(NuvReadOptions* options, uint32_t size)
{
    return Guarded(nullptr, [&] { FillIn(options, "options", NuvReadOptions{}, size); });
}

NuvModelResult NuvModelRead(NuvModel* model, const char* path, const NuvReadOptions* options,
                            NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       const std::string name = &Given(path, "path");
                       const NuvReadOptions taken = OptionsOf(options);
                       Load(handle, nuv::ReadTextFile(name), name, taken, diagnostics);
                   });
}

NuvModelResult NuvModelReadText(NuvModel* model, const char* text, uint64_t size, const char* name,
                                const NuvReadOptions* options, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       NuvModel& handle = Checked(model);
                       std::string bytes = BytesOf(text, size);
                       const std::string path = name ? name : "";
                       const NuvReadOptions taken = OptionsOf(options);
                       Load(handle, nuv::Unpacked(std::move(bytes), path), path, taken,
                            diagnostics);
                   });
}

NuvModelResult NuvModelWrite(const NuvModel* model, const char* path, uint32_t format,
                             NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       const nuv::Model& held = *Checked(model).model;
                       const std::string name = &Given(path, "path");
                       RequireOneOf(format, kFormats, "format");
                       if (format == NUV_FORMAT_ByContent)
                           format = nuv::FormatOf({}, name) == nuv::ModelFormat::Mps
                                        ? NUV_FORMAT_Mps
                                        : NUV_FORMAT_Lp;
                       const std::string text = TextOf(held, format, diagnostics);
                       if (const auto error = nuv::WriteTextFile(name, text))
                           Fail(NUV_MODELRESULT_CannotWrite, *error);
                   });
}

NuvModelResult NuvModelMakeText(const NuvModel* model, uint32_t format, NuvText** text,
                                NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(text, "text") = nullptr;
                       const nuv::Model& held = *Checked(model).model;
                       RequireOneOf(format, kFormats, "format");
                       if (format == NUV_FORMAT_ByContent)
                           format = NUV_FORMAT_Lp;
                       MakeText(text, TextOf(held, format, diagnostics));
                   });
}
