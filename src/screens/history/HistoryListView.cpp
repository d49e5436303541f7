#include "screens/history/HistoryListView.h"

#include "screens/common/ActionButton.h"
#include "screens/common/FilePanels.h"
#include "screens/common/PageTitle.h"
#include "screens/common/Sheet.h"
#include "screens/history/EmptyHistoryView.h"
#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryModel.h"
#include "screens/history/ImagePreviewView.h"
#include "store/DatabaseManager.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr QMargins headerPadding{32, 24, 32, 16};

} // namespace

HistoryListView::HistoryListView(DatabaseManager &store, FilePanels &filePanels, ThumbnailCache &pictures,
                                 QWidget *parent)
    : QWidget{parent},
      database{store},
      panels{filePanels},
      thumbnails{pictures},
      records{new HistoryModel{this}},
      column{new QVBoxLayout{this}}
{
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addLayout(makeHeader());
}

QLayout *HistoryListView::makeHeader()
{
    auto *title = new PageTitle{u"已生成列表"_s, this};
    auto *refresh = new ActionButton{
        u"arrow.clockwise"_s, u"刷新"_s, {ActionButton::Kind::bordered, 13, QFont::Normal, 4, {10, 4}}, this};
    connect(refresh, &ActionButton::clicked, this, &HistoryListView::loadRecords);
    auto *header = new QHBoxLayout;
    header->setContentsMargins(headerPadding);
    header->addWidget(title);
    header->addStretch();
    header->addWidget(refresh);
    return header;
}

void HistoryListView::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    // A window that comes back from the dock has been shown all the time.
    if (!event->spontaneous()) {
        loadRecords();
    }
}

void HistoryListView::loadRecords()
{
    const QModelIndex current = grid != nullptr ? grid->currentIndex() : QModelIndex{};
    const qint64 currentId = current.isValid() ? records->record(current.row()).id : 0;
    records->setRecords(database.fetchAllHistory());
    showBody();
    if (grid != nullptr && current.isValid()) {
        const auto &all = records->all();
        const auto same = std::find_if(all.begin(), all.end(),
                                       [&](const HistoryRecord &record) { return record.id == currentId; });
        if (same != all.end()) {
            grid->setCurrentIndex(records->index(static_cast<int>(same - all.begin())));
        }
    }
}

void HistoryListView::showBody()
{
    const bool empty = records->all().isEmpty();
    if (body != nullptr && empty == (grid == nullptr)) {
        return;
    }
    delete body;
    if (empty) {
        body = new EmptyHistoryView{this};
    } else {
        grid = new HistoryGrid{*records, thumbnails, this};
        grid->setAccessibleName(u"已生成列表"_s);
        connect(grid, &HistoryGrid::opened, this, &HistoryListView::openPreview);
        body = grid;
    }
    column->addWidget(body, 1);
    body->show();
    // Now, not at the next turn: the grid would be drawn once where it lies by chance.
    column->activate();
}

void HistoryListView::openPreview(int position)
{
    if (selectedRecord) {
        return;
    }
    selectedRecord = records->record(position);
    auto *preview = new ImagePreviewView{*selectedRecord, [this] { closePreview(); }, panels};
    sheet = new Sheet{*preview, u"已生成列表"_s, {}, this};
    connect(sheet, &Sheet::closed, this, [this] { selectedRecord.reset(); });
}

void HistoryListView::closePreview()
{
    sheet->close();
}

} // namespace quilmora
