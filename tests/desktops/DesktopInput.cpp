#include "DesktopInput.h"

#include <QImage>
#include <QProcess>
#include <QStringList>

#include <cstdlib>
#include <memory>
#include <optional>
#include <xcb/xcb.h>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

QByteArray display() { return qgetenv("QUILMORA_INPUT_DISPLAY"); }

/// What xdotool prints; nothing where it fails.
std::optional<QByteArray> output(const QStringList &arguments)
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, QString::fromLatin1(display()));
    tool.setProcessEnvironment(environment);
    tool.start(u"xdotool"_s, arguments);
    if (!tool.waitForFinished() || tool.exitCode() != 0) {
        return std::nullopt;
    }
    return tool.readAllStandardOutput();
}

void run(const QStringList &arguments)
{
    if (!output(arguments)) {
        qFatal("xdotool %s fails", qPrintable(arguments.join(u' ')));
    }
}

/// Compositors pass movements on frame by frame but buttons at once, so that a button pressed in the same
/// frame would be pressed where the pointer was before.
QStringList movement(QPoint position)
{
    return {u"mousemove"_s, QString::number(position.x()), QString::number(position.y()), u"sleep"_s,
            u"0.1"_s};
}

/// What is on the screen now, without the pointer.
QImage picture()
{
    const std::unique_ptr<xcb_connection_t, decltype(&xcb_disconnect)> connection{
        xcb_connect(display().constData(), nullptr), &xcb_disconnect};
    if (xcb_connection_has_error(connection.get()) != 0) {
        qFatal("There is no X display");
    }
    const xcb_screen_t &screen = *xcb_setup_roots_iterator(xcb_get_setup(connection.get())).data;
    const std::unique_ptr<xcb_get_image_reply_t, decltype(&std::free)> reply{
        xcb_get_image_reply(connection.get(),
                            xcb_get_image(connection.get(), XCB_IMAGE_FORMAT_Z_PIXMAP, screen.root, 0, 0,
                                          screen.width_in_pixels, screen.height_in_pixels, ~quint32{0}),
                            nullptr),
        &std::free};
    if (reply == nullptr) {
        return {};
    }
    return QImage{xcb_get_image_data(reply.get()), screen.width_in_pixels, screen.height_in_pixels,
                  QImage::Format_RGB32}
        .copy();
}

} // namespace

void desktopInput::click(QPoint position) { run(movement(position) + QStringList{u"click"_s, u"1"_s}); }

void desktopInput::doubleClick(QPoint position)
{
    run(movement(position) + QStringList{u"click"_s, u"--repeat"_s, u"2"_s, u"--delay"_s, u"60"_s, u"1"_s});
}

void desktopInput::press(const QString &key) { run({u"key"_s, key}); }

void desktopInput::type(const QString &text) { run({u"type"_s, u"--"_s, text}); }

QString desktopInput::activeTitle()
{
    return QString::fromUtf8(output({u"getactivewindow"_s, u"getwindowname"_s}).value_or(QByteArray{}))
        .trimmed();
}

QRect desktopInput::pixelsOf(const QColor &color)
{
    const QImage image = picture();
    QRect pixels;
    for (int y = 0; y < image.height(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(image.constScanLine(y));
        for (int x = 0; x < image.width(); ++x) {
            if (row[x] == color.rgb()) {
                pixels |= QRect{x, y, 1, 1};
            }
        }
    }
    return pixels;
}

} // namespace quilmora::test
