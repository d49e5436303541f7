#pragma once

#include "app/MainView.h"
#include "app/QuilmoraApp.h"
#include "app/TopNavigationBar.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/Texts.h"

#include <QLineEdit>

namespace quilmora::test {

/// The window of an application, worked as a user does.
class ApplicationWindow
{
public:
    explicit ApplicationWindow(QuilmoraApp &application) : m_application{application} {}

    MainView *window() const { return m_application.mainWindow(); }
    QWidget *find(const QString &name) const { return accessible::find(window(), name); }
    QLineEdit *field(const QString &name) const { return accessible::find<QLineEdit>(window(), name); }
    void select(NavigationTab tab) const
    {
        click(accessible::find<NavTabButton>(window(), tab.rawValue()));
        QCoreApplication::processEvents();
    }

protected:
    QuilmoraApp &m_application;
};

/// A test of the application as main() starts it.
class ApplicationTest : public QObject, protected ApplicationWindow
{
public:
    ApplicationTest(QuilmoraApp &application, const TemporaryHome &home)
        : ApplicationWindow{application},
          m_home{home}
    {
    }

protected:
    const TemporaryHome &m_home;
};

/// Runs the tests of such a class.
template <typename Test>
int runInApplication(int argc, char **argv)
{
    const TemporaryHome home;
    QuilmoraApp application{argc, argv};
    Test test{application, home};
    return QTest::qExec(&test, argc, argv);
}

} // namespace quilmora::test
