// Solutions as JSON, as text and as certificates, and the check of certificates.
#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/Solving.hpp"
#include "Nuv/Report/JsonReport.hpp"
#include "Nuv/Report/TextReport.hpp"
#include "Nuv/Vipr/Certify.hpp"
#include "Nuv/Vipr/Text.hpp"
#include "Nuv/Vipr/Verify.hpp"

namespace nuv::c
{
namespace
{

std::uint32_t StatusOf(vipr::Goal goal)
{
    switch (goal)
    {
    case vipr::Goal::Range:
        return NUV_STATUS_Optimal;
    case vipr::Goal::Unbounded:
        return NUV_STATUS_Unbounded;
    case vipr::Goal::Infeasible:
        break;
    }
    return NUV_STATUS_Infeasible;
}

NuvVerification Verify(const Model& model, CoefficientMeaning numbers, std::string_view text)
{
    const Result<vipr::Certificate> certificate = vipr::Read(text, "certificate");
    if (!certificate)
        Fail(NUV_MODELRESULT_BadText, certificate.GetError());
    const vipr::Verification found = vipr::Verify(model, numbers, *certificate);
    if (!found.defect.empty())
        Fail(NUV_MODELRESULT_Refused, found.isOtherModel ? "vipr.other-model" : "vipr.defect",
             found.defect);
    return {0, StatusOf(found.goal),
            found.objective ? ToDouble(*found.objective) : Solution::kUnknown};
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

NuvModelResult NuvSolutionMakeJson(const NuvSolution* solution, NuvText** json)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(json, "json") = nullptr;
                       const NuvSolution& handle = Checked(solution);
                       MakeText(json, nuv::JsonReport(*handle.model, handle.solution, {}));
                   });
}

NuvModelResult NuvSolutionMakeReport(const NuvSolution* solution, NuvText** report)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(report, "report") = nullptr;
                       const NuvSolution& handle = Checked(solution);
                       MakeText(report,
                                nuv::TextReport(*handle.model, handle.solution, nuv::Detail::Full));
                   });
}

NuvModelResult NuvSolutionMakeCertificate(const NuvSolution* solution, NuvText** certificate)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(certificate, "certificate") = nullptr;
                       const NuvSolution& handle = Checked(solution);
                       const nuv::Solution& held = handle.solution;
                       if (!held.certificate)
                           Fail(NUV_MODELRESULT_NotKnown, "c.not-known", "there is no proof");
                       MakeText(certificate, nuv::vipr::Write(nuv::vipr::CertificateOf(
                                                 *handle.model, held.numbers, *held.certificate)));
                   });
}

NuvModelResult NuvModelVerify(const NuvModel* model, const char* certificate, uint64_t size,
                              uint32_t numbers, NuvVerification* verification,
                              NuvDiagnostics* diagnostics)
{
    return Guarded(diagnostics,
                   [&]
                   {
                       const NuvModel& handle = Checked(model);
                       Require(size <= SIZE_MAX / 4, "the text takes more bytes than there are");
                       const std::string_view text(&Given(certificate, "certificate"),
                                                   static_cast<std::size_t>(size));
                       const NuvVerification found =
                           Verify(*handle.model, MeaningOf(numbers), text);
                       if (verification)
                           FillIn(verification, "verification", found);
                   });
}
