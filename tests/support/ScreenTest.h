#pragma once

#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QApplication>
#include <QTest>

class QMenu;

namespace quilmora {
class Sheet;
}

namespace quilmora::test {

/// An application that looks like the real one, in a home folder of its own.
class ScreenTestApplication final
{
public:
    ScreenTestApplication(int &argc, char **argv);
    Q_DISABLE_COPY_MOVE(ScreenTestApplication)
    ~ScreenTestApplication() = default;

private:
    const TemporaryHome m_home;
    QApplication m_application;
};

/// Runs the tests of a class for screens.
template <typename Test>
int runScreenTest(int argc, char **argv)
{
    const ScreenTestApplication application{argc, argv};
    return runTest<Test>(argc, argv);
}

/// Shows a window of that size, active, and waits until it is on screen; fails the test program otherwise.
void showWindow(QWidget &window, QSize size);

/// The sheet that is open over a window; null when there is none.
Sheet *openSheet();

/// Clicks into the middle of a widget.
void click(QWidget *widget);

/// The menu that a right click into the middle of a widget opens; null when there is none.
QMenu *openMenu(QWidget *widget);

/// Puts the focus into a field by a click and types the text in place of what is there.
void typeInto(QWidget *field, const QString &text);

} // namespace quilmora::test
