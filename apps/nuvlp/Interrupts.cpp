#include "Interrupts.hpp"

#include <csignal>

namespace nuvlp
{
namespace
{

constexpr int kSignals[] = {SIGINT, SIGTERM, SIGHUP};

volatile std::sig_atomic_t interrupted = 0;

void Interrupt(int signal)
{
    if (interrupted != 0)
    {
        (void)std::signal(signal, SIG_DFL);
        (void)std::raise(signal);
    }
    interrupted = 1;
}

}  // namespace

void CatchInterrupts()
{
    for (const int signal : kSignals)
        if (std::signal(signal, Interrupt) == SIG_IGN)
            (void)std::signal(signal, SIG_IGN);
}

bool IsInterrupted()
{
    return interrupted != 0;
}

}  // namespace nuvlp
