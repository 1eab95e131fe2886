/// SIGINT, SIGTERM and SIGHUP during a solve: the first ends the solve and what is known is
/// written, a second ends the program at once.
#pragma once

namespace nuvlp
{

/// From now on, but for signals that whoever started the program had it ignore, as nohup does.
void CatchInterrupts();

[[nodiscard]] bool IsInterrupted();

}  // namespace nuvlp
