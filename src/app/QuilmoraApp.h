#pragma once

#include <QApplication>

#include <memory>

namespace quilmora
{

class FilePanels;
class MainView;
class ThumbnailCache;

/// The running application with its one window. The only place that knows the shared services.
class QuilmoraApp final : public QApplication
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(QuilmoraApp)

public:
    QuilmoraApp(int &argc, char **argv);
    ~QuilmoraApp() override;

    /// Opens the main window; the database is opened on the way.
    void openMainWindow();

    /// The main window; null before it is opened.
    MainView *mainWindow() const { return window.get(); }

private:
    std::unique_ptr<FilePanels> panels;
    const std::unique_ptr<ThumbnailCache> thumbnails;
    std::unique_ptr<MainView> window;
};

} // namespace quilmora
