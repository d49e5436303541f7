#include "FirstPaintProbe.h"

#include <cstdlib>
#include <memory>
#include <thread>
#include <xcb/xcb.h>

namespace quilmora::bench {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto patience = 60s;
/// How exactly the time is known.
constexpr auto interval = 500us;
constexpr quint32 emptyColor = 0x123456;
constexpr int leastSide = 200;

template <typename T>
struct Free {
    void operator()(T *reply) const { std::free(reply); }
};
template <typename T>
using Owned = std::unique_ptr<T, Free<T>>;

template <typename Poll>
auto waitFor(const char *what, Poll poll)
{
    for (const auto end = Clock::now() + patience; Clock::now() < end;
         std::this_thread::sleep_for(interval)) {
        if (auto result = poll()) {
            return result;
        }
    }
    qFatal("This does not come: %s", what);
}

} // namespace

FirstPaintProbe::FirstPaintProbe() : m_connection{xcb_connect(nullptr, nullptr)}
{
    if (xcb_connection_has_error(m_connection) != 0) {
        qFatal("There is no X display");
    }
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    const std::uint32_t values[] = {emptyColor, XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY};
    xcb_change_window_attributes(m_connection, m_root, XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    xcb_clear_area(m_connection, 0, m_root, 0, 0, 0, 0);
    xcb_flush(m_connection);
}

FirstPaintProbe::~FirstPaintProbe() { xcb_disconnect(m_connection); }

void FirstPaintProbe::reset()
{
    // An answer means that everything before it has been sent.
    const Owned<xcb_get_input_focus_reply_t> reply{
        xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr)};
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)}) {
    }
}

std::chrono::steady_clock::time_point FirstPaintProbe::paintedAt()
{
    quint32 window = nextWindow();
    waitFor("a painted window", [&] { return isPainted(window); });
    return Clock::now();
}

quint32 FirstPaintProbe::nextWindow()
{
    return waitFor("a window", [this]() -> quint32 {
        const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection)};
        if (event == nullptr || (event->response_type & 0x7f) != XCB_MAP_NOTIFY) {
            return 0;
        }
        const quint32 window =
            static_cast<const xcb_map_notify_event_t *>(static_cast<const void *>(event.get()))->window;
        const Owned<xcb_get_geometry_reply_t> geometry{
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr)};
        const bool isLarge =
            geometry != nullptr && geometry->width >= leastSide && geometry->height >= leastSide;
        return isLarge ? window : 0;
    });
}

bool FirstPaintProbe::isPainted(quint32 window) const
{
    const Owned<xcb_get_geometry_reply_t> geometry{
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr)};
    if (geometry == nullptr) {
        return false;
    }
    // Of the screen, so that a window that shows what lies below it does not count.
    const auto x = static_cast<std::int16_t>(geometry->x + geometry->width / 2);
    const auto y = static_cast<std::int16_t>(geometry->y + geometry->height / 2);
    const Owned<xcb_get_image_reply_t> image{xcb_get_image_reply(
        m_connection, xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_root, x, y, 1, 1, ~0U),
        nullptr)};
    if (image == nullptr || xcb_get_image_data_length(image.get()) < 4) {
        return false;
    }
    const std::uint8_t *bytes = xcb_get_image_data(image.get());
    const quint32 color = bytes[0] | (quint32{bytes[1]} << 8U) | (quint32{bytes[2]} << 16U);
    return color != emptyColor;
}

} // namespace quilmora::bench
