#include "LayoutFaults.h"

#include "PaintLog.h"
#include "SceneRun.h"
#include "screens/help/Toast.h"
#include "ui/dialogs/Sheet.h"
#include "ui/style/MenuShadow.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QLabel>
#include <QLineEdit>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

/// The scroll area whose content moves inside this widget; null when there is none.
QAbstractScrollArea *areaOf(QWidget *viewport)
{
    auto *area = qobject_cast<QAbstractScrollArea *>(viewport->parentWidget());
    return area != nullptr && area->viewport() == viewport ? area : nullptr;
}

QString text(const QRectF &place)
{
    return u"(%1, %2 %3 x %4)"_s.arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
}

/// Whether `inner` stays inside `outer`; up and down it need not where that scrolls.
bool isInside(const QRectF &inner, const QRectF &outer, bool scrolls)
{
    const bool across = inner.left() >= outer.left() && inner.right() <= outer.right();
    return across && (scrolls || (inner.top() >= outer.top() && inner.bottom() <= outer.bottom()));
}

QStringList placeFaults(QWidget *widget)
{
    QWidget *parent = widget->parentWidget();
    if (widget->isWindow() || isInside(widget->geometry(), parent->rect(), areaOf(parent) != nullptr)) {
        return {};
    }
    return {u"leaves its parent "_s + SceneRun::describe(parent)};
}

QStringList overlaps(QWidget *widget)
{
    // Inside a scroll area the bars lie over the content.
    if (qobject_cast<QAbstractScrollArea *>(widget) != nullptr) {
        return {};
    }
    QStringList faults;
    QList<QWidget *> before;
    for (QObject *object : widget->children()) {
        auto *child = qobject_cast<QWidget *>(object);
        if (child == nullptr || !child->isVisible() || child->isWindow() ||
            qobject_cast<Toast *>(child) != nullptr || qobject_cast<Sheet *>(child) != nullptr ||
            qobject_cast<MenuShadow *>(child) != nullptr) {
            continue;
        }
        for (const QWidget *other : before) {
            if (child->geometry().intersects(other->geometry())) {
                faults += SceneRun::describe(child) + u" lies over "_s + SceneRun::describe(other);
            }
        }
        before.append(child);
    }
    return faults;
}

QStringList sizeFaults(const QWidget *widget)
{
    const bool shows = qobject_cast<const QAbstractButton *>(widget) != nullptr ||
                       qobject_cast<const QLabel *>(widget) != nullptr;
    QSize needed = widget->minimumSizeHint();
    if (widget->hasHeightForWidth()) {
        needed.setHeight(widget->heightForWidth(widget->width()));
    } else if (shows) {
        needed = widget->sizeHint();
    }
    if (widget->width() >= needed.width() && widget->height() >= needed.height()) {
        return {};
    }
    return {u"needs %1 x %2"_s.arg(needed.width()).arg(needed.height())};
}

QStringList textFaults(QWidget *widget)
{
    // What does not fit into a field scrolls with the cursor.
    if (qobject_cast<QLineEdit *>(widget) != nullptr) {
        return {};
    }
    QStringList faults;
    const bool scrolls = areaOf(widget) != nullptr;
    const QRectF bounds = QRectF{widget->rect()}.adjusted(-1, -1, 1, 1);
    for (const PaintLog::Text &drawn : PaintLog::of(widget).texts) {
        if (!drawn.ink.isEmpty() && !isInside(drawn.ink, bounds, scrolls)) {
            faults += u"truncates \"%1\" %2"_s.arg(drawn.text.left(20), text(drawn.ink));
        }
    }
    return faults;
}

QStringList scrollFaults(const QWidget *widget)
{
    const auto *area = qobject_cast<const QAbstractScrollArea *>(widget);
    const int reach = area != nullptr ? area->horizontalScrollBar()->maximum() : 0;
    return reach > 0 ? QStringList{u"scrolls sideways by %1"_s.arg(reach)} : QStringList{};
}

} // namespace

QStringList layoutFaults(QWidget *widget)
{
    QStringList faults = placeFaults(widget) + overlaps(widget) + sizeFaults(widget) + textFaults(widget) +
                         scrollFaults(widget);
    for (QString &fault : faults) {
        fault = SceneRun::describe(widget) + u": "_s + fault;
    }
    return faults;
}

} // namespace quilmora::test
