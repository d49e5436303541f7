#include "screens/common/ScrollPage.h"

#include <QAccessibleWidget>

#include <mutex>

using namespace Qt::StringLiterals;

namespace quilmora
{

namespace
{

/// The toolkit's own interface of a scroll area crashes when it is asked for a scroll bar that has gone since
/// its children were counted; the plain one of a widget looks first.
QAccessibleInterface *makeAccessible(const QString &className, QObject *object)
{
    return className == u"quilmora::ScrollPage"_s ? new QAccessibleWidget{qobject_cast<QWidget *>(object)}
                                                  : nullptr;
}

} // namespace

ScrollPage::ScrollPage(QWidget *parent) : QScrollArea{parent}, page{new QWidget}
{
    static std::once_flag installed;
    std::call_once(installed, [] { QAccessible::installFactory(makeAccessible); });
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidget(page);
    // The window's background shows through.
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

} // namespace quilmora
