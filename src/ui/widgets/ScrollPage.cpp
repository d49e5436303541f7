#include "ui/widgets/ScrollPage.h"

#include "ui/accessibility/Accessibility.h"

namespace quilmora {

ScrollPage::ScrollPage(QWidget *parent) : QScrollArea{parent}, m_page{new QWidget}
{
    // Qt's own interface of a scroll area crashes when it is asked for a scroll bar that was hidden after its
    // children were counted.
    setAccessibleRole(this, {QAccessible::Pane});
    setFrameShape(QFrame::NoFrame);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setFocusPolicy(Qt::NoFocus);
    setWidget(m_page);
    // Shows the background of the window.
    m_page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
}

} // namespace quilmora
