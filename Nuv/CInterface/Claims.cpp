// Claims about a model, and what becomes of them.
#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/Solving.hpp"
#include "Nuv/CInterface/Texts.hpp"
#include "Nuv/Io/TextFile.hpp"
#include "Nuv/Report/CheckClaim.hpp"
#include "Nuv/Report/ClaimReader.hpp"
#include "Nuv/Report/ClaimText.hpp"

#include <cmath>
#include <limits>
#include <optional>

struct NuvClaim : nuv::c::Tagged<nuv::c::Kind::Claim>
{
    std::shared_ptr<const nuv::Model> model;
    nuv::ClaimReport report;
};

namespace nuv::c
{
namespace
{

constexpr std::uint32_t ClaimOf(ClaimedStatus status)
{
    static_assert(static_cast<std::uint32_t>(ClaimedStatus::Unbounded) + 1 == NUV_CLAIM_Unbounded);
    return static_cast<std::uint32_t>(status) + 1;
}

NuvClaimOptions ClaimDefaults()
{
    const ClaimOptions options;
    NuvClaimOptions defaults{};
    defaults.size = sizeof(NuvClaimOptions);
    defaults.numbers = NUV_NUMBERS_AsStated;
    defaults.tolerance = options.tolerance;
    defaults.seconds = options.limits.seconds;
    return defaults;
}

/// The options of a check and its callback. Outlives the check.
class Checking
{
public:
    explicit Checking(const NuvClaimOptions* options)
        : m_given(options ? TakeIn(options, "options") : ClaimDefaults())
    {
        RequireOneOf(m_given.claim, NUV_CLAIM_Unbounded + 1, "claim");
        RequireOneOf(m_given.numbers, NUV_NUMBERS_AsStated + 1, "meaning of numbers");
        Require(m_given.tolerance >= 0.0, "a tolerance is negative or NaN");
        Require(m_given.seconds >= 0.0, "a time limit is negative or NaN");
        m_options.tolerance = m_given.tolerance;
        m_options.limits.seconds = m_given.seconds;
        if (m_given.progress)
            m_options.limits.keepGoing = [this](const Progress& progress)
            { return KeepGoing(m_given.progress, m_given.userData, progress); };
    }
    Checking(const Checking&) = delete;
    Checking& operator=(const Checking&) = delete;

    [[nodiscard]] std::optional<ClaimedStatus> Status() const
    {
        if (m_given.claim == NUV_CLAIM_AsStated)
            return std::nullopt;
        return static_cast<ClaimedStatus>(m_given.claim - 1);
    }
    [[nodiscard]] std::optional<CoefficientMeaning> Numbers() const
    {
        if (m_given.numbers == NUV_NUMBERS_AsStated)
            return std::nullopt;
        return MeaningOf(m_given.numbers);
    }

    [[nodiscard]] std::unique_ptr<NuvClaim> Judge(std::shared_ptr<const Model> model,
                                                  const Claim& claim) const
    {
        auto handle = std::make_unique<NuvClaim>();
        handle->report = CheckClaim(*model, claim, m_options);
        handle->model = std::move(model);
        return handle;
    }

    [[nodiscard]] std::unique_ptr<NuvClaim> Judge(std::shared_ptr<const Model> model,
                                                  const std::string& text, const std::string& name,
                                                  NuvDiagnostics* diagnostics) const
    {
        ClaimReadResult reading = ReadClaim(text, DisplayName(name), *model, Status(), Numbers());
        HandOver(reading.diagnostics, diagnostics);
        if (!reading.claim)
            throw Failure{NUV_MODELRESULT_BadText, {}};
        return Judge(std::move(model), *reading.claim);
    }

private:
    NuvClaimOptions m_given;
    ClaimOptions m_options;
};

Claim ClaimOfValues(const Model& model, const double* values, std::uint32_t count,
                    const Checking& checking)
{
    Claim claim;
    claim.status = checking.Status().value_or(ClaimedStatus::Optimal);
    claim.meaning = checking.Numbers().value_or(claim.meaning);
    Require(claim.status == ClaimedStatus::Feasible || claim.status == ClaimedStatus::Optimal,
            "values claim an optimum, or that they are feasible");
    Require(count == model.VariableCount(), "there are not as many values as columns");
    Require(values || count == 0, "values are null");
    for (std::uint32_t j = 0; j < count; ++j)
    {
        if (!std::isfinite(values[j]))
            Fail(NUV_MODELRESULT_InvalidModel, "model.not-finite",
                 "the value of column " + std::to_string(j) + " is not finite");
        claim.values.emplace_back(ToRational(values[j], claim.meaning));
    }
    return claim;
}

NuvClaimInfo InfoOf(const ClaimReport& report)
{
    constexpr double kUnknown = std::numeric_limits<double>::quiet_NaN();
    NuvClaimInfo info{};
    info.judgement = static_cast<std::uint32_t>(report.judgement);
    info.claim = ClaimOf(report.claimed);
    info.truth = static_cast<std::uint32_t>(report.truth);
    info.evidence = static_cast<std::uint32_t>(report.evidence);
    info.numbers = NumbersOf(report.numbers);
    info.stopReason = static_cast<std::uint32_t>(report.stopReason);
    info.numUnnamed = report.unnamed;
    info.numDisagreements = static_cast<std::uint32_t>(report.disagreements.size());
    info.disagreementCount = report.disagreementCount;
    info.pivots = report.pivots;
    info.violation = report.hasPoint ? report.violation : kUnknown;
    info.objective = report.hasPoint ? ToDouble(report.objective) : kUnknown;
    info.optimum = report.truth == Status::Optimal ? ToDouble(report.optimum) : kUnknown;
    info.seconds = report.seconds;
    return info;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvClaimOptionsInit(NuvClaimOptions* options, uint32_t size)
{
    return Guarded(nullptr, [&] { FillIn(options, "options", ClaimDefaults(), size); });
}

NuvModelResult NuvModelCheckClaim(const NuvModel* model, const char* path,
                                  const NuvClaimOptions* options, NuvClaim** claim,
                                  NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(claim, "claim") = nullptr;
                       const std::shared_ptr<const nuv::Model> held = Checked(model).model;
                       const std::string name = &Given(path, "path");
                       const Checking checking(options);
                       const nuv::Result<std::string> text = nuv::ReadTextFile(name);
                       *claim = checking.Judge(held, Readable(text), name, diagnostics).release();
                   });
}

NuvModelResult NuvModelCheckClaimText(const NuvModel* model, const char* text, uint64_t size,
                                      const char* name, const NuvClaimOptions* options,
                                      NuvClaim** claim, NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(claim, "claim") = nullptr;
                       const std::shared_ptr<const nuv::Model> held = Checked(model).model;
                       const std::string path = name ? name : "";
                       const Checking checking(options);
                       const nuv::Result<std::string> bytes =
                           nuv::Unpacked(BytesOf(text, size), path);
                       *claim = checking.Judge(held, Readable(bytes), path, diagnostics).release();
                   });
}

NuvModelResult NuvModelCheckValues(const NuvModel* model, const double* values, uint32_t count,
                                   const NuvClaimOptions* options, NuvClaim** claim,
                                   NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       Given(claim, "claim") = nullptr;
                       const std::shared_ptr<const nuv::Model> held = Checked(model).model;
                       const Checking checking(options);
                       const nuv::Claim said = ClaimOfValues(*held, values, count, checking);
                       *claim = checking.Judge(held, said).release();
                   });
}

void NuvClaimDestruct(NuvClaim* claim)
{
    Destruct(claim);
}

NuvModelResult NuvClaimGetInfo(const NuvClaim* claim, NuvClaimInfo* info)
{
    return Guarded(nullptr, [&] { FillIn(info, "info", InfoOf(Checked(claim).report)); });
}

const char* NuvClaimGetDisagreement(const NuvClaim* claim, uint32_t index, const char** code)
{
    const bool isThere = IsHandle(claim) && index < claim->report.disagreements.size();
    if (code)
        *code = isThere ? claim->report.disagreements[index].code.c_str() : nullptr;
    return isThere ? claim->report.disagreements[index].text.c_str() : nullptr;
}

uint64_t NuvClaimGetExactOptimum(const NuvClaim* claim, char* buffer, uint64_t size)
{
    uint64_t needed = 0;
    (void)Guarded(nullptr,
                  [&]
                  {
                      const nuv::ClaimReport& report = Checked(claim).report;
                      if (report.truth == nuv::Status::Optimal)
                          needed = CopyText(nuv::ToString(report.optimum), buffer, size);
                  });
    return needed;
}

NuvModelResult NuvClaimMakeJson(const NuvClaim* claim, NuvText** json)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(json, "json") = nullptr;
                       const NuvClaim& handle = Checked(claim);
                       MakeText(json, nuv::ClaimJson(*handle.model, handle.report));
                   });
}

NuvModelResult NuvClaimMakeReport(const NuvClaim* claim, NuvText** report)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(report, "report") = nullptr;
                       MakeText(report, nuv::ClaimText(Checked(claim).report));
                   });
}
