#include "ui/widgets/TextField.h"

#include "ui/style/FieldFrame.h"
#include "ui/theme/Theme.h"

#include <QInputMethodEvent>
#include <QPainter>
#include <QStyleOptionFrame>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Precedes the description of an invalid field, since Qt reports no such state to screen readers.
const QString invalidNote = u"无效。"_s;

} // namespace

TextField::TextField(QWidget *parent) : QLineEdit{parent}
{
    connect(this, &QLineEdit::textChanged, this, &TextField::shownTextChanged);
    connect(this, &QLineEdit::textChanged, this, [this] { markInvalid(false); });
}

QString TextField::shownText() const
{
    return text().insert(cursorPosition(), m_preedit);
}

void TextField::markInvalid(bool isInvalid)
{
    if (m_invalid == isInvalid) {
        return;
    }
    m_invalid = isInvalid;
    const QString description = accessibleDescription();
    setAccessibleDescription(m_invalid ? invalidNote + description : description.sliced(invalidNote.size()));
    update();
}

void TextField::initStyleOption(QStyleOptionFrame *option) const
{
    QLineEdit::initStyleOption(option);
    // The red ring replaces the focus ring.
    option->state.setFlag(QStyle::State_HasFocus, hasFocus() && !m_invalid);
}

void TextField::paintEvent(QPaintEvent *event)
{
    QLineEdit::paintEvent(event);
    if (m_invalid) {
        QPainter painter{this};
        drawFieldRing(painter, rect(), ColorRole::red);
    }
}

void TextField::inputMethodEvent(QInputMethodEvent *event)
{
    const QString preedit = event->preeditString();
    QLineEdit::inputMethodEvent(event);
    // Only now, so that shownText() always contains a word that is just committed.
    if (m_preedit != preedit) {
        m_preedit = preedit;
        Q_EMIT shownTextChanged();
    }
}

} // namespace quilmora
