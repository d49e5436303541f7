#include "platform/PortalAppearance.h"

#include "support/DesktopPortal.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class PortalAppearanceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void thePreferenceIsKnownAtOnce_data();
    void thePreferenceIsKnownAtOnce();
    void aNewPreferenceIsTold();
    void theContrastIsKnownAtOnceAndTold_data();
    void theContrastIsKnownAtOnceAndTold();
    void otherSettingsChangeNothing();
    void withoutASettingNothingIsStated();
    void withoutAPortalNothingIsStatedUntilOneSpeaks();
    void withoutABusNothingIsStated();

private:
    QDBusConnection connection();

    std::unique_ptr<DesktopPortal> desktop;
};

void PortalAppearanceTest::init()
{
    desktop = std::make_unique<DesktopPortal>();
}

void PortalAppearanceTest::cleanup()
{
    QDBusConnection::disconnectFromBus(u"test"_s);
    desktop.reset();
}

QDBusConnection PortalAppearanceTest::connection()
{
    return QDBusConnection::connectToBus(desktop->address(), u"test"_s);
}

void PortalAppearanceTest::thePreferenceIsKnownAtOnce_data()
{
    QTest::addColumn<std::optional<ColorScheme>>("scheme");
    QTest::newRow("none") << std::optional<ColorScheme>{};
    QTest::newRow("dark") << std::optional{ColorScheme::dark};
    QTest::newRow("light") << std::optional{ColorScheme::light};
}

void PortalAppearanceTest::thePreferenceIsKnownAtOnce()
{
    QFETCH(const std::optional<ColorScheme>, scheme);
    desktop->start(scheme);
    const PortalAppearance portal{connection()};
    QVERIFY(portal.scheme() == scheme);
    QCOMPARE(desktop->questionCount(), 1);
}

void PortalAppearanceTest::aNewPreferenceIsTold()
{
    desktop->start(ColorScheme::light);
    const PortalAppearance portal{connection()};
    QSignalSpy changes{&portal, &PortalAppearance::changed};
    desktop->choose(ColorScheme::dark);
    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(portal.scheme() == ColorScheme::dark);
    desktop->choose({});
    QTRY_COMPARE(changes.count(), 2);
    QVERIFY(!portal.scheme());
}

void PortalAppearanceTest::theContrastIsKnownAtOnceAndTold_data()
{
    using Choice = void (DesktopPortal::*)(Contrast);
    QTest::addColumn<Choice>("choose");
    QTest::newRow("all desktops") << Choice{&DesktopPortal::chooseContrast};
    QTest::newRow("GNOME") << Choice{&DesktopPortal::chooseGnomeContrast};
}

void PortalAppearanceTest::theContrastIsKnownAtOnceAndTold()
{
    using Choice = void (DesktopPortal::*)(Contrast);
    QFETCH(const Choice, choose);
    desktop->start(ColorScheme::light);
    (*desktop.*choose)(Contrast::high);
    const PortalAppearance portal{connection()};
    QVERIFY(portal.contrast() == Contrast::high);
    QVERIFY(portal.scheme() == ColorScheme::light);
    QCOMPARE(desktop->questionCount(), 1);

    QSignalSpy changes{&portal, &PortalAppearance::changed};
    (*desktop.*choose)(Contrast::normal);
    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(portal.contrast() == Contrast::normal);
    (*desktop.*choose)(Contrast::high);
    QTRY_COMPARE(changes.count(), 2);
    QVERIFY(portal.contrast() == Contrast::high);
    QVERIFY(portal.scheme() == ColorScheme::light);
}

void PortalAppearanceTest::otherSettingsChangeNothing()
{
    desktop->start(ColorScheme::light);
    const PortalAppearance portal{connection()};
    QSignalSpy changes{&portal, &PortalAppearance::changed};
    desktop->choose(ColorScheme::dark, u"accent-color"_s);
    // What is sent later arrives later.
    desktop->choose(ColorScheme::dark);
    QTRY_VERIFY(portal.scheme() == ColorScheme::dark);
    QCOMPARE(changes.count(), 1);
}

void PortalAppearanceTest::withoutASettingNothingIsStated()
{
    desktop->start(ColorScheme::dark);
    desktop->forgetSettings();
    const PortalAppearance portal{connection()};
    QVERIFY(!portal.scheme());
    QCOMPARE(desktop->questionCount(), 1);
}

void PortalAppearanceTest::withoutAPortalNothingIsStatedUntilOneSpeaks()
{
    const PortalAppearance portal{connection()};
    QVERIFY(!portal.scheme());
    desktop->start(ColorScheme::light);
    desktop->choose(ColorScheme::dark);
    QTRY_VERIFY(portal.scheme() == ColorScheme::dark);
}

void PortalAppearanceTest::withoutABusNothingIsStated()
{
    const PortalAppearance portal{QDBusConnection::connectToBus(u"unix:path=/nowhere/at/all"_s, u"test"_s)};
    QVERIFY(!portal.scheme());
}

QTEST_GUILESS_MAIN(PortalAppearanceTest)

#include "PortalAppearanceTest.moc"
