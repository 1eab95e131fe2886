// The model layer for JavaScript: calls with plain numbers where the C interface has records, so
// that no layout of a record is written down twice. What the TypeScript passes has been checked
// there; handles and texts are addresses in the program's memory.
#include "Asked.hpp"

#include "Nuv/CInterface/BulkEditor.hpp"
#include "Nuv/CInterface/Handles.hpp"
#include "Nuv/Io/ModelFile.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Model/WrittenNumber.hpp"
#include "Nuv/Vipr/Certify.hpp"
#include "Nuv/Vipr/Text.hpp"

#include <cstdlib>
#include <cstring>
#include <string_view>

namespace
{

std::uint32_t AddressOf(const void* of)
{
    return static_cast<std::uint32_t>(reinterpret_cast<std::uintptr_t>(of));
}

/// Writes where an array is, 0 for one that is empty, and how many members it has.
template <class Member>
void TellArray(const std::vector<Member>& array, std::uint32_t*& out)
{
    *out++ = array.empty() ? 0 : AddressOf(array.data());
    *out++ = static_cast<std::uint32_t>(array.size());
}

/// Texts one behind the other, each ended by a NUL.
class TextsInARow
{
public:
    explicit TextsInARow(const char* texts) : m_next(texts) {}

    std::string_view Next()
    {
        const std::string_view text = m_next;
        m_next += text.size() + 1;
        return text;
    }

private:
    const char* m_next;
};

nuv::SolveOptions OptionsOf(std::uint32_t flags, double seconds, double pivots)
{
    nuv::SolveOptions options;
    options.sensitivity = flags & WithSensitivity;
    options.exact = flags & WithExact;
    options.recordPath = flags & WithPath;
    options.numbers = flags & StoredNumbers ? nuv::CoefficientMeaning::StoredDouble
                                            : nuv::CoefficientMeaning::ShortestDecimal;
    options.limits.seconds = seconds;
    if (pivots < 9e15)
        options.limits.doublePivots = options.limits.exactPivots =
            static_cast<std::uint64_t>(pivots);
    if (flags & WithProgress)
        options.limits.keepGoing = [](const nuv::Progress& told)
        {
            return HostProgress(static_cast<std::uint32_t>(told.stage),
                                static_cast<double>(told.pivots), told.seconds, told.objective,
                                told.feasible) != 0;
        };
    return options;
}

/// Index, whether it is a row, whether its upper side.
std::vector<NuvIisMember> MembersOf(const nuv::Model& model, const nuv::Iis& iis)
{
    std::vector<NuvIisMember> members;
    for (const nuv::IisMember& member : iis.members)
    {
        const auto* const row = std::get_if<nuv::Row>(&member.of);
        const std::uint32_t index =
            row ? model.IndexOf(*row) : model.IndexOf(*std::get_if<nuv::Variable>(&member.of));
        members.push_back({index, row ? 1u : 0u, member.upper ? 1u : 0u});
    }
    return members;
}

/// @return 0.
std::uint32_t TellError(NuvDiagnostics* diagnostics, const nuv::Error& error)
{
    diagnostics->diagnostics.assign(1, {nuv::Severity::Error, error, {}});
    return 0;
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

NUV_EXPORT("makeModel") NuvModel* MakeModel()
{
    return new NuvModel;
}

NUV_EXPORT("freeModel") void FreeModel(NuvModel* handle)
{
    delete handle;
}

NUV_EXPORT("makeDiagnostics") NuvDiagnostics* MakeDiagnostics()
{
    return new NuvDiagnostics;
}

NUV_EXPORT("diagnosticCount") std::size_t CountDiagnostics(const NuvDiagnostics* handle)
{
    return handle->diagnostics.size();
}

NUV_EXPORT("textData") const char* TextData(const NuvText* handle)
{
    return handle->text.data();
}

NUV_EXPORT("textSize") std::size_t TextSize(const NuvText* handle)
{
    return handle->text.size();
}

NUV_EXPORT("freeText") void FreeText(NuvText* handle)
{
    delete handle;
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
/// from starts[k] to starts[k + 1]. Names end with a NUL each, and are all different.
NUV_EXPORT("assign")
void Assign(NuvModel* handle, std::uint32_t isMaximised, std::uint32_t columns, std::uint32_t rows,
            const double* numbers, const std::uint32_t* starts, const std::uint32_t* indices,
            const double* values, const char* columnNames, const char* rowNames)
{
    nuv::Model& model = *handle->model;
    model.SetSense(isMaximised != 0 ? nuv::Sense::Maximize : nuv::Sense::Minimize);
    model.SetObjectiveConstant(*numbers++);
    nuv::BulkEditor editor(model);
    TextsInARow names(columnNames);
    for (std::uint32_t k = 0; k < columns; ++k, ++numbers)
        (void)editor.AppendColumn(names.Next(), {numbers[columns], numbers[2 * columns]}, *numbers);
    numbers += 2 * columns;
    names = TextsInARow(rowNames);
    for (std::uint32_t k = 0; k < rows; ++k, ++numbers)
        (void)editor.AppendRow(names.Next(), {*numbers, numbers[rows]},
                               {indices + starts[k], indices + starts[k + 1]},
                               {values + starts[k], values + starts[k + 1]});
    editor.Commit();
}

/// Gives a number of the model, whose nearest double it has, the text that says it.
/// @return 1, or 0 and tells what is wrong with the text.
NUV_EXPORT("setExact")
std::uint32_t SetExact(NuvModel* handle, std::uint32_t of, std::uint32_t at, std::uint32_t column,
                       const char* text, NuvDiagnostics* diagnostics)
{
    nuv::Result<nuv::WrittenNumber> number = nuv::ReadNumber(text);
    if (!number)
        return TellError(diagnostics, number.GetError());
    const nuv::NumberPlace place = {static_cast<nuv::NumberPlace::Of>(of), at, column};
    if (number->exact)
        nuv::BulkEditor::KeepExact(*handle->model, place, text);
    return 1;
}

/// @return 1 if there is nothing wrong with the model, or tells what.
NUV_EXPORT("check") std::uint32_t Check(const NuvModel* handle, NuvDiagnostics* diagnostics)
{
    const std::optional<nuv::Error> fault = handle->model->FindFault();
    return fault ? TellError(diagnostics, *fault) : 1;
}

/// The names of all rows or columns, each ended by a NUL.
NUV_EXPORT("names") NuvText* GetNames(const NuvModel* handle, std::uint32_t areRows)
{
    const nuv::Model& model = *handle->model;
    const std::uint32_t count = areRows != 0 ? model.RowCount() : model.VariableCount();
    std::string names;
    for (std::uint32_t k = 0; k < count; ++k)
        names.append(areRows != 0 ? model.RowName(k) : model.VariableName(k)).push_back('\0');
    return new NuvText(std::move(names));
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
NUV_EXPORT("arrays")
void GetArrays(const NuvModel* handle, double* constant, std::uint32_t* out)
{
    static_assert(sizeof(std::size_t) == sizeof(std::uint32_t));
    const nuv::Model& model = *handle->model;
    *constant = model.ObjectiveConstant();
    const std::uint32_t all[] = {model.ObjectiveSense() == nuv::Sense::Maximize ? 1u : 0u,
                                 model.VariableCount(),
                                 model.RowCount(),
                                 static_cast<std::uint32_t>(model.NonzeroCount()),
                                 AddressOf(model.Objective().data()),
                                 AddressOf(model.VariableLower().data()),
                                 AddressOf(model.VariableUpper().data()),
                                 AddressOf(model.RowLower().data()),
                                 AddressOf(model.RowUpper().data()),
                                 AddressOf(model.RowStarts().data()),
                                 AddressOf(model.Columns().data()),
                                 AddressOf(model.Coefficients().data())};
    std::memcpy(out, all, sizeof all);
}

/// @return null where the model has none, which `diagnostics` then tell.
NUV_EXPORT("solve")
NuvSolution* Solve(const NuvModel* handle, std::uint32_t flags, double seconds, double pivots,
                   NuvDiagnostics* diagnostics)
{
    const nuv::Model& model = *handle->model;
    nuv::Solution found = nuv::Solve(model, OptionsOf(flags, seconds, pivots));
    if (found.status == nuv::Status::Invalid)
    {
        (void)Check(handle, diagnostics);
        return nullptr;
    }
    auto* const solution = new NuvSolution;
    solution->iis = MembersOf(model, found.iis);
    solution->model = handle->model;
    solution->solution = std::move(found);
    return solution;
}

NUV_EXPORT("freeSolution") void FreeSolution(NuvSolution* handle)
{
    delete handle;
}

/// Status, proved, stop reason, whether the conflict is minimal, objective, seconds, pivots of each
/// stage; then the addresses and lengths of all arrays, in the order of ArrayOf in answer.ts.
NUV_EXPORT("info")
void GetInfo(const NuvSolution* handle, double* out, std::uint32_t* arrays)
{
    static_assert(sizeof(nuv::AllowedRange) == 2 * sizeof(double));
    const nuv::Solution& found = handle->solution;
    const double all[] = {static_cast<double>(found.status),
                          static_cast<double>(found.proved),
                          static_cast<double>(found.stopReason),
                          static_cast<double>(found.iis.minimal),
                          found.objective,
                          found.seconds,
                          static_cast<double>(found.stages[nuv::Stage::Double].pivots),
                          static_cast<double>(found.stages[nuv::Stage::Exact].pivots)};
    std::memcpy(out, all, sizeof all);
    TellArray(found.values, arrays);
    TellArray(found.reducedCosts, arrays);
    TellArray(found.sensitivity.cost, arrays);
    TellArray(found.activities, arrays);
    TellArray(found.slacks, arrays);
    TellArray(found.duals, arrays);
    TellArray(found.sensitivity.rowLower, arrays);
    TellArray(found.sensitivity.rowUpper, arrays);
    TellArray(found.ray, arrays);
    TellArray(found.farkas, arrays);
    TellArray(found.basis.columns, arrays);
    TellArray(found.basis.rows, arrays);
    TellArray(handle->iis, arrays);
}

/// @return the exact numbers of a kind, each ended by a NUL; null where there are none.
NUV_EXPORT("exact") NuvText* GetExact(const NuvSolution* handle, std::uint32_t kind)
{
    const nuv::Solution& found = handle->solution;
    std::string all;
    if (kind == NUV_EXACT_Objective && !found.exactObjective.empty())
        all.append(found.exactObjective).push_back('\0');
    if (kind != NUV_EXACT_Objective && found.exact)
    {
        const nuv::ExactTexts& texts = *found.exact;
        const std::vector<std::string>* const kinds[] = {
            nullptr, &texts.values,       &texts.duals,      &texts.ray,
            nullptr, &texts.reducedCosts, &texts.activities, &texts.slacks};
        for (const std::string& number : *kinds[kind])
            all.append(number).push_back('\0');
    }
    return all.empty() ? nullptr : new NuvText(std::move(all));
}

/// @return the proof in VIPR format; null where nothing is proved.
NUV_EXPORT("certificate") NuvText* GetCertificate(const NuvSolution* handle)
{
    const nuv::Solution& found = handle->solution;
    return found.certificate ? new NuvText(nuv::vipr::Write(nuv::vipr::CertificateOf(
                                   *handle->model, found.numbers, *found.certificate)))
                             : nullptr;
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
