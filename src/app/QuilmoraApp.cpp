#include "app/QuilmoraApp.h"

#include "app/ClickFilter.h"
#include "app/MainView.h"
#include "generation/CoverGenerationFlow.h"
#include "generation/ImageGeneratorService.h"
#include "platform/ChineseTranslations.h"
#include "screens/generate/GenerateCoverView.h"
#include "screens/help/BuildConfiguration.h"
#include "screens/help/HelpView.h"
#include "screens/history/HistoryListView.h"
#include "screens/history/ThumbnailCache.h"
#include "screens/settings/SettingsView.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "ui/dialogs/SystemFileDialogs.h"
#include "ui/style/ControlStyle.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QIcon>
#include <QNetworkProxyFactory>
#include <QScreen>
#include <QShortcut>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// The whole form is visible.
constexpr QSize comfortableSize{1100, 1080};

/// Small ones, which load fast. Desktops use the icons of the installed program where they can.
QIcon iconOfWindows()
{
    QIcon icon;
    for (const int side : {32, 64, 128}) {
        icon.addFile(u":/icons/%1x%1/apps/%2.png"_s.arg(side).arg(buildConfiguration::identifier),
                     {side, side});
    }
    return icon;
}

} // namespace

QWidget *makeScreen(NavigationTab tab, const ScreenServices &services, QWidget *parent)
{
    switch (tab) {
    case NavigationTab::generate:
        return new GenerateCoverView{
            CoverGenerationFlow::create(services.database, services.storage, services.generator),
            services.dialogs, parent};
    case NavigationTab::history:
        return new HistoryListView{services.database, services.dialogs, services.thumbnails, parent};
    case NavigationTab::settings:
        return new SettingsView{services.database, parent};
    case NavigationTab::help:
        return new HelpView{services.about, parent};
    }
    Q_UNREACHABLE();
}

QuilmoraApp::QuilmoraApp(int &argc, char **argv)
    : QApplication{argc, argv},
      m_dialogs{std::make_unique<SystemFileDialogs>()},
      m_thumbnails{std::make_unique<ThumbnailCache>()}
{
    installChineseTranslations(*this);
    setApplicationName(u"Quilmora"_s);
    setDesktopFileName(buildConfiguration::identifier.toString());
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
    m_window = std::make_unique<MainView>([this](NavigationTab tab, QWidget *parent) {
        return makeScreen(tab,
                          {DatabaseManager::shared(), ImageStorageService::shared(),
                           ImageGeneratorService::shared(), *m_dialogs, *m_thumbnails},
                          parent);
    });
    // The standard keys have no key on some desktops.
    for (const auto key : {Qt::Key_W, Qt::Key_Q}) {
        auto *shortcut = new QShortcut{QKeySequence{Qt::CTRL | key}, m_window.get()};
        connect(shortcut, &QShortcut::activated, m_window.get(), &QWidget::close);
    }
    m_window->resize(comfortableSize.boundedTo(m_window->screen()->availableSize() * 0.95)
                         .expandedTo(m_window->minimumSize()));
    m_window->show();
}

} // namespace quilmora
