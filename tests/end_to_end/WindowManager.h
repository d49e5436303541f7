#pragma once

#include <QList>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <xcb/xcb.h>

namespace quilmora::test {

/// Stands for the window manager and the keyboard of a virtual screen that has neither.
class WindowManager final
{
public:
    using Window = quint32;

    /// Connects to the display that the environment names.
    WindowManager()
        : m_connection{connected()},
          m_root{xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root},
          m_protocols{atom("WM_PROTOCOLS")},
          m_deleteWindow{atom("WM_DELETE_WINDOW")},
          m_processOfWindow{atom("_NET_WM_PID")}
    {
    }
    Q_DISABLE_COPY_MOVE(WindowManager)
    ~WindowManager() { xcb_disconnect(m_connection); }

    /// The windows of that process that are on screen, the topmost one first.
    QList<Window> windowsOf(qint64 process) const
    {
        QList<Window> windows;
        const Owned<xcb_query_tree_reply_t> tree{
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr)};
        const int count = tree == nullptr ? 0 : xcb_query_tree_children_length(tree.get());
        for (int index = 0; index < count; ++index) {
            const Window window = xcb_query_tree_children(tree.get())[index];
            if (belongsTo(window, process)) {
                windows.prepend(window);
            }
        }
        return windows;
    }

    /// Asks the window to close, as its close button does.
    void requestClose(Window window)
    {
        xcb_client_message_event_t message{};
        message.response_type = XCB_CLIENT_MESSAGE;
        message.format = 32;
        message.window = window;
        message.type = m_protocols;
        message.data.data32[0] = m_deleteWindow;
        send(window, message);
    }

    /// Gives the keyboard to the window and presses the key of that letter there, with Ctrl held down.
    void pressWithControl(Window window, char letter)
    {
        xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
        const quint8 keycode = keycodeOf(letter);
        sendKey(window, XCB_KEY_PRESS, keycode);
        sendKey(window, XCB_KEY_RELEASE, keycode);
    }

private:
    struct Free {
        void operator()(void *reply) const { std::free(reply); }
    };
    template <typename T>
    using Owned = std::unique_ptr<T, Free>;

    static xcb_connection_t *connected()
    {
        xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(connection) != 0) {
            qFatal("There is no X display");
        }
        return connection;
    }

    template <typename Event>
    void send(Window window, const Event &event)
    {
        const void *bytes = &event;
        xcb_send_event(m_connection, 0, window, XCB_EVENT_MASK_NO_EVENT, static_cast<const char *>(bytes));
        xcb_flush(m_connection);
    }

    void sendKey(Window window, quint8 response, quint8 keycode)
    {
        xcb_key_press_event_t event{};
        event.response_type = response;
        event.detail = keycode;
        event.root = m_root;
        event.event = window;
        event.same_screen = 1;
        event.state = XCB_MOD_MASK_CONTROL;
        send(window, event);
    }
    quint8 keycodeOf(char letter) const
    {
        const xcb_setup_t *setup = xcb_get_setup(m_connection);
        const auto first = setup->min_keycode;
        const auto count = static_cast<quint8>(setup->max_keycode - first + 1);
        const Owned<xcb_get_keyboard_mapping_reply_t> mapping{xcb_get_keyboard_mapping_reply(
            m_connection, xcb_get_keyboard_mapping(m_connection, first, count), nullptr)};
        for (int code = 0; mapping != nullptr && code < count; ++code) {
            // The sign that a key has by itself comes first; those of ASCII are their own numbers.
            const qsizetype position = qsizetype{code} * mapping->keysyms_per_keycode;
            if (xcb_get_keyboard_mapping_keysyms(mapping.get())[position] == static_cast<quint8>(letter)) {
                return static_cast<quint8>(first + code);
            }
        }
        qFatal("The keyboard has no %c", letter);
    }
    quint32 atom(const char *name) const
    {
        const Owned<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, static_cast<quint16>(std::strlen(name)), name),
            nullptr)};
        return reply == nullptr ? quint32{XCB_ATOM_NONE} : reply->atom;
    }
    bool belongsTo(Window window, qint64 process) const
    {
        const Owned<xcb_get_window_attributes_reply_t> attributes{xcb_get_window_attributes_reply(
            m_connection, xcb_get_window_attributes(m_connection, window), nullptr)};
        const Owned<xcb_get_property_reply_t> owner{xcb_get_property_reply(
            m_connection,
            xcb_get_property(m_connection, 0, window, m_processOfWindow, XCB_ATOM_CARDINAL, 0, 1), nullptr)};
        return attributes != nullptr && attributes->map_state == XCB_MAP_STATE_VIEWABLE && owner != nullptr &&
               xcb_get_property_value_length(owner.get()) == sizeof(quint32) &&
               *static_cast<const quint32 *>(xcb_get_property_value(owner.get())) == process;
    }

    xcb_connection_t *const m_connection;
    Window m_root = 0;
    const quint32 m_protocols;
    const quint32 m_deleteWindow;
    const quint32 m_processOfWindow;
};

} // namespace quilmora::test
