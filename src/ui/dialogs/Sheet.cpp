#include "ui/dialogs/Sheet.h"

#include "ui/accessibility/Accessibility.h"
#include "ui/style/PopupBackground.h"
#include "ui/theme/Measures.h"
#include "ui/theme/Shadow.h"
#include "ui/theme/Shapes.h"
#include "ui/theme/Theme.h"

#include <QKeyEvent>
#include <QPainter>

namespace quilmora {
namespace {

/// Centered; small contents a little higher.
QPoint placeIn(QSize window, QSize content)
{
    const QSize room = window - content;
    const bool isSmall = 2 * content.height() < window.height();
    return {room.width() / 2, isSmall ? room.height() / 3 : room.height() / 2};
}

} // namespace

Sheet::Sheet(QWidget &content, const QString &title, const QString &message, QWidget *owner)
    // The Tab key does not leave a SubWindow.
    : QWidget{owner->window(), Qt::SubWindow},
      m_content{content},
      m_focusBefore{owner->window()->focusWidget()}
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessibleRole(this, {QAccessible::Dialog});
    setAccessibleName(title);
    setAccessibleDescription(message);
    content.setParent(this);
    parentWidget()->installEventFilter(this);
    connect(owner, &QObject::destroyed, this, [this] { delete this; });
    setGeometry(parentWidget()->rect());
    show();
    content.setFocus(Qt::ActiveWindowFocusReason);
}

void Sheet::paintBackground(QWidget &content, const QColor &color)
{
    QPainter painter{&content};
    popupBackground::draw(painter, content.rect(), measures::sheetRadius, color);
}

bool Sheet::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // The only shortcut of the window that works meanwhile quits the application.
        const QKeyCombination keys = static_cast<const QKeyEvent *>(event)->keyCombination();
        event->setAccepted(keys != QKeyCombination{Qt::CTRL, Qt::Key_Q});
        return true;
    }
    return QWidget::event(event);
}

bool Sheet::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == parentWidget() && event->type() == QEvent::Resize) {
        setGeometry(parentWidget()->rect());
    }
    return QWidget::eventFilter(watched, event);
}

void Sheet::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Cancel)) {
        close();
    }
}

void Sheet::closeEvent(QCloseEvent * /*event*/)
{
    // Otherwise Qt would focus the next widget.
    if (QWidget *focused = window()->focusWidget(); focused != nullptr) {
        focused->clearFocus();
    }
    if (m_focusBefore != nullptr) {
        // Restores the focus ring too.
        m_focusBefore->setFocus(Qt::PopupFocusReason);
    }
    Q_EMIT closed();
}

void Sheet::resizeEvent(QResizeEvent * /*event*/)
{
    const QSize contentSize = m_content.sizeHint().boundedTo(size());
    m_content.setGeometry({placeIn(size(), contentSize), contentSize});
}

void Sheet::paintEvent(QPaintEvent * /*event*/)
{
    constexpr double blurRadius = 24;
    constexpr QPointF offset{0, 8};
    QPainter painter{this};
    painter.fillRect(rect(), themeColor(ColorRole::scrim));
    // Below a large content, drawing the whole shadow would take time.
    constexpr int corner = static_cast<int>(measures::sheetRadius);
    const QRect place = m_content.geometry();
    painter.setClipRegion(QRegion{rect()} - place.adjusted(corner, corner, -corner, -corner));
    const Shadow shadow{themeColor(ColorRole::sheetShadow), blurRadius, offset};
    shadow.draw(painter, roundedRect(place, measures::sheetRadius));
}

} // namespace quilmora
