// What a solution holds, as arrays and exact numbers.
#include "Nuv/CInterface/Records.hpp"
#include "Nuv/CInterface/Solving.hpp"

#include "Nuv/Certificate/Certificate.hpp"

namespace nuv::c
{
namespace
{

/// The array that `of` picks from a solution, or null where it is empty.
template <class Pick>
auto ArrayOf(const NuvSolution* handle, std::uint32_t* count, const Pick& of) noexcept
    -> decltype(of(*handle).data())
{
    if (count)
        *count = 0;
    if (!IsHandle(handle) || of(*handle).empty())
        return nullptr;
    if (count)
        *count = static_cast<std::uint32_t>(of(*handle).size());
    return of(*handle).data();
}

const std::uint8_t* StatusesOf(const NuvSolution* handle, std::uint32_t* count,
                               std::vector<BasisStatus> Basis::*part) noexcept
{
    // Bytes all the same.
    static_assert(sizeof(BasisStatus) == 1 &&
                  static_cast<int>(BasisStatus::Free) == NUV_BASISSTATUS_Free);
    return reinterpret_cast<const std::uint8_t*>(ArrayOf(
        handle, count, [part](const NuvSolution& held) -> const auto& {
            return held.solution.basis.*part;
        }));
}

/// The vector of the proof that holds the numbers of a kind, and the sign that turns them into the
/// model's sense.
struct ProofNumbers
{
    const ExactVector* vector = nullptr;
    int sign = 1;
};

ProofNumbers NumbersOf(const NuvSolution& handle, std::uint32_t kind)
{
    if (!handle.solution.certificate)
        return {};
    const nuv::Certificate& proof = *handle.solution.certificate;
    const bool isMaximised = handle.model->ObjectiveSense() == Sense::Maximize;
    switch (kind)
    {
    case NUV_EXACT_Values:
        if (proof.status == Status::Optimal)
            return {&proof.primal};
        break;
    case NUV_EXACT_Duals:
        if (proof.status == Status::Optimal)
            return {&proof.dual, isMaximised ? -1 : 1};
        break;
    case NUV_EXACT_Ray:
        if (proof.status == Status::Unbounded)
            return {&proof.ray};
        break;
    case NUV_EXACT_Farkas:
        if (proof.status == Status::Infeasible)
            return {&proof.dual};
        break;
    default:
        break;
    }
    return {};
}

std::string TextOf(const ProofNumbers& numbers, Index at)
{
    const Rational number = numbers.vector->At(at);
    return ToString(numbers.sign < 0 ? -number : number);
}

/// The numbers of a kind that were written down, or null.
const std::vector<std::string>* WrittenNumbers(const NuvSolution& handle, std::uint32_t kind)
{
    if (!handle.solution.exact)
        return nullptr;
    const ExactTexts& texts = *handle.solution.exact;
    const std::vector<std::string>* const kinds[] = {
        nullptr, &texts.values,       &texts.duals,      &texts.ray,
        nullptr, &texts.reducedCosts, &texts.activities, &texts.slacks};
    return kind < std::size(kinds) && kinds[kind] && !kinds[kind]->empty() ? kinds[kind] : nullptr;
}

/// @return nothing where there is no such number.
std::string ExactText(const NuvSolution& handle, std::uint32_t kind, std::uint32_t index)
{
    if (kind == NUV_EXACT_Objective)
        return index == 0 ? handle.solution.exactObjective : std::string();
    if (const std::vector<std::string>* written = WrittenNumbers(handle, kind))
        return index < written->size() ? (*written)[index] : std::string();
    const ProofNumbers numbers = NumbersOf(handle, kind);
    if (!numbers.vector || index >= numbers.vector->numerator.size())
        return {};
    return TextOf(numbers, index);
}

/// All numbers of a kind, each ended by a NUL. Fails with NotKnown where there are none.
std::string AllExactTexts(const NuvSolution& handle, std::uint32_t kind)
{
    std::string all;
    const std::vector<std::string>* written = WrittenNumbers(handle, kind);
    const ProofNumbers numbers = written ? ProofNumbers() : NumbersOf(handle, kind);
    if (kind == NUV_EXACT_Objective && !handle.solution.exactObjective.empty())
        all.append(handle.solution.exactObjective).push_back('\0');
    else if (written)
        for (const std::string& number : *written)
            all.append(number).push_back('\0');
    else if (numbers.vector)
        for (Index at = 0; at < numbers.vector->numerator.size(); ++at)
            all.append(TextOf(numbers, at)).push_back('\0');
    else
        Fail(NUV_MODELRESULT_NotKnown, "c.not-known", "there are none");
    return all;
}

}  // namespace
}  // namespace nuv::c

using namespace nuv::c;

void NuvSolutionDestruct(NuvSolution* solution)
{
    Destruct(solution);
}

NuvModelResult NuvSolutionGetInfo(const NuvSolution* solution, NuvSolutionInfo* info)
{
    return Guarded(nullptr,
                   [&]
                   {
                       const NuvSolution& handle = Checked(solution);
                       const nuv::Solution& held = handle.solution;
                       NuvSolutionInfo filled{};
                       SayHowItEnded(held, filled);
                       filled.numColumns = handle.model->VariableCount();
                       filled.numRows = handle.model->RowCount();
                       filled.numIisMembers = static_cast<uint32_t>(handle.iis.size());
                       filled.iisMinimal = held.iis.minimal ? 1 : 0;
                       filled.objective = NuvSolutionGetObjective(solution);
                       filled.primalViolation = held.primalViolation;
                       filled.dualViolation = held.dualViolation;
                       filled.seconds = held.seconds;
                       filled.checkSeconds = held.checkSeconds;
                       filled.singlePrecisionPivots = held.singlePrecision.pivots;
                       filled.doublePivots = held.stages[nuv::Stage::Double].pivots;
                       filled.exactPivots = held.stages[nuv::Stage::Exact].pivots;
                       FillIn(info, "info", filled);
                   });
}

int32_t NuvSolutionGetStatus(const NuvSolution* solution)
{
    return IsHandle(solution) ? static_cast<int32_t>(solution->solution.status) : -1;
}

int32_t NuvSolutionIsProved(const NuvSolution* solution)
{
    return IsHandle(solution) && solution->solution.proved ? 1 : 0;
}

double NuvSolutionGetObjective(const NuvSolution* solution)
{
    return IsHandle(solution) ? solution->solution.objective : nuv::Solution::kUnknown;
}

uint32_t NuvSolutionGetPointUniqueness(const NuvSolution* solution)
{
    return IsHandle(solution) ? static_cast<uint32_t>(solution->solution.unique.point) : 0;
}

uint32_t NuvSolutionGetDualUniqueness(const NuvSolution* solution)
{
    return IsHandle(solution) ? static_cast<uint32_t>(solution->solution.unique.duals) : 0;
}

const double* NuvSolutionGetValues(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.solution.values; });
}

const double* NuvSolutionGetReducedCosts(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.solution.reducedCosts; });
}

const double* NuvSolutionGetActivities(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.solution.activities; });
}

const double* NuvSolutionGetSlacks(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.solution.slacks; });
}

const double* NuvSolutionGetDuals(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.solution.duals; });
}

const double* NuvSolutionGetRay(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count, [](const NuvSolution& held) -> const auto& { return held.solution.ray; });
}

const double* NuvSolutionGetFarkas(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.solution.farkas; });
}

const double* NuvSolutionGetCostRanges(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count, [](const NuvSolution& held) -> const auto& { return held.costRanges; });
}

const double* NuvSolutionGetRowLowerRanges(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.rowLowerRanges; });
}

const double* NuvSolutionGetRowUpperRanges(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count,
        [](const NuvSolution& held) -> const auto& { return held.rowUpperRanges; });
}

const uint8_t* NuvSolutionGetColumnBasis(const NuvSolution* solution, uint32_t* count)
{
    return StatusesOf(solution, count, &nuv::Basis::columns);
}

const uint8_t* NuvSolutionGetRowBasis(const NuvSolution* solution, uint32_t* count)
{
    return StatusesOf(solution, count, &nuv::Basis::rows);
}

const NuvIisMember* NuvSolutionGetIis(const NuvSolution* solution, uint32_t* count)
{
    return ArrayOf(
        solution, count, [](const NuvSolution& held) -> const auto& { return held.iis; });
}

uint64_t NuvSolutionGetExact(const NuvSolution* solution, uint32_t kind, uint32_t index,
                             char* buffer, uint64_t size)
{
    uint64_t needed = 0;
    (void)Guarded(nullptr,
                  [&]
                  {
                      const std::string text = ExactText(Checked(solution), kind, index);
                      if (!text.empty())
                          needed = CopyText(text, buffer, size);
                  });
    return needed;
}

NuvModelResult NuvSolutionMakeExact(const NuvSolution* solution, uint32_t kind, NuvText** numbers)
{
    return Guarded(nullptr,
                   [&]
                   {
                       Given(numbers, "numbers") = nullptr;
                       const NuvSolution& handle = Checked(solution);
                       RequireOneOf(kind, NUV_EXACT_Slacks + 1, "kind of exact numbers");
                       MakeText(numbers, AllExactTexts(handle, kind));
                   });
}
