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

/// The screen with all covers that were made, newest first. A click on one shows it large.
class HistoryListView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(HistoryListView)

public:
    /// `store` and `panels` must outlive the screen.
    HistoryListView(DatabaseManager &store, FilePanels &panels, QWidget *parent = nullptr);
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
    HistoryModel *const records;
    QVBoxLayout *const column;
    QPointer<HistoryGrid> grid;
    QPointer<QWidget> body;
    std::optional<HistoryRecord> selectedRecord;
    QPointer<Sheet> sheet;
};

} // namespace quilmora
