#include "screens/common/TextField.h"

#include "screens/common/FieldFrame.h"
#include "screens/common/Theme.h"

#include <QInputMethodEvent>
#include <QPainter>
#include <QStyleOptionFrame>

using namespace Qt::StringLiterals;

namespace quilmora
{
namespace
{

/// Begins the description of an invalid field: Qt has no state for it that screen readers hear of.
const QString invalidNote = u"无效。"_s;

} // namespace

TextField::TextField(QWidget *parent) : QLineEdit{parent}
{
    connect(this, &QLineEdit::textChanged, this, &TextField::shownTextChanged);
    connect(this, &QLineEdit::textChanged, this, [this] { markInvalid(false); });
}

QString TextField::shownText() const
{
    return text().insert(cursorPosition(), composed);
}

void TextField::markInvalid(bool isInvalid)
{
    if (invalid == isInvalid) {
        return;
    }
    invalid = isInvalid;
    const QString description = accessibleDescription();
    setAccessibleDescription(invalid ? invalidNote + description : description.sliced(invalidNote.size()));
    update();
}

void TextField::initStyleOption(QStyleOptionFrame *option) const
{
    QLineEdit::initStyleOption(option);
    // The red ring stands in place of the focus ring.
    option->state.setFlag(QStyle::State_HasFocus, hasFocus() && !invalid);
}

void TextField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (invalid) {
        QPainter painter{this};
        drawFieldRing(painter, rect(), ColorRole::red);
    }
}

void TextField::inputMethodEvent(QInputMethodEvent *event)
{
    const QString preedit = event->preeditString();
    QLineEdit::inputMethodEvent(event);
    // Only now: while a word is committed, the shown text is never without it.
    if (composed != preedit) {
        composed = preedit;
        Q_EMIT shownTextChanged();
    }
}

} // namespace quilmora
