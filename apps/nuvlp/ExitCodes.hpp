/// How a run of nuvlp ends. The codes from 64 on are those of sysexits.
#pragma once

namespace nuvlp
{

enum class ExitCode : int
{
    Success = 0,
    Infeasible = 2,
    Unbounded = 3,
    Stopped = 4,
    Refuted = 5,
    Usage = 64,
    BadModel = 65,
    NoInput = 66,
    Internal = 70,
    CannotWrite = 73,
};

struct ExitCodeEntry
{
    ExitCode code;
    const char* text;
};

/// As help and manual list them.
inline constexpr ExitCodeEntry kExitCodes[] = {
    {ExitCode::Success, "all went well; of a solve: a verdict was reached, whichever"},
    {ExitCode::Infeasible, "infeasible, with --exit-status only"},
    {ExitCode::Unbounded, "unbounded, with --exit-status only"},
    {ExitCode::Stopped, "stopped by a limit, a repeated basis or an interrupt"},
    {ExitCode::Refuted, "prove refuted the claim, verify the certificate"},
    {ExitCode::Usage, "wrong arguments"},
    {ExitCode::BadModel, "an error in a file: model, solution, certificate, basis, table"},
    {ExitCode::NoInput, "a file is missing or cannot be read"},
    {ExitCode::Internal, "internal error, or selftest found other bits"},
    {ExitCode::CannotWrite, "the result cannot be written"},
};

}  // namespace nuvlp
