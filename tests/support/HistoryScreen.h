#pragma once

#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryListView.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/Texts.h"
#include "ui/dialogs/Sheet.h"

#include <QScrollBar>

#include <memory>

namespace quilmora::test {

/// The history screen in a window, with a database and cover files in a home folder of its own.
class HistoryScreen final
{
public:
    /// Nothing is shown yet.
    HistoryScreen();
    Q_DISABLE_COPY_MOVE(HistoryScreen)
    ~HistoryScreen() = default;

    /// Puts the screen into the window.
    void build();
    /// The same, and shows the window.
    void buildAndShow(QSize size = {1000, 700});
    /// The same, and waits until every picture is there.
    void open(QSize size = {1000, 700});

    /// Waits until every picture in sight is there; false when that takes too long.
    bool waitUntilFilled();

    /// A row of the history, `createdAt` in seconds since 1970-01-01 UTC. Gives its id.
    qint64 addRow(const QString &prompt, const QString &imagePath, double createdAt,
                  const QString &modelID = QStringLiteral("模型")) const;

    /// A row together with its picture file below the covers folder. Gives the file's absolute path.
    QString addCover(const QString &name, QSize size, double createdAt, const QColor &color = Qt::red) const;
    /// Row after row, `count` in all, each with a small picture; number 0 is the newest.
    void addCovers(int count) const;

    /// Writes a picture of one colour to a cover file.
    void writeCover(const QString &name, QSize size, const QColor &color) const;
    QString databasePath() const;
    QString coverFile(const QString &name) const;
    /// The same file as the database names it.
    static QString storedPath(const QString &name);

    HistoryGrid *grid() { return window.findChild<HistoryGrid *>(); }
    /// The tile at a position, as a screen reader has it.
    QAccessibleInterface *tile(int position);
    /// What a screen reader says of it.
    QString nameOf(int position) { return tile(position)->text(QAccessible::Name); }
    QString descriptionOf(int position) { return tile(position)->text(QAccessible::Description); }
    QRect tileRect(int position);
    /// The part of it for the picture.
    QRect squareRect(int position);
    void clickTile(int position);
    /// What the grid shows, at its own resolution.
    QImage picture();
    /// The color in the middle of a tile's square.
    QColor middleColor(int position);

    void scrollTo(int value) { grid()->verticalScrollBar()->setValue(value); }
    void refresh();
    bool shows(const QString &name) { return accessible::find(&window, name) != nullptr; }
    /// The open preview; null when there is none.
    static Sheet *preview() { return openSheet(); }
    /// Clicks a tile; whether the preview opens.
    bool opensPreview(int position);
    /// Closes it by the Escape key; whether it goes.
    static bool closesPreview();
    /// A widget of that name on the open preview.
    static QWidget *inPreview(const QString &name) { return accessible::find(preview(), name); }

    TemporaryHome home;
    DatabaseManager database;
    ScriptedFileDialogs panels;
    ThumbnailCache thumbnails;
    QWidget window;
    std::unique_ptr<HistoryListView> view;
};

} // namespace quilmora::test
