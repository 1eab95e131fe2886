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
Proof ProofInFile(const BoundedForm& form, const Model& model, const Claim& claim,
                  const Rational& objective)
{
    const bool isMaximum = model.ObjectiveSense() == Sense::Maximize;
    Proof proof;
    if (claim.status == ClaimedStatus::Optimal && IsComplete(claim.duals, form.rows))
    {
        proof.status = ProofStatus::Optimal;
        proof.objective = isMaximum ? Rational(-objective) : objective;
        proof.primal = OverOneDenominator(claim.values, form.columns, false);
        proof.dual = OverOneDenominator(claim.duals, form.rows, isMaximum);
    }
    else if (claim.status == ClaimedStatus::Infeasible && !claim.farkas.empty())
    {
        proof.status = ProofStatus::Infeasible;
        proof.dual = OverOneDenominator(claim.farkas, form.rows, false);
    }
    else if (claim.status == ClaimedStatus::Unbounded && !claim.ray.empty() &&
             IsComplete(claim.values, form.columns))
    {
        proof.status = ProofStatus::Unbounded;
        proof.primal = OverOneDenominator(claim.values, form.columns, false);
        proof.ray = OverOneDenominator(claim.ray, form.columns, false);
    }
    proof.proved = proof.status != ProofStatus::Stopped && CheckProof(form, proof).empty();
    if (!proof.proved)
        proof.status = ProofStatus::Stopped;
    return proof;
}

/// An optimal basis needs no pivot, and must not lose its way in doubles; any other one does.
Proof ProofFromBasis(const BoundedForm& form, const Basis& basis, SolveControl& control)
{
    Proof proof = CertifyBasis(form, basis, control);
    return proof.proved || control.IsStopped() ? proof : SolveProved(form, &basis, control);
}

void Learn(const Proof& proof, Evidence evidence, bool isMaximum, ClaimReport& report)
{
    report.truth = proof.status;
    report.evidence = proof.status == ProofStatus::Stopped ? Evidence::None : evidence;
    report.stopReason = proof.stopReason;
    report.optimum = isMaximum ? Rational(-proof.objective) : proof.objective;
}

/// Proves the truth about the model by the first way that leads there.
void FindTruth(const BoundedForm& form, const Model& model, const Claim& claim,
               const ClaimOptions& options, ClaimChecker& checker, ClaimReport& report)
{
    const bool isMaximum = model.ObjectiveSense() == Sense::Maximize;
    SolveControl control(options.limits);
    Proof proof = ProofInFile(form, model, claim, report.objective);
    Evidence evidence = Evidence::Certificate;
    if (!proof.proved && claim.status == ClaimedStatus::Infeasible && !claim.conflict.empty())
    {
        proof = SolveProved(RestrictedTo(form, claim.conflict), nullptr, control);
        evidence = Evidence::Conflict;
        if (proof.proved && proof.status != ProofStatus::Infeasible)
            checker.Disagree("claim.conflict",
                             "the rows and bounds of the conflict do not exclude each other");
        proof.proved = proof.status == ProofStatus::Infeasible;
    }
    if (!proof.proved)
    {
        proof = claim.basis ? ProofFromBasis(form, *claim.basis, control)
                            : SolveProved(form, nullptr, control);
        evidence = claim.basis ? Evidence::Basis : Evidence::Solve;
    }
    Learn(proof, evidence, isMaximum, report);
    report.pivots = control.Pivots(Stage::Double) + control.Pivots(Stage::Exact);
}

const char* TruthWords(ProofStatus status)
{
    switch (status)
    {
    case ProofStatus::Optimal:
        return "the model has an optimum";
    case ProofStatus::Infeasible:
        return "the model is infeasible";
    case ProofStatus::Unbounded:
        return "the model is unbounded";
    case ProofStatus::Stopped:
        break;
    }
    return "";
}

bool IsTrue(ClaimedStatus claimed, ProofStatus truth)
{
    return (claimed == ClaimedStatus::Optimal && truth == ProofStatus::Optimal) ||
           (claimed == ClaimedStatus::Infeasible && truth == ProofStatus::Infeasible) ||
           (claimed == ClaimedStatus::Unbounded && truth == ProofStatus::Unbounded);
}

}  // namespace

ClaimReport CheckClaim(const Model& model, const Claim& claim, const ClaimOptions& options)
{
    ClaimReport report;
    report.claimed = claim.status;
    report.numbers = claim.meaning;
    BoundedForm form = FormOf(model);
    form.numbers = claim.meaning;
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
        FindTruth(form, model, claim, options, checker, report);
        if (report.truth != ProofStatus::Stopped && !IsTrue(claim.status, report.truth))
            checker.Disagree("claim.status", TruthWords(report.truth));
        if (isOptimum && report.truth == ProofStatus::Optimal)
            checker.CheckOptimum(claim);
    }
    report.judgement = report.disagreementCount != 0       ? Judgement::Refuted
                       : report.evidence == Evidence::None ? Judgement::Undecided
                                                           : Judgement::Confirmed;
    return report;
}

}  // namespace nuv
