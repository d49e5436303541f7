#include "screens/history/HistoryListView.h"

#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryModel.h"
#include "screens/history/ImagePreviewView.h"
#include "store/DatabaseManager.h"
#include "ui/dialogs/FileDialogs.h"
#include "ui/dialogs/Sheet.h"
#include "ui/theme/Measures.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/SymbolLabel.h"
#include "ui/widgets/TextLabel.h"

#include <QShowEvent>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr QMargins headerPadding{measures::pagePadding, measures::headerPadding, measures::pagePadding, 16};

/// Shown while there are no covers.
QWidget *makeEmptyView(QWidget *parent)
{
    auto *view = new QWidget{parent};
    const QString hint = u"前往「生成封面」开始创作吧"_s;
    auto *heading =
        makeNotification(u"暂无生成记录"_s, hint, {16, QFont::Medium, ColorRole::secondaryText}, view);
    auto *symbol = new SymbolLabel{Symbol{u"photo.stack"_s, 50}, ColorRole::tertiaryText, view};
    auto *column = new QVBoxLayout{view};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addStretch();
    column->addWidget(symbol, 0, Qt::AlignHCenter);
    column->addWidget(heading, 0, Qt::AlignHCenter);
    column->addWidget(new TextLabel{hint, {13, QFont::Normal, ColorRole::tertiaryText}, view}, 0,
                      Qt::AlignHCenter);
    column->addStretch();
    return view;
}

} // namespace

HistoryListView::HistoryListView(DatabaseManager &database, FileDialogs &dialogs, ThumbnailCache &thumbnails,
                                 QWidget *parent)
    : QWidget{parent},
      m_database{database},
      m_dialogs{dialogs},
      m_thumbnails{thumbnails},
      m_records{new HistoryModel{this}},
      m_column{new QVBoxLayout{this}}
{
    m_column->setContentsMargins(0, 0, 0, 0);
    m_column->setSpacing(0);
    m_column->addLayout(makeHeader());
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
    // Not when a minimized window is restored.
    if (!event->spontaneous()) {
        loadRecords();
    }
}

void HistoryListView::loadRecords()
{
    const QModelIndex current = m_grid != nullptr ? m_grid->currentIndex() : QModelIndex{};
    const qint64 currentId = current.isValid() ? m_records->record(current.row()).id : 0;
    m_records->setRecords(m_database.fetchAllHistory());
    showBody();
    if (m_grid != nullptr && current.isValid()) {
        const auto &all = m_records->all();
        const auto same = std::find_if(all.begin(), all.end(),
                                       [&](const HistoryRecord &record) { return record.id == currentId; });
        if (same != all.end()) {
            m_grid->setCurrentIndex(m_records->index(static_cast<int>(same - all.begin())));
        }
    }
}

void HistoryListView::showBody()
{
    const bool empty = m_records->all().isEmpty();
    if (m_body != nullptr && empty == (m_grid == nullptr)) {
        return;
    }
    delete m_body;
    if (empty) {
        m_body = makeEmptyView(this);
    } else {
        m_grid = new HistoryGrid{*m_records, m_thumbnails, this};
        m_grid->setAccessibleName(u"已生成列表"_s);
        connect(m_grid, &HistoryGrid::opened, this, &HistoryListView::openPreview);
        m_body = m_grid;
    }
    m_column->addWidget(m_body, 1);
    m_body->show();
    // Before the grid is painted for the first time.
    m_column->activate();
}

void HistoryListView::openPreview(int position)
{
    if (m_selectedRecord) {
        return;
    }
    m_selectedRecord = m_records->record(position);
    auto *preview = new ImagePreviewView{*m_selectedRecord, [this] { closePreview(); }, m_dialogs};
    m_sheet = new Sheet{*preview, u"已生成列表"_s, {}, this};
    connect(m_sheet, &Sheet::closed, this, [this] { m_selectedRecord.reset(); });
}

void HistoryListView::closePreview() { m_sheet->close(); }

} // namespace quilmora
