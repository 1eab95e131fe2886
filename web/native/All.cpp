// What is in the larger program beside Proof.cpp, in the same manner.
#include "Asked.hpp"

#include "Nuv/CInterface/Handles.hpp"
#include "Nuv/Io/Lp/LpWriter.hpp"
#include "Nuv/Model/NuvModel.h"

namespace
{

int32_t TellProgress(void* /*userData*/, const NuvProgress* progress)
{
    return HostProgress(progress->stage, static_cast<double>(progress->pivots), progress->seconds,
                        progress->objective, progress->feasible);
}

NuvSolveOptions OptionsOf(std::uint32_t flags, double seconds, double pivots)
{
    NuvSolveOptions options;
    (void)NuvSolveOptionsInit(&options, sizeof options);
    options.sensitivity = flags & WithSensitivity;
    options.exact = flags & WithExact;
    options.numbers = flags & StoredNumbers ? NUV_NUMBERS_Stored : NUV_NUMBERS_Written;
    options.seconds = seconds;
    if (pivots < 9e15)
        options.doublePivots = options.exactPivots = static_cast<uint64_t>(pivots);
    if (flags & WithProgress)
        options.progress = TellProgress;
    return options;
}

}  // namespace

/// @return the model in LP format, or null where that cannot hold it.
NUV_EXPORT("writeLp") NuvText* WriteLpText(const NuvModel* handle, NuvDiagnostics* diagnostics)
{
    nuv::WriteResult writing = nuv::WriteLp(*handle->model);
    diagnostics->diagnostics = std::move(writing.diagnostics);
    return writing.text ? new NuvText(std::move(*writing.text)) : nullptr;
}

/// @return the status that the certificate proves of the model; leaves by a failure if none.
NUV_EXPORT("verify")
std::uint32_t Verify(const NuvModel* handle, const char* certificate, std::size_t size,
                     std::uint32_t numbers, NuvDiagnostics* diagnostics)
{
    NuvVerification verification;
    verification.size = sizeof verification;
    (void)NuvModelVerify(handle, certificate, size, numbers, &verification, diagnostics);
    return verification.status;
}

/// Starts where the last solve of the session ended. @return null where the model has no solution,
/// which `diagnostics` then tell.
NUV_EXPORT("solveAgain")
NuvSolution* SolveAgain(const NuvModel* handle, NuvSolver* session, std::uint32_t flags,
                        double seconds, double pivots, NuvDiagnostics* diagnostics)
{
    const NuvSolveOptions given = OptionsOf(flags, seconds, pivots);
    NuvSolution* solution = nullptr;
    (void)NuvSolverSolve(session, handle, &given, &solution, diagnostics);
    return solution;
}

NUV_EXPORT("repair")
NuvRepair* Repair(const NuvModel* handle, const double* columnWeights, const double* rowWeights,
                  std::uint32_t flags, double seconds, double pivots, NuvDiagnostics* diagnostics)
{
    const NuvSolveOptions options = OptionsOf(flags, seconds, pivots);
    NuvRepair* repair = nullptr;
    (void)NuvModelRepair(handle, columnWeights, rowWeights, &options, &repair, diagnostics);
    return repair;
}

/// Status, proved, stop reason, number of changes, total.
NUV_EXPORT("repairInfo") void GetRepairInfo(const NuvRepair* repair, double* out)
{
    NuvRepairInfo info;
    info.size = sizeof info;
    (void)NuvRepairGetInfo(repair, &info);
    const double all[] = {static_cast<double>(info.status), static_cast<double>(info.proved),
                          static_cast<double>(info.stopReason),
                          static_cast<double>(info.numChanges), info.total};
    for (const double number : all)
        *out++ = number;
}

/// Index, whether it is a row, whether its upper side, from, to, amount.
NUV_EXPORT("repairChange")
void GetRepairChange(const NuvRepair* repair, std::uint32_t index, double* out)
{
    const NuvRepairChange& change = NuvRepairGetChanges(repair, nullptr)[index];
    const double all[] = {static_cast<double>(change.index),
                          static_cast<double>(change.isRow),
                          static_cast<double>(change.isUpper),
                          change.from,
                          change.to,
                          change.amount};
    for (const double number : all)
        *out++ = number;
}
