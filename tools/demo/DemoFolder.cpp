#include "DemoFolder.h"

#include "demo_pictures/DemoPictures.h"
#include "model/VolcengineConfig.h"
#include "platform/Files.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"

#include <QDir>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace quilmora {

DemoFolder::DemoFolder(const QString &path) : m_root{QFileInfo{path}.absoluteFilePath()}
{
    QDir{home()}.removeRecursively();
    for (const QString &own : {presenterPhoto(), sampleCover(), exportedCover()}) {
        QFile::remove(own);
    }
    if (!QDir{}.mkpath(home())) {
        qFatal("Cannot create %s", qUtf8Printable(m_root));
    }
}

void DemoFolder::enterHome() const
{
    // The permission to draw on the screen stays that of the user.
    if (!qEnvironmentVariableIsSet("XAUTHORITY")) {
        qputenv("XAUTHORITY", QFile::encodeName(QDir::homePath() + u"/.Xauthority"_s));
    }
    // The service is on this machine; a proxy set for the network would catch its address too.
    qputenv("no_proxy", "*");
    const QByteArray ownHome = QFile::encodeName(home());
    qputenv("HOME", ownHome);
    qputenv("CFFIXED_USER_HOME", ownHome);
    for (const char *folder : {"XDG_DATA_HOME", "XDG_CONFIG_HOME", "XDG_CACHE_HOME"}) {
        qunsetenv(folder);
    }
}

void DemoFolder::drawPictures() const
{
    demoPictures::writePresenter(presenterPhoto());
    demoPictures::writeSampleCover(sampleCover());
}

void DemoFolder::configure(const QUrl &service, const QString &key) const
{
    DatabaseManager database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
    database.saveConfig(service.toString(), key, VolcengineConfig::defaultModelID());
}

QString DemoFolder::file(const QString &name) const { return m_root + u'/' + name; }

} // namespace quilmora
