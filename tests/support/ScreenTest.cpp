#include "support/ScreenTest.h"

#include "platform/ChineseTranslations.h"
#include "ui/dialogs/Sheet.h"
#include "ui/style/ControlStyle.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QAbstractScrollArea>
#include <QContextMenuEvent>
#include <QInputMethodEvent>
#include <QMenu>

#include <algorithm>

namespace quilmora::test {

ScreenTestApplication::ScreenTestApplication(int &argc, char **argv) : m_application{argc, argv}
{
    installChineseTranslations(m_application);
#ifndef Q_OS_MACOS
    QApplication::setStyle(new ControlStyle);
#endif
    installApplicationFont();
    Theme::current();
}

void showWindow(QWidget &window, QSize size)
{
    window.resize(size);
    window.show();
    window.activateWindow();
    if (!QTest::qWaitForWindowActive(&window)) {
        qFatal("The window does not become active");
    }
}

Sheet *openSheet()
{
    for (const QWidget *window : QApplication::topLevelWidgets()) {
        // One that has been closed may still be there.
        const auto sheets = window->findChildren<Sheet *>();
        const auto open =
            std::find_if(sheets.begin(), sheets.end(), [](const Sheet *sheet) { return sheet->isVisible(); });
        if (open != sheets.end()) {
            return *open;
        }
    }
    return nullptr;
}

void click(QWidget *widget) { QTest::mouseClick(widget, Qt::LeftButton); }

QMenu *openMenu(QWidget *widget)
{
    auto *const area = qobject_cast<QAbstractScrollArea *>(widget);
    QWidget *const under = area != nullptr ? area->viewport() : widget;
    const QPoint middle = under->rect().center();
    QContextMenuEvent event{QContextMenuEvent::Mouse, middle, under->mapToGlobal(middle)};
    QApplication::sendEvent(under, &event);
    return qobject_cast<QMenu *>(QApplication::activePopupWidget());
}

void typeInto(QWidget *field, const QString &text)
{
    click(field);
    QTest::keyClick(field, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(field, Qt::Key_Delete);
    // Chinese letters have no key of their own: they come as an input method commits them.
    QInputMethodEvent commit;
    commit.setCommitString(text);
    QApplication::sendEvent(field, &commit);
}

} // namespace quilmora::test
