// First what the file says of itself, then the truth about the model by the shortest proof that the
// file allows, then the two against each other.
#include "Nuv/Report/CheckClaim.hpp"

#include "Nuv/Exact/CertifiedSolve.hpp"
#include "Nuv/Report/ClaimChecker.hpp"
#include "Nuv/Solve/ModelForm.hpp"

#include <algorithm>
#include <limits>
#include <utility>

namespace nuv
{
namespace
{

using claim::ClaimChecker;

bool IsComplete(const Claim::Numbers& numbers, std::size_t count)
{
    return numbers.size() == count &&
           std::ranges::all_of(numbers, [](const auto& number) { return number.has_value(); });
}

/// The numbers over one denominator; what is not there counts as 0.
ExactVector OverOneDenominator(const Claim::Numbers& numbers, std::size_t count, bool negate)
{
    ExactVector result;
    result.numerator.resize(count);
    for (const auto& number : numbers)
        if (number)
            result.denominator = LeastCommonMultiple(result.denominator, number->Denominator());
    for (std::size_t k = 0; k < numbers.size(); ++k)
        if (numbers[k])
        {
            const Rational scaled = *numbers[k] * Rational(result.denominator);
            const Integer whole = scaled.Numerator();
            result.numerator[k] = negate ? Integer(-whole) : whole;
        }
    return result;
}

/// What the file's numbers prove as they stand.
/// @return Stopped if that is nothing.
CertifiedResult ProofInFile(const BoundedForm& form, const Model& model, const Claim& claim,
                            const Rational& objective)
{
    const bool isMaximum = model.ObjectiveSense() == Sense::Maximize;
    CertifiedResult proof;
    if (claim.status == ClaimedStatus::Optimal && IsComplete(claim.duals, form.rows))
    {
        proof.certificate.status = Status::Optimal;
        proof.certificate.objective = isMaximum ? Rational(-objective) : objective;
        proof.certificate.primal = OverOneDenominator(claim.values, form.columns, false);
        proof.certificate.dual = OverOneDenominator(claim.duals, form.rows, isMaximum);
    }
    else if (claim.status == ClaimedStatus::Infeasible && !claim.farkas.empty())
    {
        proof.certificate.status = Status::Infeasible;
        proof.certificate.dual = OverOneDenominator(claim.farkas, form.rows, false);
    }
    else if (claim.status == ClaimedStatus::Unbounded && !claim.ray.empty() &&
             IsComplete(claim.values, form.columns))
    {
        proof.certificate.status = Status::Unbounded;
        proof.certificate.primal = OverOneDenominator(claim.values, form.columns, false);
        proof.certificate.ray = OverOneDenominator(claim.ray, form.columns, false);
    }
    proof.record.proved = proof.certificate.status != Status::Stopped &&
                          CheckCertificate(form, proof.certificate).empty();
    if (!proof.record.proved)
        proof.certificate.status = Status::Stopped;
    return proof;
}

/// An optimal basis needs no pivot, and must not lose its way in doubles; any other one does.
CertifiedResult ProofFromBasis(const BoundedForm& form, const Basis& basis, SolveControl& control)
{
    CertifiedResult proof = CertifyBasis(form, basis, control);
    return proof.record.proved || control.IsStopped() ? proof
                                                      : SolveCertified(form, &basis, control);
}

void Learn(const CertifiedResult& proof, Evidence evidence, bool isMaximum, ClaimReport& report)
{
    report.truth = proof.certificate.status;
    report.evidence = proof.certificate.status == Status::Stopped ? Evidence::None : evidence;
    report.stopReason = proof.record.stopReason;
    report.optimum =
        isMaximum ? Rational(-proof.certificate.objective) : proof.certificate.objective;
}

/// Proves the truth about the model by the first way that leads there.
void FindTruth(const BoundedForm& form, const Model& model, const Claim& claim,
               SolveControl& control, ClaimChecker& checker, ClaimReport& report)
{
    const bool isMaximum = model.ObjectiveSense() == Sense::Maximize;
    CertifiedResult proof = ProofInFile(form, model, claim, report.objective);
    Evidence evidence = Evidence::Certificate;
    if (!proof.record.proved && claim.status == ClaimedStatus::Infeasible && !claim.iis.empty())
    {
        proof = SolveCertified(RestrictedTo(form, claim.iis), nullptr, control);
        evidence = Evidence::Iis;
        if (proof.record.proved && proof.certificate.status != Status::Infeasible)
            checker.Disagree(
                "claim.iis",
                "the rows and bounds of the infeasible subsystem do not exclude each other");
        proof.record.proved = proof.certificate.status == Status::Infeasible;
    }
    if (!proof.record.proved)
    {
        proof = claim.basis ? ProofFromBasis(form, *claim.basis, control)
                            : SolveCertified(form, nullptr, control);
        evidence = claim.basis ? Evidence::Basis : Evidence::Solve;
    }
    Learn(proof, evidence, isMaximum, report);
    report.pivots = control.Pivots(Stage::Double) + control.Pivots(Stage::Exact);
}

const char* TruthWords(Status status)
{
    switch (status)
    {
    case Status::Optimal:
        return "the model has an optimum";
    case Status::Infeasible:
        return "the model is infeasible";
    case Status::Unbounded:
        return "the model is unbounded";
    case Status::Stopped:
    case Status::Invalid:
        break;
    }
    return "";
}

bool IsTrue(ClaimedStatus claimed, Status truth)
{
    return (claimed == ClaimedStatus::Optimal && truth == Status::Optimal) ||
           (claimed == ClaimedStatus::Infeasible && truth == Status::Infeasible) ||
           (claimed == ClaimedStatus::Unbounded && truth == Status::Unbounded);
}

}  // namespace

ClaimReport CheckClaim(const Model& model, const Claim& claim, const ClaimOptions& options)
{
    SolveControl control(options.limits);
    ClaimReport report;
    report.claimed = claim.status;
    report.numbers = claim.meaning;
    const BoundedForm form = FormOf(model, claim.meaning);
    ClaimChecker checker(model, form, options.tolerance, report);
    const bool isOptimum = claim.status == ClaimedStatus::Optimal;
    if (isOptimum || claim.status == ClaimedStatus::Feasible ||
        (claim.status == ClaimedStatus::Unbounded && !claim.values.empty()))
        checker.CheckPoint(claim);
    if (isOptimum && !claim.duals.empty())
        checker.CheckDuals(claim);
    if (claim.status == ClaimedStatus::Unbounded && !claim.ray.empty())
        checker.CheckRay(claim);
    if (claim.status == ClaimedStatus::Infeasible && !claim.farkas.empty())
        checker.CheckFarkas(claim);
    if (claim.status == ClaimedStatus::Feasible)
        report.evidence = Evidence::Values;
    else
    {
        FindTruth(form, model, claim, control, checker, report);
        if (report.truth != Status::Stopped && !IsTrue(claim.status, report.truth))
            checker.Disagree("claim.status", TruthWords(report.truth));
        if (isOptimum && report.truth == Status::Optimal)
            checker.CheckOptimum(claim);
    }
    report.judgement = report.disagreementCount != 0       ? Judgement::Refuted
                       : report.evidence == Evidence::None ? Judgement::Undecided
                                                           : Judgement::Confirmed;
    report.seconds = control.Seconds();
    return report;
}

}  // namespace nuv
