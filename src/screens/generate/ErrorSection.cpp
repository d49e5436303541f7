#include "screens/generate/ErrorSection.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/ActionButton.h"
#include "screens/common/MessageView.h"
#include "screens/common/ReadingOrder.h"
#include "screens/common/SymbolLabel.h"
#include "screens/common/TextLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

constexpr int verticalPadding = 30;
constexpr int spacing = 16;
constexpr int messagePadding = 26;

} // namespace

ErrorSection::ErrorSection(const QString &message, QWidget *parent) : QWidget{parent}
{
    const QString title = u"生成失败"_s;
    setAccessiblePart(this, {QAccessible::Notification});
    setAccessibleName(title);
    auto *back = new ActionButton{u"arrow.counterclockwise"_s,
                                  u"返回表单"_s,
                                  {ActionButton::Kind::bordered, 14, QFont::Medium, 6, {14, 6}},
                                  this};
    connect(back, &ActionButton::clicked, this, &ErrorSection::returnRequested);
    setFocusProxy(back);

    auto *messageRow = new QHBoxLayout;
    messageRow->setContentsMargins(messagePadding, 0, messagePadding, 0);
    messageRow->addWidget(new MessageView{message, 13, u"错误信息"_s, this});

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, verticalPadding, 0, verticalPadding);
    column->setSpacing(spacing);
    column->addWidget(new SymbolLabel{{u"exclamationmark.triangle.fill"_s, 40}, ColorRole::red, this}, 0,
                      Qt::AlignHCenter);
    column->addWidget(new TextLabel{title, {16, QFont::DemiBold, ColorRole::red}, this}, 0, Qt::AlignHCenter);
    column->addLayout(messageRow);
    column->addWidget(back, 0, Qt::AlignHCenter);
    column->addStretch();
    readInLayoutOrder(*column);
}

} // namespace quilmora
