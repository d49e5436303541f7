#include "ProgramOnDesktop.h"

#include "DesktopInput.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace quilmora::test {

ProgramOnDesktop::ProgramOnDesktop()
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

ProgramOnDesktop::~ProgramOnDesktop()
{
    end();
}

QByteArray ProgramOnDesktop::end()
{
    if (m_program.state() != QProcess::NotRunning) {
        m_program.terminate();
        if (!m_program.waitForFinished()) {
            qFatal("The program does not end");
        }
    }
    return m_program.readAll();
}

void ProgramOnDesktop::locate()
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

QPoint ProgramOnDesktop::centerOf(const QString &name)
{
    return (m_origin + QRectF{m_accessible.bounds(name)}.center() * m_pixelsPerPoint).toPoint();
}

} // namespace quilmora::test
