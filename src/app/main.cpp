#include "app/QuilmoraApp.h"
#include "platform/ExitWatchdog.h"

#include <cstdlib>

namespace {

QtMessageHandler defaultHandler = nullptr;

/// Without a display Qt aborts, which desktops would report as a crash.
void exitInsteadOfAborting(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    defaultHandler(type, context, message);
    if (type == QtFatalMsg) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    defaultHandler = qInstallMessageHandler(exitInsteadOfAborting);
    quilmora::QuilmoraApp application{argc, argv};
    qInstallMessageHandler(nullptr);
    application.openMainWindow();
    const int status = quilmora::QuilmoraApp::exec();
    quilmora::startExitWatchdog(std::chrono::seconds{2}, status);
    return status;
}
