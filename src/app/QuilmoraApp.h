#pragma once

#include "app/NavigationTab.h"
#include "screens/help/HelpView.h"

#include <QApplication>

#include <memory>

namespace quilmora {

class DatabaseManager;
class FileDialogs;
class ImageGeneratorService;
class ImageStorageService;
class MainView;
class ThumbnailCache;

/// What the screens use. All of it must outlive them.
struct ScreenServices {
    DatabaseManager &database;
    ImageStorageService &storage;
    ImageGeneratorService &generator;
    FileDialogs &dialogs;
    ThumbnailCache &thumbnails;
    AboutInformation about = AboutInformation::current();
};

/// Creates the screen of a tab.
QWidget *makeScreen(NavigationTab tab, const ScreenServices &services, QWidget *parent);

/// The application with its one window. Passes the shared services to the screens.
class QuilmoraApp final : public QApplication
{
    Q_OBJECT

public:
    QuilmoraApp(int &argc, char **argv);
    ~QuilmoraApp() override;

    /// Opens the main window and the database.
    void openMainWindow();

    /// Null before it is opened.
    MainView *mainWindow() const { return m_window.get(); }

private:
    std::unique_ptr<FileDialogs> m_dialogs;
    const std::unique_ptr<ThumbnailCache> m_thumbnails;
    std::unique_ptr<MainView> m_window;
};

} // namespace quilmora
