/// How a run of nuvlp ends. The codes from 64 on are those of sysexits.
#pragma once

namespace nuvlp
{

enum class ExitCode : int
{
    Success = 0,     ///< a verdict was reached and written: optimal, infeasible or unbounded
    Infeasible = 2,  ///< only with --exit-status
    Unbounded = 3,   ///< only with --exit-status
    Stopped = 4,     ///< by a limit, by a repeated basis, or interrupted; what is known is written
    Refuted = 5,     ///< `prove` refuted the claim
    Usage = 64,
    BadModel = 65,
    NoInput = 66,
    Internal = 70,
    CannotWrite = 73,
};

}  // namespace nuvlp
