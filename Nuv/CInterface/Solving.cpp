#include "Nuv/CInterface/Solving.hpp"

#include "Nuv/CInterface/Records.hpp"
#include "Nuv/Io/NumberText.hpp"
#include "Nuv/Report/Words.hpp"

#include <cmath>
#include <limits>

namespace nuv::c
{
namespace
{

constexpr double kSecondsBetweenLines = 1.0;

NuvSolveOptions Defaults()
{
    const SolveOptions options;
    NuvSolveOptions defaults{};
    defaults.size = sizeof(NuvSolveOptions);
    defaults.keepProof = 1;
    defaults.seconds = options.limits.seconds;
    defaults.iisSeconds = options.iisSeconds;
    defaults.singlePrecisionPivots = options.limits.singlePrecisionPivots;
    defaults.doublePivots = options.limits.doublePivots;
    defaults.exactPivots = options.limits.exactPivots;
    return defaults;
}

SolveOptions OptionsOf(const NuvSolveOptions& given)
{
    RequireOneOf(given.stages, 3, "choice of stages");
    Require(given.seconds >= 0.0 && given.iisSeconds >= 0.0, "a time limit is negative or NaN");
    SolveOptions options;
    options.numbers = MeaningOf(given.numbers);
    options.useSinglePrecision = given.stages != NUV_STAGES_WithoutSinglePrecision;
    options.singlePrecisionOnly = given.stages == NUV_STAGES_SinglePrecisionOnly;
    options.scaling = given.scale != 0 ? Scaling::PowersOfTwo : Scaling::None;
    options.sensitivity = given.sensitivity != 0;
    options.iisSeconds = given.iisSeconds;
    options.limits.seconds = given.seconds;
    options.limits.singlePrecisionPivots = given.singlePrecisionPivots;
    options.limits.doublePivots = given.doublePivots;
    options.limits.exactPivots = given.exactPivots;
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

const char* NameOf(Stage stage)
{
    constexpr const char* names[] = {"single precision", "double", "exact"};
    return names[static_cast<std::size_t>(stage)];
}

std::string Seconds(double seconds)
{
    return NumberText(std::round(seconds * 100.0) / 100.0) + " s";
}

}  // namespace

CoefficientMeaning MeaningOf(std::uint32_t numbers)
{
    RequireOneOf(numbers, 2, "meaning of numbers");
    return numbers == NUV_NUMBERS_Stored ? CoefficientMeaning::StoredDouble
                                         : CoefficientMeaning::ShortestDecimal;
}

Solving::Solving(const NuvSolveOptions* options)
    : m_given(options ? TakeIn(options, "options") : Defaults()), m_options(OptionsOf(m_given))
{
    if (m_given.progress || m_given.log)
        m_options.limits.keepGoing = [this](const Progress& progress)
        { return KeepGoing(progress); };
}

bool Solving::KeepGoing(const Progress& progress)
{
    if (m_given.log && (progress.stage != m_stage || progress.seconds >= m_nextLog))
    {
        m_stage = progress.stage;
        m_nextLog = progress.seconds + kSecondsBetweenLines;
        std::string line = NameOf(progress.stage);
        line += ": " + std::to_string(progress.pivots) + " pivots, " + Seconds(progress.seconds);
        if (!std::isnan(progress.objective))
            line += (progress.feasible ? ", objective " : ", infeasible by ") +
                    NumberText(progress.objective);
        Log(line);
    }
    if (!m_given.progress)
        return true;
    const NuvProgress told = {sizeof(NuvProgress),
                              static_cast<std::uint32_t>(progress.stage),
                              progress.pivots,
                              progress.seconds,
                              progress.objective,
                              progress.feasible ? 1u : 0u,
                              0};
    return m_given.progress(m_given.userData, &told) != 0;
}

void Solving::Log(const std::string& line) const
{
    if (m_given.log)
        m_given.log(m_given.userData, line.c_str());
}

std::unique_ptr<NuvSolution> Solving::Deliver(std::shared_ptr<const Model> model,
                                              Solution solution) const
{
    if (solution.status == Status::Invalid)
        Fail(NUV_MODELRESULT_InvalidModel, std::move(solution.failure));
    if (!m_given.keepProof)
        solution.certificate.reset();
    auto handle = std::make_unique<NuvSolution>();
    handle->costRanges = Flat(solution.sensitivity.cost);
    handle->rowLowerRanges = Flat(solution.sensitivity.rowLower);
    handle->rowUpperRanges = Flat(solution.sensitivity.rowUpper);
    handle->iis = MembersOf(*model, solution.iis);
    handle->model = std::move(model);
    handle->solution = std::move(solution);
    std::string line(WordOf(handle->solution.status));
    line += handle->solution.proved ? ", proved" : ", not proved";
    Log(line + ", " + Seconds(handle->solution.seconds));
    return handle;
}

}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvSolveOptionsInit(NuvSolveOptions* options, uint32_t size)
{
    return Guarded(nullptr, [&] { FillIn(options, "options", Defaults(), size); });
}

NuvModelResult NuvModelSolve(const NuvModel* model, const NuvSolveOptions* options,
                             NuvSolution** solution, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(solution, "solution") = nullptr;
                       const std::shared_ptr<const nuv::Model> held = Checked(model).model;
                       const Solving solving(options);
                       *solution =
                           solving.Deliver(held, nuv::Solve(*held, solving.Options())).release();
                   });
}
