#include "screens/history/EmptyHistoryView.h"

#include "screens/common/NotificationLabel.h"
#include "screens/common/SymbolLabel.h"
#include "screens/common/TextLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{

EmptyHistoryView::EmptyHistoryView(QWidget *parent) : QWidget{parent}
{
    const QString hint = u"前往「生成封面」开始创作吧"_s;
    auto *heading =
        new NotificationLabel{u"暂无生成记录"_s, hint, {16, QFont::Medium, ColorRole::secondaryText}, this};
    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(12);
    column->addStretch();
    column->addWidget(new SymbolLabel{Symbol{u"photo.stack"_s, 50}, ColorRole::tertiaryText, this}, 0,
                      Qt::AlignHCenter);
    column->addWidget(heading, 0, Qt::AlignHCenter);
    column->addWidget(new TextLabel{hint, {13, QFont::Normal, ColorRole::tertiaryText}, this}, 0,
                      Qt::AlignHCenter);
    column->addStretch();
}

} // namespace quilmora
