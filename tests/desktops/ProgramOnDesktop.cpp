#include "ProgramOnDesktop.h"

#include "DesktopInput.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace quilmora::test
{

ProgramOnDesktop::ProgramOnDesktop()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"QT_LINUX_ACCESSIBILITY_ALWAYS_ON"_s, u"1"_s);
    program.setProcessEnvironment(environment);
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(qEnvironmentVariable("QUILMORA_TESTED_PROGRAM", QStringLiteral(QUILMORA_PROGRAM)),
                  QStringList{});
    const auto isThere = [this] {
        return accessible.isShowing(u"视频封面标题文本"_s);
    };
    if (!program.waitForStarted() || !QTest::qWaitFor(isThere, desktopLimit)) {
        qFatal("The program does not start: %s", program.readAll().constData());
    }
}

ProgramOnDesktop::~ProgramOnDesktop()
{
    end();
}

QByteArray ProgramOnDesktop::end()
{
    if (program.state() != QProcess::NotRunning) {
        program.terminate();
        if (!program.waitForFinished()) {
            qFatal("The program does not end");
        }
    }
    return program.readAll();
}

void ProgramOnDesktop::locate()
{
    const QRect tab = accessible.bounds(u"生成封面"_s);
    const QRect drawn = desktopInput::pixelsOf(QColor{accent});
    pixelsPerPoint = 1.0 * drawn.width() / tab.width();
    origin = QRectF{drawn}.center() - QRectF{tab}.center() * pixelsPerPoint;
}

QPoint ProgramOnDesktop::centerOf(const QString &name)
{
    return (origin + QRectF{accessible.bounds(name)}.center() * pixelsPerPoint).toPoint();
}

} // namespace quilmora::test
