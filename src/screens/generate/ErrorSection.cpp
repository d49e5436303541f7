#include "screens/generate/ErrorSection.h"

#include "platform/UnicodeText.h"
#include "screens/generate/MessageView.h"
#include "ui/accessibility/Accessibility.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/SymbolLabel.h"
#include "ui/widgets/TextLabel.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

constexpr int verticalPadding = 30;
constexpr int spacing = 16;
constexpr int messagePadding = 26;
/// Screen readers cannot interrupt a notification; the rest can be read in the view.
constexpr qsizetype longestSpoken = 1200;

QString spokenPart(const QString &message)
{
    const QString part = unicodeText::sanitize(message.left(longestSpoken));
    return message.size() <= longestSpoken ? part : part + u'…';
}

} // namespace

ErrorSection::ErrorSection(const QString &message, QWidget *parent) : QWidget{parent}
{
    auto *heading =
        makeNotification(u"生成失败"_s, spokenPart(message), {16, QFont::DemiBold, ColorRole::redText}, this);
    // Created before the button for the tab order.
    auto *reason = new MessageView{message, 13, u"错误信息"_s, this};
    auto *back = new ActionButton{u"arrow.counterclockwise"_s,
                                  u"返回表单"_s,
                                  {ActionButton::Kind::bordered, 14, QFont::Medium, 6, {14, 6}},
                                  this};
    connect(back, &ActionButton::clicked, this, &ErrorSection::returnRequested);
    setFocusProxy(back);

    auto *messageRow = new QHBoxLayout;
    messageRow->setContentsMargins(messagePadding, 0, messagePadding, 0);
    messageRow->addWidget(reason);

    auto *column = new QVBoxLayout{this};
    column->setContentsMargins(0, verticalPadding, 0, verticalPadding);
    column->setSpacing(spacing);
    column->addWidget(new SymbolLabel{{u"exclamationmark.triangle.fill"_s, 40}, ColorRole::red, this}, 0,
                      Qt::AlignHCenter);
    column->addWidget(heading, 0, Qt::AlignHCenter);
    column->addLayout(messageRow);
    column->addWidget(back, 0, Qt::AlignHCenter);
    column->addStretch();
    readInLayoutOrder(*column);
}

} // namespace quilmora
