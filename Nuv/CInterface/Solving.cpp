#include "Nuv/CInterface/Solving.hpp"

#include "Nuv/CInterface/Arrays.hpp"
#include "Nuv/CInterface/Records.hpp"

#include <optional>
#include <string_view>

namespace nuv::c
{
namespace
{

NuvSolveOptions SolveDefaults()
{
    const SolveOptions options;
    NuvSolveOptions defaults{};
    defaults.size = sizeof(NuvSolveOptions);
    defaults.keepProof = 1;
    defaults.seconds = options.limits.seconds;
    defaults.iisWork = options.iisWork;
    defaults.singlePrecisionPivots = options.limits.singlePrecisionPivots;
    defaults.doublePivots = options.limits.doublePivots;
    defaults.exactPivots = options.limits.exactPivots;
    return defaults;
}

/// A basis out of two arrays of NUV_BASISSTATUS_..., if there is one.
std::optional<Basis> StartOf(const NuvSolveOptions& given)
{
    Basis basis{StatusesIn(given.startColumnBasis, given.numStartColumns),
                StatusesIn(given.startRowBasis, given.numStartRows)};
    if (basis.columns.empty() && basis.rows.empty())
        return std::nullopt;
    return basis;
}

SolveOptions OptionsOf(const NuvSolveOptions& given)
{
    RequireOneOf(given.stages, 4, "choice of stages");
    Require(given.seconds >= 0.0, "a time limit is negative or NaN");
    SolveOptions options;
    options.numbers = MeaningOf(given.numbers);
    options.useSinglePrecision = given.stages != NUV_STAGES_WithoutSinglePrecision;
    options.singlePrecisionOnly = given.stages == NUV_STAGES_SinglePrecisionOnly;
    options.doublePrecisionOnly = given.stages == NUV_STAGES_WithoutProof;
    options.scaling = given.scale != 0 ? Scaling::PowersOfTwo : Scaling::None;
    options.sensitivity = given.sensitivity != 0;
    options.exact = given.exact != 0;
    options.uniqueness = given.uniqueness != 0;
    options.iisWork = given.iisWork;
    options.limits.seconds = given.seconds;
    options.limits.singlePrecisionPivots = given.singlePrecisionPivots;
    options.limits.doublePivots = given.doublePivots;
    options.limits.exactPivots = given.exactPivots;
    Require(given.startValues || given.numStartValues == 0, "a start is null, but has a length");
    if (given.numStartValues != 0)
        options.startValues.assign(given.startValues, given.startValues + given.numStartValues);
    options.start = StartOf(given);
    return options;
}

std::vector<double> Flat(const std::vector<AllowedRange>& ranges)
{
    std::vector<double> flat;
    flat.reserve(2 * ranges.size());
    for (const AllowedRange& range : ranges)
        flat.insert(flat.end(), {range.lower, range.upper});
    return flat;
}

std::vector<NuvIisMember> MembersOf(const Model& model, const Iis& iis)
{
    std::vector<NuvIisMember> members;
    for (const IisMember& member : iis.members)
    {
        const Variable* variable = std::get_if<Variable>(&member.of);
        const std::uint32_t index =
            variable ? model.IndexOf(*variable) : model.IndexOf(std::get<Row>(member.of));
        members.push_back({index, variable ? 0u : 1u, member.upper ? 1u : 0u});
    }
    return members;
}

}  // namespace

CoefficientMeaning MeaningOf(std::uint32_t numbers)
{
    RequireOneOf(numbers, 2, "meaning of numbers");
    return numbers == NUV_NUMBERS_Stored ? CoefficientMeaning::StoredDouble
                                         : CoefficientMeaning::ShortestDecimal;
}

Solving::Solving(const NuvSolveOptions* options)
    : m_given(options ? TakeIn(options, "options") : SolveDefaults()), m_options(OptionsOf(m_given))
{
    m_options.limits.reportObjective = m_given.progress != nullptr;
    if (m_given.progress)
        m_options.limits.keepGoing = [this](const Progress& progress)
        { return KeepGoing(m_given.progress, m_given.userData, progress); };
    if (m_given.log)
        m_options.limits.log = [this](std::string_view line)
        { m_given.log(m_given.userData, std::string(line).c_str()); };
}

std::uint32_t NumbersOf(CoefficientMeaning meaning)
{
    return meaning == CoefficientMeaning::StoredDouble ? NUV_NUMBERS_Stored : NUV_NUMBERS_Written;
}

bool KeepGoing(NuvProgressCallback callback, void* userData, const Progress& progress)
{
    const NuvProgress told = {sizeof(NuvProgress),
                              static_cast<std::uint32_t>(progress.stage),
                              progress.pivots,
                              progress.seconds,
                              progress.objective,
                              progress.feasible ? 1u : 0u,
                              0};
    return callback(userData, &told) != 0;
}

std::unique_ptr<NuvSolution> Solving::Deliver(std::shared_ptr<const Model> model,
                                              const Model& solved, Solution solution) const
{
    if (solution.status == Status::Invalid)
        Fail(NUV_MODELRESULT_InvalidModel, std::move(solution.failure));
    if (!m_given.keepProof)
        solution.certificate.reset();
    auto handle = std::make_unique<NuvSolution>();
    handle->costRanges = Flat(solution.sensitivity.cost);
    handle->rowLowerRanges = Flat(solution.sensitivity.rowLower);
    handle->rowUpperRanges = Flat(solution.sensitivity.rowUpper);
    handle->iis = MembersOf(solved, solution.iis);
    handle->model = std::move(model);
    handle->solution = std::move(solution);
    return handle;
}

}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvSolveOptionsInit(NuvSolveOptions* options, uint32_t size)
{
    return Guarded(nullptr, [&] { FillIn(options, "options", SolveDefaults(), size); });
}

NuvModelResult NuvModelSolve(const NuvModel* model, const NuvSolveOptions* options,
                             NuvSolution** solution, NuvDiagnostics* diagnostics)
{
    return Guarded(
        diagnostics,
        [&]
        {
            Given(solution, "solution") = nullptr;
            const std::shared_ptr<const nuv::Model> held = Checked(model).model;
            const Solving solving(options);
            *solution =
                solving.Deliver(held, *held, nuv::Solve(*held, solving.Options())).release();
        });
}
