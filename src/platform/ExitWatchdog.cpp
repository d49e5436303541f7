#include "platform/ExitWatchdog.h"

#include <csignal>
#include <unistd.h>

namespace quilmora {
namespace {

volatile std::sig_atomic_t statusAtTheEnd = 0;

extern "C" void endNow(int /*signal*/) { _exit(statusAtTheEnd); }

} // namespace

void startExitWatchdog(std::chrono::seconds time, int exitStatus)
{
    statusAtTheEnd = exitStatus;
    std::signal(SIGALRM, endNow);
    alarm(static_cast<unsigned>(time.count()));
}

} // namespace quilmora
