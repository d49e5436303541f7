#pragma once

#include "model/HistoryRecord.h"

#include <QPointer>
#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace quilmora
{

class DatabaseManager;
class FilePanels;
class HistoryGrid;
class HistoryModel;
class Sheet;
class ThumbnailCache;

/// The screen with all covers that were made, newest first. A click on one shows it large.
class HistoryListView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryListView)

public:
    /// All three must outlive the screen; `thumbnails` keeps its pictures for the next one.
    HistoryListView(DatabaseManager &store, FilePanels &panels, ThumbnailCache &thumbnails,
                    QWidget *parent = nullptr);
    ~HistoryListView() override = default;

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLayout *makeHeader();
    void loadRecords();
    void showBody();
    void openPreview(int position);
    void closePreview();

    DatabaseManager &database;
    FilePanels &panels;
    ThumbnailCache &thumbnails;
    HistoryModel *const records;
    QVBoxLayout *const column;
    QPointer<HistoryGrid> grid;
    QPointer<QWidget> body;
    std::optional<HistoryRecord> selectedRecord;
    QPointer<Sheet> sheet;
};

} // namespace quilmora
