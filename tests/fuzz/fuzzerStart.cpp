#include <QCoreApplication>

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application{*argc, *argv};
    // The decoders' complaints would slow everything down.
    qInstallMessageHandler([](auto, const auto &, const auto &) {});
    return 0;
}
