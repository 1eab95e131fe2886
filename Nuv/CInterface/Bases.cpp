// Bases as MPS basis files, between the caller's arrays and a model.
#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/CInterface/Texts.hpp"
#include "Nuv/Io/Basis/MpsBasisReader.hpp"
#include "Nuv/Io/Basis/MpsBasisWriter.hpp"
#include "Nuv/Io/TextFile.hpp"

#include <algorithm>

namespace nuv::c
{
namespace
{

/// Where a basis goes, as long as the model has columns and rows.
struct BasisArrays
{
    BasisArrays(const Model& model, std::uint8_t* columnBasis, std::uint32_t numColumns,
                std::uint8_t* rowBasis, std::uint32_t numRows)
        : columns(columnBasis), rows(rowBasis)
    {
        Require(numColumns == model.VariableCount() && numRows == model.RowCount(),
                "a basis is not as long as the model has columns or rows");
        Require((columnBasis || numColumns == 0) && (rowBasis || numRows == 0),
                "a basis is null, but has a length");
    }

    std::uint8_t* columns;
    std::uint8_t* rows;
};

void Load(const Model& model, const Result<std::string>& text, const std::string& name,
          const BasisArrays& arrays, NuvDiagnostics* diagnostics)
{
    const std::string& bytes = Readable(text);
    BasisReadResult reading = ReadMpsBasis(bytes, DisplayName(name), model);
    HandOver(reading.diagnostics, diagnostics);
    if (!reading.basis)
        throw Failure{NUV_MODELRESULT_BadText, {}};
    const auto copy = [](const std::vector<BasisStatus>& from, std::uint8_t* to)
    {
        std::ranges::transform(
            from, to, [](BasisStatus status) { return static_cast<std::uint8_t>(status); });
    };
    copy(reading.basis->columns, arrays.columns);
    copy(reading.basis->rows, arrays.rows);
}

std::string TextOf(const Model& model, const std::uint8_t* columnBasis, std::uint32_t numColumns,
                   const std::uint8_t* rowBasis, std::uint32_t numRows)
{
    const Basis basis{StatusesIn(columnBasis, numColumns), StatusesIn(rowBasis, numRows)};
    Result<std::string> text = WriteMpsBasis(model, basis);
    if (!text)
        Fail(NUV_MODELRESULT_CannotWrite, text.GetError());
    return std::move(*text);
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvModelReadBasis(const NuvModel* model, const char* path, uint8_t* columnBasis,
                                 uint32_t numColumns, uint8_t* rowBasis, uint32_t numRows,
                                 NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       const nuv::Model& held = *Checked(model).model;
                       const std::string name = &Given(path, "path");
                       const BasisArrays arrays(held, columnBasis, numColumns, rowBasis, numRows);
                       Load(held, nuv::ReadTextFile(name), name, arrays, diagnostics);
                   });
}

NuvModelResult NuvModelReadBasisText(const NuvModel* model, const char* text, uint64_t size,
                                     const char* name, uint8_t* columnBasis, uint32_t numColumns,
                                     uint8_t* rowBasis, uint32_t numRows,
                                     NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       const nuv::Model& held = *Checked(model).model;
                       const BasisArrays arrays(held, columnBasis, numColumns, rowBasis, numRows);
                       const std::string path = name ? name : "";
                       Load(held, nuv::Unpacked(BytesOf(text, size), path), path, arrays,
                            diagnostics);
                   });
}

NuvModelResult NuvModelWriteBasis(const NuvModel* model, const char* path,
                                  const uint8_t* columnBasis, uint32_t numColumns,
                                  const uint8_t* rowBasis, uint32_t numRows,
                                  NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       const nuv::Model& held = *Checked(model).model;
                       const std::string name = &Given(path, "path");
                       const std::string text =
                           TextOf(held, columnBasis, numColumns, rowBasis, numRows);
                       if (const auto error = nuv::WriteTextFile(name, text))
                           Fail(NUV_MODELRESULT_CannotWrite, *error);
                   });
}

NuvModelResult NuvModelMakeBasisText(const NuvModel* model, const uint8_t* columnBasis,
                                     uint32_t numColumns, const uint8_t* rowBasis, uint32_t numRows,
                                     NuvText** text, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(text, "text") = nullptr;
                       const nuv::Model& held = *Checked(model).model;
                       MakeText(text, TextOf(held, columnBasis, numColumns, rowBasis, numRows));
                   });
}
