#include "support/DesktopPortal.h"
#include "support/TestProgram.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

namespace {

QColor windowColor() { return QApplication::palette().color(QPalette::Window); }

} // namespace

/// The theme of an application on a desktop whose portal states a color scheme.
class ThemeFollowsDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSchemeOfTheDesktopIsFollowedLive()
    {
        DesktopPortal desktop;
        desktop.start(ColorScheme::dark);
        qputenv("DBUS_SESSION_BUS_ADDRESS", desktop.address().toUtf8());
        QCOMPARE(Theme::current().scheme(), ColorScheme::dark);
        QCOMPARE(windowColor(), QColor{0x323232U});

        desktop.choose(ColorScheme::light);
        QTRY_COMPARE(Theme::current().scheme(), ColorScheme::light);
        QCOMPARE(windowColor(), QColor{0xECECECU});

        const QColor secondary = themeColor(ColorRole::secondaryText);
        desktop.chooseContrast(Contrast::high);
        QTRY_COMPARE(Theme::current().borderWidth(1), 2.0);
        QVERIFY(themeColor(ColorRole::secondaryText).alpha() > secondary.alpha());
        QCOMPARE(Theme::current().scheme(), ColorScheme::light);
        desktop.chooseContrast(Contrast::normal);
        QTRY_COMPARE(Theme::current().borderWidth(1), 1.0);
        QCOMPARE(themeColor(ColorRole::secondaryText), secondary);

        desktop.choose(ColorScheme::dark);
        QTRY_COMPARE(Theme::current().scheme(), ColorScheme::dark);
        // Without a preference the palette of Qt counts, which is a light one here.
        desktop.choose({});
        QTRY_COMPARE(Theme::current().scheme(), ColorScheme::light);
    }
};

namespace {

template <typename Test>
int runWidgetTest(int argc, char **argv)
{
    const QApplication application{argc, argv};
    return runTest<Test>(argc, argv);
}

} // namespace

QUILMORA_TEST(ThemeFollowsDesktopTest, runWidgetTest)

#include "ThemeFollowsDesktopTest.moc"
