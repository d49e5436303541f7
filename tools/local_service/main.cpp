#include "local_service/http/LocalImageService.h"

#include <QCommandLineParser>
#include <QGuiApplication>
#include <QUrl>

#include <csignal>
#include <cstdio>
#include <optional>
#include <pthread.h>

using namespace Qt::StringLiterals;
using namespace quilmora::localservice;

namespace {

/// Keeps the signals that end the program for sigwait(), in this thread and all that it starts.
sigset_t holdEndSignals()
{
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGTERM);
    sigaddset(&signals, SIGINT);
    pthread_sigmask(SIG_BLOCK, &signals, nullptr);
    return signals;
}

void say(std::FILE *stream, const QString &line)
{
    std::fputs(qUtf8Printable(line + u"\n"_s), stream);
    std::fflush(stream);
}

/// The options from the command line; nothing when a value is no number or out of range.
std::optional<LocalServiceOptions> readOptions(const QCoreApplication &application)
{
    LocalServiceOptions options;
    const QCommandLineOption port{u"port"_s, u"Port on 127.0.0.1; 0 takes any free one."_s, u"number"_s,
                                  u"0"_s};
    const QCommandLineOption key{u"key"_s, u"The API key to accept."_s, u"key"_s, options.key};
    const QCommandLineOption delay{u"delay"_s, u"Least time to an answer, in milliseconds."_s, u"ms"_s,
                                   QString::number(options.delay.count())};
    const QCommandLineOption model{u"model"_s, u"A model to accept; may be given several times."_s, u"id"_s,
                                   options.models.constFirst()};
    QCommandLineParser parser;
    parser.setApplicationDescription(u"An image service on this machine that composes covers itself."_s);
    parser.addHelpOption();
    parser.addOptions({port, key, delay, model});
    parser.process(application);

    bool portIsNumber = false;
    bool delayIsNumber = false;
    options.port = parser.value(port).toUShort(&portIsNumber);
    options.delay = std::chrono::milliseconds{parser.value(delay).toUInt(&delayIsNumber)};
    options.key = parser.value(key);
    options.models = parser.values(model);
    if (!portIsNumber || !delayIsNumber || !parser.positionalArguments().isEmpty()) {
        return std::nullopt;
    }
    return options;
}

} // namespace

int main(int argc, char *argv[])
{
    const sigset_t endSignals = holdEndSignals();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application{argc, argv};
    const std::optional<LocalServiceOptions> options = readOptions(application);
    if (!options) {
        say(stderr, u"quilmora-local-service: bad arguments, see --help"_s);
        return 2;
    }
    LocalImageService service{*options};
    if (service.start() == 0) {
        say(stderr, u"quilmora-local-service: cannot listen on port %1"_s.arg(options->port));
        return 1;
    }
    say(stdout, u"listening on "_s + service.endpoint().toString());
    int signal = 0;
    sigwait(&endSignals, &signal);
    service.stop();
    return 0;
}
