#pragma once

#include "AccessibleDesktop.h"

#include <QColor>
#include <QProcess>
#include <QRect>

namespace quilmora::test {

/// The program, started on the desktop of scripts/with-desktop.sh, read over the accessibility bus and found
/// on the screen by what it draws. Ended with this object. QUILMORA_TESTED_PROGRAM may name another one than
/// that of this build.
class ProgramOnDesktop final
{
public:
    /// Starts the program and waits until its form is there; fails the test program otherwise.
    ProgramOnDesktop();
    Q_DISABLE_COPY_MOVE(ProgramOnDesktop)
    ~ProgramOnDesktop();

    AccessibleDesktop &desktop() { return m_accessible; }

    /// Ends the program. Gives what it wrote to its standard output and standard error.
    QByteArray end();

    /// Notes where the window is on the screen, and clicks into a field there until that takes the focus: the
    /// window may still be moving as it comes. It must not move afterwards. Needs the generate screen, not
    /// covered.
    void locate();

    /// Where on the screen the center of something of that name is, since the window was located.
    QPoint centerOf(const QString &name);

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
