#include "platform/PortalColorScheme.h"

#include "support/DesktopPortal.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class PortalColorSchemeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void thePreferenceIsKnownAtOnce_data();
    void thePreferenceIsKnownAtOnce();
    void aNewPreferenceIsTold();
    void otherSettingsChangeNothing();
    void withoutASettingNothingIsStated();
    void withoutAPortalNothingIsStatedUntilOneSpeaks();
    void withoutABusNothingIsStated();

private:
    QDBusConnection connection();

    std::unique_ptr<DesktopPortal> desktop;
};

void PortalColorSchemeTest::init()
{
    desktop = std::make_unique<DesktopPortal>();
}

void PortalColorSchemeTest::cleanup()
{
    QDBusConnection::disconnectFromBus(u"test"_s);
    desktop.reset();
}

QDBusConnection PortalColorSchemeTest::connection()
{
    return QDBusConnection::connectToBus(desktop->address(), u"test"_s);
}

void PortalColorSchemeTest::thePreferenceIsKnownAtOnce_data()
{
    QTest::addColumn<std::optional<ColorScheme>>("scheme");
    QTest::newRow("none") << std::optional<ColorScheme>{};
    QTest::newRow("dark") << std::optional{ColorScheme::dark};
    QTest::newRow("light") << std::optional{ColorScheme::light};
}

void PortalColorSchemeTest::thePreferenceIsKnownAtOnce()
{
    QFETCH(const std::optional<ColorScheme>, scheme);
    desktop->start(scheme);
    const PortalColorScheme portal{connection()};
    QVERIFY(portal.stated() == scheme);
    QCOMPARE(desktop->questionCount(), 1);
}

void PortalColorSchemeTest::aNewPreferenceIsTold()
{
    desktop->start(ColorScheme::light);
    const PortalColorScheme portal{connection()};
    QSignalSpy changes{&portal, &PortalColorScheme::changed};
    desktop->choose(ColorScheme::dark);
    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(portal.stated() == ColorScheme::dark);
    desktop->choose({});
    QTRY_COMPARE(changes.count(), 2);
    QVERIFY(!portal.stated());
}

void PortalColorSchemeTest::otherSettingsChangeNothing()
{
    desktop->start(ColorScheme::light);
    const PortalColorScheme portal{connection()};
    QSignalSpy changes{&portal, &PortalColorScheme::changed};
    desktop->choose(ColorScheme::dark, u"accent-color"_s);
    // What is sent later arrives later.
    desktop->choose(ColorScheme::dark);
    QTRY_VERIFY(portal.stated() == ColorScheme::dark);
    QCOMPARE(changes.count(), 1);
}

void PortalColorSchemeTest::withoutASettingNothingIsStated()
{
    desktop->start(ColorScheme::dark);
    desktop->forgetSettings();
    const PortalColorScheme portal{connection()};
    QVERIFY(!portal.stated());
    QCOMPARE(desktop->questionCount(), 1);
}

void PortalColorSchemeTest::withoutAPortalNothingIsStatedUntilOneSpeaks()
{
    const PortalColorScheme portal{connection()};
    QVERIFY(!portal.stated());
    desktop->start(ColorScheme::light);
    desktop->choose(ColorScheme::dark);
    QTRY_VERIFY(portal.stated() == ColorScheme::dark);
}

void PortalColorSchemeTest::withoutABusNothingIsStated()
{
    const PortalColorScheme portal{QDBusConnection::connectToBus(u"unix:path=/nowhere/at/all"_s, u"test"_s)};
    QVERIFY(!portal.stated());
}

QTEST_GUILESS_MAIN(PortalColorSchemeTest)

#include "PortalColorSchemeTest.moc"
