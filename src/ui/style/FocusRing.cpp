#include "ui/style/FocusRing.h"

#include "ui/theme/PixelSnapper.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>

namespace quilmora {
namespace {

/// Modifiers are also pressed by users of the mouse, for example to switch windows.
bool isModifier(int key)
{
    switch (key) {
    case Qt::Key_Shift:
    case Qt::Key_Control:
    case Qt::Key_Alt:
    case Qt::Key_AltGr:
    case Qt::Key_Meta:
        return true;
    default:
        return false;
    }
}

/// Remembers whether the user last pressed a key or a mouse button, in whichever window.
class LastInput final : public QObject
{
public:
    LastInput() { QCoreApplication::instance()->installEventFilter(this); }

    bool isByKeyboard() const { return m_byKeyboard; }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() == QEvent::KeyPress) {
            m_byKeyboard = m_byKeyboard || !isModifier(static_cast<const QKeyEvent *>(event)->key());
        } else if (event->type() == QEvent::MouseButtonPress) {
            m_byKeyboard = false;
        }
        return false;
    }

private:
    bool m_byKeyboard = false;
};

const LastInput &lastInput()
{
    static const LastInput input;
    return input;
}

} // namespace

bool showsFocusRing(Qt::FocusReason reason, bool wasShown)
{
    const bool byKeyboard = lastInput().isByKeyboard();
    switch (reason) {
    case Qt::MouseFocusReason:
        return false;
    case Qt::TabFocusReason:
    case Qt::BacktabFocusReason:
    case Qt::ShortcutFocusReason:
        return true;
    case Qt::PopupFocusReason:
        return wasShown;
    default:
        // Set by the program, or back from another window.
        return byKeyboard;
    }
}

void drawFocusRing(QPainter &painter, const QPainterPath &outline, ColorRole role)
{
    constexpr double usualWidth = 2.0;
    const double width = PixelSnapper{painter}.lineWidth(usualWidth);
    QColor color = themeColor(role);
    color.setAlphaF(role == ColorRole::accent ? 0.9F : 0.8F);
    painter.save();
    painter.setClipPath(outline);
    // The clip removes the outer half of the line.
    painter.strokePath(outline, QPen{color, 2 * width});
    painter.restore();
}

} // namespace quilmora
