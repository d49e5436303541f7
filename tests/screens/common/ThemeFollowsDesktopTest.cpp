#include "screens/common/Theme.h"
#include "support/DesktopPortal.h"

#include <QApplication>
#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

/// The theme of an application on a desktop whose portal states a colour scheme.
class ThemeFollowsDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theSchemeOfTheDesktopIsFollowedLive();
};

namespace
{

QColor windowColor()
{
    return QApplication::palette().color(QPalette::Window);
}

} // namespace

void ThemeFollowsDesktopTest::theSchemeOfTheDesktopIsFollowedLive()
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

QTEST_MAIN(ThemeFollowsDesktopTest)

#include "ThemeFollowsDesktopTest.moc"
