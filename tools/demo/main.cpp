#include "DemoFolder.h"
#include "DemoWalk.h"
#include "LocalServiceProcess.h"
#include "app/QuilmoraApp.h"
#include "platform/Console.h"
#include "platform/Files.h"
#include "store/DatabaseManager.h"
#include "ui/theme/Theme.h"

#include <QFile>
#include <QFileInfo>
#include <QStringList>

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;
using namespace quilmora;

namespace {

/// The folder named after "--folder", else "demo" here. Read by hand: it is needed before the application is
/// made.
QString folderArgument(const QStringList &arguments)
{
    const qsizetype option = arguments.indexOf(u"--folder"_s);
    return option >= 0 && option + 1 < arguments.size() ? arguments.at(option + 1) : u"demo"_s;
}

/// Whether the cover was exported, stored and recorded; says where it is.
bool coverIsThere(const DemoFolder &folder)
{
    const QList<HistoryRecord> history = DatabaseManager::shared().fetchAllHistory();
    if (history.isEmpty() || history.constFirst().image().isNull() ||
        !QFileInfo::exists(folder.exportedCover())) {
        return false;
    }
    console::printLine(u"The cover: "_s + folder.exportedCover());
    console::printLine(u"Stored as: "_s + userFolders::expandTilde(history.constFirst().imagePath));
    console::printLine(u"Pictures of the screens: "_s + folder.file(u"screen-*.png"_s));
    return true;
}

void runWalk(DemoWalk &walk, const DemoFolder &folder, bool wholeWay)
{
    QObject::connect(&walk, &DemoWalk::failed, qApp, [](const QString &step) {
        console::printLine(u"No cover: this step could not be made: "_s + step);
        QCoreApplication::exit(1);
    });
    QObject::connect(&walk, &DemoWalk::finished, qApp, [&folder, wholeWay] {
        if (wholeWay) {
            QCoreApplication::exit(coverIsThere(folder) ? 0 : 1);
        } else {
            QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs, false);
            console::printLine(u"The window is ready: press the button at the end of the form."_s);
        }
    });
    walk.start();
}

} // namespace

int main(int argc, char *argv[])
{
    QStringList arguments;
    std::transform(argv + 1, argv + argc, std::back_inserter(arguments),
                   [](const char *argument) { return QFile::decodeName(argument); });
    const bool wholeWay = arguments.contains(u"--walk"_s);
    const DemoFolder folder{folderArgument(arguments)};
    folder.enterHome();
    // Qt's own file panels can be answered by the walk, whatever the desktop.
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    QuilmoraApp application{argc, argv};

    folder.drawPictures();

    const QString key = u"local-demo-key"_s;
    LocalServiceProcess service;
    const QUrl endpoint = service.start(key);
    if (endpoint.isEmpty()) {
        console::printLine(u"No cover: the local service did not start."_s);
        return 1;
    }
    console::printLine(u"The local service listens on "_s + endpoint.toString());
    folder.configure(endpoint, key);
    if (arguments.contains(u"--dark"_s)) {
        Theme::current().setScheme(ColorScheme::dark);
    }
    application.openMainWindow();
    DemoWalk walk{folder, wholeWay};
    runWalk(walk, folder, wholeWay);
    const int status = QuilmoraApp::exec();
    if (status == 0 && DatabaseManager::shared().fetchAllHistory().isEmpty()) {
        console::printLine(u"No cover was made."_s);
        return 1;
    }
    return status;
}
