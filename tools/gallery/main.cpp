#include "gallery/GalleryArguments.h"
#include "gallery/IndexPage.h"
#include "gallery/SceneResources.h"
#include "gallery/ScreenshotWriter.h"
#include "platform/Console.h"
#include "support/ScreenTest.h"

#include <QProcess>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::gallery;

namespace {

int work(int argc, char **argv)
{
    const test::ScreenTestApplication application{argc, argv};
    const GalleryArguments arguments = GalleryArguments::of(*QCoreApplication::instance());
    // A blinking cursor would be in some pictures and not in others.
    QApplication::setCursorFlashTime(0);
    SceneResources resources;
    const QList<Scene> scenes = allScenes();
    for (qsizetype number = arguments.share; number < scenes.size(); number += arguments.shares) {
        takePictures(scenes.at(number), arguments.plan, resources, arguments.folder.path());
        console::printLine(scenes.at(number).name);
    }
    return 0;
}

void clear(QDir &folder)
{
    if (!folder.mkpath(u"."_s)) {
        qFatal("Cannot create %s", qUtf8Printable(folder.path()));
    }
    for (const QString &name : folder.entryList({u"*.png"_s, u"index.html"_s}, QDir::Files)) {
        folder.remove(name);
    }
}

/// Lets as many processes as there are processors take the pictures at that many pixels per point, which is
/// decided for a process at its start.
bool takeAll(const GalleryArguments &arguments, int ratio)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen:configfile="_s + QStringLiteral(GALLERY_SCREEN));
    environment.insert(u"QT_SCALE_FACTOR"_s, QString::number(ratio));
    environment.insert(u"no_proxy"_s, u"*"_s);
    const int shares = std::max(1, QThread::idealThreadCount());
    std::vector<std::unique_ptr<QProcess>> workers;
    for (int share = 0; share < shares; ++share) {
        auto worker = std::make_unique<QProcess>();
        worker->setProcessEnvironment(environment);
        worker->setProcessChannelMode(QProcess::ForwardedChannels);
        worker->start(QCoreApplication::applicationFilePath(), arguments.forWorker(share, shares));
        workers.push_back(std::move(worker));
    }
    return std::all_of(workers.begin(), workers.end(), [](const auto &worker) {
        return worker->waitForFinished(-1) && worker->exitStatus() == QProcess::NormalExit &&
               worker->exitCode() == 0;
    });
}

bool writeIndex(const GalleryArguments &arguments)
{
    QFile file{arguments.folder.filePath(u"index.html"_s)};
    return file.open(QIODevice::WriteOnly) && file.write(indexPage(arguments.plan).toUtf8()) > 0 &&
           file.flush();
}

} // namespace

int main(int argc, char *argv[])
{
    if (GalleryArguments::isWorker(argc, argv)) {
        return work(argc, argv);
    }
    const QCoreApplication application{argc, argv};
    GalleryArguments arguments = GalleryArguments::of(application);
    clear(arguments.folder);
    for (const int ratio : arguments.plan.ratios) {
        if (!takeAll(arguments, ratio)) {
            console::printLine(u"The gallery is not complete."_s);
            return 1;
        }
    }
    if (!writeIndex(arguments)) {
        console::printLine(u"The gallery has no index."_s);
        return 1;
    }
    console::printLine(u"The gallery: "_s + arguments.folder.filePath(u"index.html"_s));
    return 0;
}
