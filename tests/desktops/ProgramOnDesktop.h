#pragma once

#include "AccessibleDesktop.h"
#include "DesktopInput.h"

#include <QProcess>
#include <QTest>

namespace quilmora::test {

using namespace Qt::StringLiterals;

/// The program, started on the desktop of scripts/with-desktop.sh, read over the accessibility bus and found
/// on the screen by what it draws. Ended with this object. QUILMORA_TESTED_PROGRAM may name another one than
/// that of this build.
class ProgramOnDesktop final
{
public:
    /// Starts the program and waits until its form is there; fails the test program otherwise.
    ProgramOnDesktop()
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
        m_program.setProcessEnvironment(environment);
        m_program.setProcessChannelMode(QProcess::MergedChannels);
        m_program.start(qEnvironmentVariable("QUILMORA_TESTED_PROGRAM", QStringLiteral(QUILMORA_PROGRAM)),
                        QStringList{});
        const auto isThere = [this] {
            return m_accessible.isShowing(u"视频封面标题文本"_s);
        };
        if (!m_program.waitForStarted() || !QTest::qWaitFor(isThere, desktopLimit)) {
            qFatal("The program does not start: %s", m_program.readAll().constData());
        }
    }
    Q_DISABLE_COPY_MOVE(ProgramOnDesktop)
    ~ProgramOnDesktop() { end(); }

    AccessibleDesktop &desktop() { return m_accessible; }

    /// Ends the program. Gives what it wrote to its standard output and standard error.
    QByteArray end()
    {
        if (m_program.state() != QProcess::NotRunning) {
            m_program.terminate();
            if (!m_program.waitForFinished()) {
                qFatal("The program does not end");
            }
        }
        return m_program.readAll();
    }

    /// Notes where the window is on the screen, and clicks into a field there until that takes the focus: the
    /// window may still be moving as it comes. It must not move afterwards. Needs the generate screen, not
    /// covered.
    void locate()
    {
        const auto takesClicks = [this] {
            const QRect drawn = desktopInput::pixelsOf(QColor{accent});
            if (drawn.isEmpty()) {
                return false;
            }
            const QRect tab = m_accessible.bounds(u"生成封面"_s);
            m_pixelsPerPoint = 1.0 * drawn.width() / tab.width();
            m_origin = QRectF{drawn}.center() - QRectF{tab}.center() * m_pixelsPerPoint;
            desktopInput::click(centerOf(u"背景场景"_s));
            return m_accessible.hasFocus(u"背景场景"_s);
        };
        QVERIFY2(QTest::qWaitFor(takesClicks, desktopLimit), "The window takes no clicks where it is drawn");
    }

    /// Where on the screen the center of something of that name is, since the window was located.
    QPoint centerOf(const QString &name)
    {
        return (m_origin + QRectF{m_accessible.bounds(name)}.center() * m_pixelsPerPoint).toPoint();
    }

    /// Pixels of the screen for each point.
    double scale() const { return m_pixelsPerPoint; }

    /// The colors of the light scheme by which parts of the window are found.
    static constexpr QRgb accent = 0xFF007AFF;
    static constexpr QRgb windowBackground = 0xFFECECEC;

private:
    QProcess m_program;
    AccessibleDesktop m_accessible;
    double m_pixelsPerPoint = 0;
    QPointF m_origin; ///< Of the coordinates of the accessibility bus, in pixels of the screen.
};

} // namespace quilmora::test
