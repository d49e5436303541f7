#include "app/QuilmoraApp.h"

#include "app/MainView.h"
#include "generation/CoverGenerationFlow.h"
#include "generation/ImageGeneratorService.h"
#include "platform/ChineseCatalogue.h"
#include "screens/common/ClickFilter.h"
#include "screens/common/ControlStyle.h"
#include "screens/common/Fonts.h"
#include "screens/common/SystemFilePanels.h"
#include "screens/common/Theme.h"
#include "screens/generate/GenerateCoverView.h"
#include "screens/help/BuildTexts.h"
#include "screens/help/HelpView.h"
#include "screens/history/HistoryListView.h"
#include "screens/history/ThumbnailCache.h"
#include "screens/settings/SettingsView.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"

#include <QIcon>
#include <QNetworkProxyFactory>
#include <QScreen>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// High enough for the whole form.
constexpr QSize comfortableSize{1100, 1080};

/// Small pictures, which take no time at the start. Desktops that know the installed program take its own.
QIcon iconOfWindows()
{
    QIcon icon;
    for (const int side : {32, 64, 128}) {
        icon.addFile(u":/icons/%1x%1/apps/%2.png"_s.arg(side).arg(buildTexts::identifier), {side, side});
    }
    return icon;
}

QWidget *makeScreen(NavigationTab tab, FilePanels &panels, ThumbnailCache &thumbnails, QWidget *parent)
{
    switch (tab) {
    case NavigationTab::generate:
        return new GenerateCoverView{CoverGenerationFlow::create(DatabaseManager::shared(),
                                                                 ImageStorageService::shared(),
                                                                 ImageGeneratorService::shared()),
                                     panels, parent};
    case NavigationTab::settings:
        return new SettingsView{DatabaseManager::shared(), parent};
    case NavigationTab::history:
        return new HistoryListView{DatabaseManager::shared(), panels, thumbnails, parent};
    case NavigationTab::help:
        return new HelpView{HelpContents::ofThisBuild(), parent};
    }
    Q_UNREACHABLE();
}

} // namespace

QuilmoraApp::QuilmoraApp(int &argc, char **argv)
    : QApplication{argc, argv},
      panels{std::make_unique<SystemFilePanels>()},
      thumbnails{std::make_unique<ThumbnailCache>()}
{
    installChineseCatalogue(*this);
    setApplicationName(u"Quilmora"_s);
    setDesktopFileName(buildTexts::identifier.toString());
    QNetworkProxyFactory::setUseSystemConfiguration(true);
#ifndef Q_OS_MACOS
    setStyle(new ControlStyle);
#endif
    installApplicationFont();
    installEventFilter(new ClickFilter{this});
    Theme::current();
    setWindowIcon(iconOfWindows());
}

QuilmoraApp::~QuilmoraApp() = default;

void QuilmoraApp::openMainWindow()
{
    window = std::make_unique<MainView>(
        [this](NavigationTab tab, QWidget *parent) { return makeScreen(tab, *panels, *thumbnails, parent); });
    // Not by their standard names: those have no key on some desktops.
    for (const auto key : {Qt::Key_W, Qt::Key_Q}) {
        auto *shortcut = new QShortcut{QKeySequence{Qt::CTRL | key}, window.get()};
        connect(shortcut, &QShortcut::activated, window.get(), &QWidget::close);
    }
    window->resize(comfortableSize.boundedTo(window->screen()->availableSize() * 0.95)
                       .expandedTo(window->minimumSize()));
    window->show();
}

} // namespace quilmora
