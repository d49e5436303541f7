#pragma once

#include "app/MainView.h"
#include "app/NavTabButton.h"
#include "app/QuilmoraApp.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/Texts.h"

#include <QLineEdit>

namespace quilmora::test {

/// A test of the application as main() starts it, worked by its window as a user does.
class ApplicationTest : public QObject
{
public:
    ApplicationTest(QuilmoraApp &application, const TemporaryHome &home)
        : m_application{application},
          m_home{home}
    {
    }

protected:
    MainView *window() const { return m_application.mainWindow(); }
    QWidget *find(const QString &name) const { return accessible::find(window(), name); }
    QLineEdit *field(const QString &name) const { return accessible::find<QLineEdit>(window(), name); }
    void select(NavigationTab tab) const
    {
        click(accessible::find<NavTabButton>(window(), tab.rawValue()));
        QCoreApplication::processEvents();
    }

    QuilmoraApp &m_application;
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
