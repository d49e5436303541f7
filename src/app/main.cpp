#include "app/QuilmoraApp.h"
#include "platform/PromptEnd.h"

#include <cstdlib>

namespace
{

QtMessageHandler usualHandler = nullptr;

/// Where there is no display Qt says so and aborts; that is no crash to be recorded.
void endInsteadOfAborting(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    usualHandler(type, context, message);
    if (type == QtFatalMsg) {
        std::_Exit(EXIT_FAILURE);
    }
}

} // namespace

int main(int argc, char *argv[])
{
    usualHandler = qInstallMessageHandler(endInsteadOfAborting);
    quilmora::QuilmoraApp application{argc, argv};
    qInstallMessageHandler(nullptr);
    application.openMainWindow();
    const int status = quilmora::QuilmoraApp::exec();
    quilmora::endWithin(std::chrono::seconds{2}, status);
    return status;
}
