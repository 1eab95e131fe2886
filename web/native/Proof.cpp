// The model layer for JavaScript: the calls of the C interface with plain numbers where that has
// records, so that no layout of a record is written down twice. What the TypeScript passes has been
// checked there; handles and texts are addresses in the program's memory.
#include "Asked.hpp"

#include "Nuv/CInterface/Handles.hpp"
#include "Nuv/CInterface/Solving.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Model/NuvModel.h"

#include <cstdlib>
#include <string_view>

using namespace nuv::c;

namespace
{

std::uint32_t AddressOf(const void* of)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(of));
}

/// Writes an array's address before its length, which is there already.
void TellArray(const void* of, std::uint32_t*& out)
{
    *out = AddressOf(of);
    out += 2;
}

}  // namespace

// Texts come from JavaScript unpacked, and there are no files.
nuv::Result<std::string> nuv::Unpacked(std::string bytes, const std::string& /*path*/)
{
    return bytes;
}

std::string nuv::DisplayName(const std::string& path)
{
    return path;
}

NUV_EXPORT("allocate") void* AllocateBytes(std::size_t size)
{
    return operator new(size);
}

NUV_EXPORT("free") void FreeBytes(void* memory)
{
    std::free(memory);
}

/// @return 1 if the text is a model, which `handle` then is.
NUV_EXPORT("read")
std::int32_t ReadText(NuvModel* handle, const char* text, std::size_t size, std::uint32_t relax,
                      NuvDiagnostics* diagnostics)
{
    nuv::ReadOptions options;
    options.relax = relax != 0;
    nuv::ReadResult reading = nuv::ReadModel({text, size}, "", options);
    diagnostics->diagnostics = std::move(reading.diagnostics);
    if (!reading.model)
        return 0;
    handle->model = std::make_shared<nuv::Model>(std::move(*reading.model));
    return 1;
}

/// Columns have costs and bounds, rows have sides; the entries lie by rows, and row k has those
/// from starts[k] to starts[k + 1]. Names end with a NUL each.
NUV_EXPORT("assign")
NuvModelResult Assign(NuvModel* handle, std::uint32_t sense, std::uint32_t columns,
                      std::uint32_t rows, const double* numbers, const std::uint64_t* starts,
                      const std::uint32_t* indices, const double* values, const char* columnNames,
                      std::size_t columnNamesSize, const char* rowNames, std::size_t rowNamesSize,
                      NuvDiagnostics* diagnostics)
{
    NuvModelArrays arrays;
    (void)NuvModelArraysInit(&arrays, sizeof arrays);
    arrays.sense = sense;
    arrays.numColumns = columns;
    arrays.numRows = rows;
    arrays.numEntries = starts[rows];
    arrays.constant = *numbers;
    arrays.costs = numbers + 1;
    arrays.columnLower = arrays.costs + columns;
    arrays.columnUpper = arrays.columnLower + columns;
    arrays.rowLower = arrays.columnUpper + columns;
    arrays.rowUpper = arrays.rowLower + rows;
    arrays.starts = starts;
    arrays.indices = indices;
    arrays.values = values;
    arrays.columnNames = columnNames;
    arrays.columnNamesSize = columnNamesSize;
    arrays.rowNames = rowNames;
    arrays.rowNamesSize = rowNamesSize;
    return NuvModelAssignArrays(handle, &arrays, diagnostics);
}

/// Writes severity, line, column and the addresses of code, text, hint and excerpt.
NUV_EXPORT("diagnostic")
void GetDiagnostic(const NuvDiagnostics* handle, std::uint32_t index, std::uint32_t* out)
{
    const nuv::Diagnostic& found = handle->diagnostics[index];
    const nuv::Error& error = found.error;
    *out++ = static_cast<std::uint32_t>(found.severity);
    *out++ = static_cast<std::uint32_t>(error.line);
    *out++ = static_cast<std::uint32_t>(error.column);
    for (const std::string* text : {&error.code, &error.text, &error.hint, &found.excerpt})
        *out++ = AddressOf(text->c_str());
}

/// The model as arrays: the constant; then the sense, how many columns, rows and entries, and the
/// addresses of costs, bounds of columns, sides of rows, starts, indices and values.
NUV_EXPORT("arrays") void GetArrays(NuvModel* handle, double* constant, std::uint32_t* out)
{
    NuvModelArrays arrays;
    arrays.size = sizeof arrays;
    (void)NuvModelGetArrays(handle, &arrays);
    *constant = arrays.constant;
    *out++ = arrays.sense;
    *out++ = arrays.numColumns;
    *out++ = arrays.numRows;
    *out++ = static_cast<std::uint32_t>(arrays.numEntries);
    const void* const all[] = {arrays.costs,    arrays.columnLower, arrays.columnUpper,
                               arrays.rowLower, arrays.rowUpper,    arrays.starts,
                               arrays.indices,  arrays.values};
    for (const void* const array : all)
        *out++ = AddressOf(array);
}

/// @return null where the model has none, which `diagnostics` then tell.
NUV_EXPORT("solve")
NuvSolution* Solve(const NuvModel* handle, std::uint32_t flags, double seconds, double pivots,
                   NuvDiagnostics* diagnostics)
{
    const NuvSolveOptions given = OptionsOf(flags, seconds, pivots);
    const Solving solving(&given);
    nuv::SolveOptions options = solving.Options();
    options.recordPath = (flags & WithPath) != 0;
    nuv::Solution found = nuv::Solve(*handle->model, options);
    if (found.status == nuv::Status::Invalid)
    {
        Tell(diagnostics, std::move(found.failure));
        return nullptr;
    }
    return solving.Deliver(handle->model, *handle->model, std::move(found)).release();
}

/// Status, proved, stop reason, whether the conflict is minimal, objective, seconds, pivots of each
/// stage; then the addresses and lengths of all arrays, in the order of ArrayOf in answer.ts.
NUV_EXPORT("info")
void GetInfo(const NuvSolution* solution, double* out, std::uint32_t* arrays)
{
    NuvSolutionInfo info;
    info.size = sizeof info;
    (void)NuvSolutionGetInfo(solution, &info);
    const double all[] = {static_cast<double>(info.status),
                          static_cast<double>(info.proved),
                          static_cast<double>(info.stopReason),
                          static_cast<double>(info.iisMinimal),
                          info.objective,
                          info.seconds,
                          static_cast<double>(info.doublePivots),
                          static_cast<double>(info.exactPivots)};
    for (const double number : all)
        *out++ = number;
    using Numbers = const double* (*)(const NuvSolution*, std::uint32_t*);
    constexpr Numbers kNumbers[] = {
        NuvSolutionGetValues,         NuvSolutionGetReducedCosts,   NuvSolutionGetCostRanges,
        NuvSolutionGetActivities,     NuvSolutionGetSlacks,         NuvSolutionGetDuals,
        NuvSolutionGetRowLowerRanges, NuvSolutionGetRowUpperRanges, NuvSolutionGetRay,
        NuvSolutionGetFarkas};
    for (const Numbers get : kNumbers)
        TellArray(get(solution, arrays + 1), arrays);
    TellArray(NuvSolutionGetColumnBasis(solution, arrays + 1), arrays);
    TellArray(NuvSolutionGetRowBasis(solution, arrays + 1), arrays);
    TellArray(NuvSolutionGetIis(solution, arrays + 1), arrays);
}

/// Whether there are exact numbers of a kind; asking for those that are not there is a failure.
NUV_EXPORT("hasExact") std::uint32_t HasExact(const NuvSolution* solution, std::uint32_t kind)
{
    return NuvSolutionGetExact(solution, kind, 0, nullptr, 0) != 0 ? 1 : 0;
}

NUV_EXPORT("hasProof") std::uint32_t HasProof(const NuvSolution* solution)
{
    return solution->solution.certificate ? 1 : 0;
}

NUV_EXPORT("pathLength") std::uint32_t GetPathLength(const NuvSolution* solution)
{
    return static_cast<std::uint32_t>(solution->solution.path.size());
}

/// Phase, objective and the values of the columns. @return how many numbers these are.
NUV_EXPORT("pathStep")
std::uint32_t GetPathStep(const NuvSolution* solution, std::uint32_t index, double* out)
{
    const nuv::PathStep& step = solution->solution.path[index];
    *out++ = step.phase;
    *out++ = step.objective;
    for (const double value : step.values)
        *out++ = value;
    return static_cast<std::uint32_t>(step.values.size()) + 2;
}
