#include "screens/common/Sheet.h"

#include "screens/common/AccessiblePart.h"
#include "screens/common/Shadow.h"
#include "screens/common/Shapes.h"
#include "screens/common/Theme.h"
#include "screens/common/WindowGround.h"

#include <QKeyEvent>
#include <QPainter>

namespace quilmora
{
namespace
{

/// In the middle, small panels a little higher.
QPoint placeIn(QSize window, QSize panel)
{
    const QSize room = window - panel;
    const bool isSmall = 2 * panel.height() < window.height();
    return {room.width() / 2, isSmall ? room.height() / 3 : room.height() / 2};
}

} // namespace

Sheet::Sheet(QWidget &panel, const QString &title, const QString &message, QWidget *owner)
    // The Tab key stays within a widget of the type SubWindow.
    : QWidget{owner->window(), Qt::SubWindow},
      content{panel},
      focusBefore{owner->window()->focusWidget()}
{
    setAttribute(Qt::WA_DeleteOnClose);
    setAccessiblePart(this, {QAccessible::Dialog});
    setAccessibleName(title);
    setAccessibleDescription(message);
    panel.setParent(this);
    parentWidget()->installEventFilter(this);
    connect(owner, &QObject::destroyed, this, [this] { delete this; });
    setGeometry(parentWidget()->rect());
    show();
    panel.setFocus(Qt::ActiveWindowFocusReason);
}

void Sheet::paintGround(QWidget &panel, const QColor &color)
{
    QPainter painter{&panel};
    windowGround::draw(painter, panel.rect(), cornerRadius, color);
}

bool Sheet::event(QEvent *event)
{
    if (event->type() == QEvent::ShortcutOverride) {
        // Of the shortcuts of the window only the one that quits works meanwhile.
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
    if (focusBefore != nullptr) {
        // The focus ring shows again where it showed before.
        focusBefore->setFocus(Qt::PopupFocusReason);
    }
    Q_EMIT closed();
}

void Sheet::resizeEvent(QResizeEvent * /*event*/)
{
    const QSize panelSize = content.sizeHint().boundedTo(size());
    content.setGeometry({placeIn(size(), panelSize), panelSize});
}

void Sheet::paintEvent(QPaintEvent * /*event*/)
{
    constexpr double blurRadius = 24;
    constexpr QPointF offset{0, 8};
    QPainter painter{this};
    painter.fillRect(rect(), themeColor(ColorRole::scrim));
    // Below a large panel most of the shadow would be drawn unseen.
    constexpr int corner = static_cast<int>(cornerRadius);
    const QRect place = content.geometry();
    painter.setClipRegion(QRegion{rect()} - place.adjusted(corner, corner, -corner, -corner));
    const Shadow shadow{themeColor(ColorRole::sheetShadow), blurRadius, offset};
    shadow.draw(painter, roundedRect(place, cornerRadius));
}

} // namespace quilmora
