#pragma once

#include <QApplication>

#include <memory>

namespace quilmora {

class FileDialogs;
class MainView;
class ThumbnailCache;

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
