#include "platform/PortalAppearance.h"

#include "support/DesktopPortal.h"
#include "support/TestProgram.h"

#include <QSignalSpy>

using namespace quilmora;
using namespace quilmora::test;

class PortalAppearanceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_desktop = std::make_unique<DesktopPortal>(); }

    void cleanup()
    {
        QDBusConnection::disconnectFromBus(u"test"_s);
        m_desktop.reset();
    }

    void thePreferenceIsKnownAtOnce_data()
    {
        QTest::addColumn<std::optional<ColorScheme>>("scheme");
        QTest::newRow("none") << std::optional<ColorScheme>{};
        QTest::newRow("dark") << std::optional{ColorScheme::dark};
        QTest::newRow("light") << std::optional{ColorScheme::light};
    }

    void thePreferenceIsKnownAtOnce()
    {
        QFETCH(const std::optional<ColorScheme>, scheme);
        m_desktop->start(scheme);
        const PortalAppearance portal{connection()};
        QVERIFY(portal.scheme() == scheme);
        QCOMPARE(m_desktop->questionCount(), 1);
    }

    void aNewPreferenceIsSignaled()
    {
        m_desktop->start(ColorScheme::light);
        const PortalAppearance portal{connection()};
        QSignalSpy changes{&portal, &PortalAppearance::changed};
        m_desktop->choose(ColorScheme::dark);
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(portal.scheme() == ColorScheme::dark);
        m_desktop->choose({});
        QTRY_COMPARE(changes.count(), 2);
        QVERIFY(!portal.scheme());
    }

    void theContrastIsKnownAtOnceAndSignaled_data()
    {
        using Choice = void (DesktopPortal::*)(Contrast);
        QTest::addColumn<Choice>("choose");
        QTest::newRow("all desktops") << Choice{&DesktopPortal::chooseContrast};
        QTest::newRow("GNOME") << Choice{&DesktopPortal::chooseGnomeContrast};
    }

    void theContrastIsKnownAtOnceAndSignaled()
    {
        using Choice = void (DesktopPortal::*)(Contrast);
        QFETCH(const Choice, choose);
        m_desktop->start(ColorScheme::light);
        (*m_desktop.*choose)(Contrast::high);
        const PortalAppearance portal{connection()};
        QVERIFY(portal.contrast() == Contrast::high);
        QVERIFY(portal.scheme() == ColorScheme::light);
        QCOMPARE(m_desktop->questionCount(), 1);

        QSignalSpy changes{&portal, &PortalAppearance::changed};
        (*m_desktop.*choose)(Contrast::normal);
        QTRY_COMPARE(changes.count(), 1);
        QVERIFY(portal.contrast() == Contrast::normal);
        (*m_desktop.*choose)(Contrast::high);
        QTRY_COMPARE(changes.count(), 2);
        QVERIFY(portal.contrast() == Contrast::high);
        QVERIFY(portal.scheme() == ColorScheme::light);
    }

    void otherSettingsChangeNothing()
    {
        m_desktop->start(ColorScheme::light);
        const PortalAppearance portal{connection()};
        QSignalSpy changes{&portal, &PortalAppearance::changed};
        m_desktop->choose(ColorScheme::dark, u"accent-color"_s);
        // What is sent later arrives later.
        m_desktop->choose(ColorScheme::dark);
        QTRY_VERIFY(portal.scheme() == ColorScheme::dark);
        QCOMPARE(changes.count(), 1);
    }

    void withoutASettingNothingIsStated()
    {
        m_desktop->start(ColorScheme::dark);
        m_desktop->forgetSettings();
        const PortalAppearance portal{connection()};
        QVERIFY(!portal.scheme());
        QCOMPARE(m_desktop->questionCount(), 1);
    }

    void withoutAPortalNothingIsStatedUntilOneSpeaks()
    {
        const PortalAppearance portal{connection()};
        QVERIFY(!portal.scheme());
        m_desktop->start(ColorScheme::light);
        m_desktop->choose(ColorScheme::dark);
        QTRY_VERIFY(portal.scheme() == ColorScheme::dark);
    }

    void withoutABusNothingIsStated()
    {
        const PortalAppearance portal{
            QDBusConnection::connectToBus(u"unix:path=/nowhere/at/all"_s, u"test"_s)};
        QVERIFY(!portal.scheme());
    }

private:
    QDBusConnection connection() { return QDBusConnection::connectToBus(m_desktop->address(), u"test"_s); }

    std::unique_ptr<DesktopPortal> m_desktop;
};

QUILMORA_TEST(PortalAppearanceTest, runCoreTest)

#include "PortalAppearanceTest.moc"
