#include "screens/common/ScrollPage.h"

#include "screens/common/AccessiblePart.h"

namespace quilmora
{

ScrollPage::ScrollPage(QWidget *parent) : QScrollArea{parent}, page{new QWidget}
{
    // Qt's own interface of a scroll area crashes when it is asked for a scroll bar that has gone
    // since its children were counted; that of other widgets looks first.
    setAccessiblePart(this, {QAccessible::Pane});
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
