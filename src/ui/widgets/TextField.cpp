#include "ui/widgets/TextField.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/style/FieldFrame.h"
#include "ui/theme/Theme.h"

#include <QAccessibleWidget>
#include <QFontMetricsF>
#include <QInputMethodEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFrame>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora {
namespace {

/// Precedes the description of an invalid field, since Qt reports no such state to screen readers.
const QString invalidNote = u"无效。"_s;

constexpr double dotDiameter = 0.5; ///< Relative to the height of the font.

/// Reports the number of dots. Without a text interface, Qt sends no events about the changed text.
class MaskedFieldAccessible final : public QAccessibleWidget
{
public:
    explicit MaskedFieldAccessible(MaskedField &field)
        : QAccessibleWidget{&field, QAccessible::EditableText},
          m_field{field}
    {
    }

    QAccessible::State state() const override
    {
        QAccessible::State state = QAccessibleWidget::state();
        state.editable = true;
        state.passwordEdit = true;
        return state;
    }
    QString text(QAccessible::Text kind) const override
    {
        return kind == QAccessible::Value ? QString{m_field.displayText().size(), u'•'}
                                          : QAccessibleWidget::text(kind);
    }

private:
    const MaskedField &m_field;
};

} // namespace

TextField::TextField(QWidget *parent) : QLineEdit{parent}
{
    connect(this, &QLineEdit::textChanged, this, &TextField::shownTextChanged);
    connect(this, &QLineEdit::textChanged, this, [this] { markInvalid(false); });
}

QString TextField::shownText() const { return text().insert(cursorPosition(), m_preedit); }

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

MaskedField::MaskedField(QWidget *parent) : TextField{parent}
{
    installAccessibleInterface<MaskedField, MaskedFieldAccessible>();
    setEchoMode(QLineEdit::Password);
}

QVariant MaskedField::inputMethodQuery(Qt::InputMethodQuery query) const
{
    switch (query) {
    case Qt::ImSurroundingText:
    case Qt::ImTextBeforeCursor:
    case Qt::ImTextAfterCursor:
    case Qt::ImCurrentSelection:
        return QString{};
    default:
        return TextField::inputMethodQuery(query);
    }
}

QRect MaskedField::textArea() const
{
    QStyleOptionFrame option;
    initStyleOption(&option);
    return style()->subElementRect(QStyle::SE_LineEditContents, &option, this) - textMargins();
}

void MaskedField::paintEvent(QPaintEvent *event)
{
    TextField::paintEvent(event);
    const QString blanks = displayText();
    if (blanks.isEmpty()) {
        return;
    }
    const double advance = QFontMetricsF{font()}.horizontalAdvance(blanks.front());
    const QRect cursor = cursorRect();
    // The position of the first character, outside the field when the text is scrolled.
    const double start = cursor.x() + cursor.width() / 2.0 - cursorPosition() * advance;
    const double radius = font().pixelSize() * dotDiameter / 2;
    const double middle = QRectF{rect()}.center().y();

    const QRect area = textArea();
    const auto first = std::max<qsizetype>(0, static_cast<qsizetype>((area.left() - start) / advance) - 1);
    const auto last = std::min(blanks.size(), static_cast<qsizetype>((area.right() - start) / advance) + 2);

    QPainter painter{this};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setClipRect(area);
    painter.setPen(Qt::NoPen);
    for (qsizetype i = first; i < last; ++i) {
        const bool isSelected = i >= selectionStart() && i < selectionEnd();
        painter.setBrush(palette().brush(isSelected ? QPalette::HighlightedText : QPalette::Text));
        painter.drawEllipse(QPointF{start + (static_cast<double>(i) + 0.5) * advance, middle}, radius,
                            radius);
    }
}

} // namespace quilmora
