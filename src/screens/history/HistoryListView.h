#pragma once

#include "model/HistoryRecord.h"

#include <QPointer>
#include <QWidget>

#include <optional>

class QVBoxLayout;

namespace quilmora {

class DatabaseManager;
class FileDialogs;
class HistoryGrid;
class HistoryModel;
class Sheet;
class ThumbnailCache;

/// The screen with all generated covers, newest first. A click on one shows it large.
class HistoryListView final : public QWidget
{
    Q_OBJECT

public:
    /// All three must outlive the screen. The next one reuses `thumbnails`.
    HistoryListView(DatabaseManager &database, FileDialogs &dialogs, ThumbnailCache &thumbnails,
                    QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QLayout *makeHeader();
    void loadRecords();
    void showBody();
    void openPreview(int position);
    void closePreview();

    DatabaseManager &m_database;
    FileDialogs &m_dialogs;
    ThumbnailCache &m_thumbnails;
    HistoryModel *const m_records;
    QVBoxLayout *const m_column;
    QPointer<HistoryGrid> m_grid;
    QPointer<QWidget> m_body;
    std::optional<HistoryRecord> m_selectedRecord;
    QPointer<Sheet> m_sheet;
};

} // namespace quilmora
