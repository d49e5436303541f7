#pragma once

#include <QColor>
#include <QRect>
#include <QString>

/// Pointer, keyboard and picture of the desktop's screen. Points are in pixels of the X server, in which all
/// desktops of scripts/with-desktop.sh run, compositors of Wayland as well.
namespace quilmora::test {

/// How long a test waits for the program and the parts of the desktop, which share the machine with other
/// tests; milliseconds.
inline constexpr int desktopLimit = 30'000;

} // namespace quilmora::test

namespace quilmora::test::desktopInput {

void click(QPoint position);

void doubleClick(QPoint position);

/// Presses and releases a key, perhaps with modifiers, by its names in X: "Return", "ctrl+v".
void press(const QString &key);

/// Types ASCII text.
void type(const QString &text);

/// The title of the window that has the keyboard, on X11 with a window manager; null when none has it.
QString activeTitle();

/// The bounds of the pixels of the screen that have that color; empty when there are none.
QRect pixelsOf(const QColor &color);

} // namespace quilmora::test::desktopInput
