#pragma once

#include "app/MainView.h"
#include "generation/ImageGeneratorService.h"
#include "screens/help/HelpView.h"
#include "screens/history/ThumbnailCache.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/ScriptedFileDialogs.h"
#include "support/TemporaryHome.h"

#include <QImage>

#include <functional>
#include <memory>

class QScrollArea;

namespace quilmora {
class HistoryGrid;
}

namespace quilmora::gallery {

/// The main window with everything behind it, in a home folder of its own, and a user who works it by mouse
/// and keyboard. Controls are known by the names that a screen reader says. Whatever does not come to pass
/// ends the program.
class ApplicationFixture final
{
public:
    ApplicationFixture();
    Q_DISABLE_COPY_MOVE(ApplicationFixture)
    ~ApplicationFixture();

    /// Stores settings that lead to `service`.
    void configure(const QUrl &service, const QString &key);

    struct Cover {
        QString prompt;
        QString file; ///< To be copied into the folder of covers; empty for one that has gone.
        double createdAt;
        QString modelID;
    };
    /// Puts other addresses on the help screen than this build's.
    void setAddresses(const QString &email, const QString &website);
    /// Adds covers to the history.
    void addCovers(const QList<Cover> &covers);

    /// Opens the window.
    void open();
    /// Clicks the control of that name.
    void click(const QString &name);
    /// Types into the field of that name.
    void type(const QString &field, const QString &text);
    /// Clicks the upload card of that title and answers the file panel.
    void upload(const QString &card, const QString &path);
    void openCover(int position);
    /// Types those keys where the focus is.
    void press(const QKeySequence &keys);
    /// Opens the menu of the text of that name by a right click, and puts the pointer on the command.
    void openMenu(const QString &text, const QString &command);
    /// Closes what lies over the window: a sheet with the Escape key, a menu by a click beside it.
    void dismissOverlay();

    void waitFor(const QString &name);
    void waitUntil(const char *what, const std::function<bool()> &condition);

    /// Gives the window that size, and the page the scrolling position at which `name` is in sight (its start
    /// for an empty name).
    void show(QSize size, const QString &name);
    /// Makes the window as high as the page.
    void showWhole(int width);
    /// Waits until the window shows all that it is going to show.
    void settle();

    /// The window at its own resolution, with the sheet or menu that lies over it at its place.
    QImage picture() const;

    MainView *window() const { return m_view.get(); }
    /// The sheet or menu over the window; null when there is none.
    QWidget *overlay() const;
    /// Whether something of that name is to be seen in front: in the sheet or menu, else in the window.
    QWidget *find(const QString &name) const;

private:
    QWidget *front() const;
    QScrollArea *page() const;
    HistoryGrid *grid() const;
    void resize(QSize size);
    void waitForOverlay();

    const test::TemporaryHome m_home;
    DatabaseManager m_database;
    ImageStorageService m_storage;
    ImageGeneratorService m_generator;
    test::ScriptedFileDialogs m_panels;
    ThumbnailCache m_thumbnails;
    AboutInformation m_help = AboutInformation::current();
    std::unique_ptr<MainView> m_view;
};

} // namespace quilmora::gallery
