#include "AccessibleDesktop.h"

#include <atspi/atspi.h>
#include <utility>

namespace quilmora::test
{
namespace
{

bool hasState(AtspiAccessible *object, AtspiStateType state)
{
    AtspiStateSet *states = atspi_accessible_get_state_set(object);
    const bool has = states != nullptr && atspi_state_set_contains(states, state) != FALSE;
    if (states != nullptr) {
        g_object_unref(states);
    }
    return has;
}

bool canBeActedUpon(AtspiAccessible *object)
{
    AtspiAction *action = atspi_accessible_get_action_iface(object);
    const bool can = action != nullptr && atspi_action_get_n_actions(action, nullptr) > 0;
    if (action != nullptr) {
        g_object_unref(action);
    }
    return can;
}

/// Takes over a text of the library's.
QByteArray taken(gchar *owned)
{
    QByteArray text{owned};
    g_free(owned);
    return text;
}

QByteArray nameOf(AtspiAccessible *object)
{
    return taken(atspi_accessible_get_name(object, nullptr));
}

QByteArray contentOf(AtspiAccessible *object)
{
    AtspiText *text = atspi_accessible_get_text_iface(object);
    if (text == nullptr) {
        return {};
    }
    QByteArray content =
        taken(atspi_text_get_text(text, 0, atspi_text_get_character_count(text, nullptr), nullptr));
    g_object_unref(text);
    return content;
}

} // namespace

void AccessibleDesktop::Release::operator()(AtspiAccessible *object) const
{
    g_object_unref(object);
}

AccessibleDesktop::AccessibleDesktop()
{
    atspi_init();
    // Every look is to be a fresh one.
    const Object desktop{atspi_get_desktop(0)};
    atspi_accessible_set_cache_mask(desktop.get(), ATSPI_CACHE_NONE);
}

void AccessibleDesktop::listen()
{
    const auto hear = [](AtspiEvent *event, void *texts) {
        if (G_VALUE_HOLDS_STRING(&event->any_data)) {
            static_cast<QStringList *>(texts)->append(
                QString::fromUtf8(g_value_get_string(&event->any_data)));
        }
        g_boxed_free(ATSPI_TYPE_EVENT, event);
    };
    listener = atspi_event_listener_new(hear, &announced, nullptr);
    for (const char *kind : {"object:text-changed", "object:property-change"}) {
        atspi_event_listener_register(listener, kind, nullptr);
    }
}

AccessibleDesktop::~AccessibleDesktop()
{
    if (listener != nullptr) {
        g_object_unref(listener);
    }
    atspi_exit();
}

void AccessibleDesktop::collect(Object object, const QByteArray &name, std::vector<Object> &found)
{
    if (object == nullptr) {
        return;
    }
    const int count = atspi_accessible_get_child_count(object.get(), nullptr);
    for (int index = 0; index < count; ++index) {
        collect(Object{atspi_accessible_get_child_at_index(object.get(), index, nullptr)}, name, found);
    }
    if (nameOf(object.get()) == name && hasState(object.get(), ATSPI_STATE_SHOWING)) {
        found.push_back(std::move(object));
    }
}

void AccessibleDesktop::collectTexts(_AtspiAccessible *object, QStringList &texts)
{
    texts.append(QString::fromUtf8(nameOf(object)));
    texts.append(QString::fromUtf8(taken(atspi_accessible_get_description(object, nullptr))));
    texts.append(QString::fromUtf8(contentOf(object)));
    const int count = atspi_accessible_get_child_count(object, nullptr);
    for (int index = 0; index < count; ++index) {
        if (const Object child{atspi_accessible_get_child_at_index(object, index, nullptr)}) {
            collectTexts(child.get(), texts);
        }
    }
}

QString AccessibleDesktop::content(const QString &name)
{
    const Object object = find(name);
    return object == nullptr ? QString{} : QString::fromUtf8(contentOf(object.get()));
}

QStringList AccessibleDesktop::texts()
{
    QStringList texts;
    const Object desktop{atspi_get_desktop(0)};
    collectTexts(desktop.get(), texts);
    texts.removeAll(QString{});
    return texts;
}

AccessibleDesktop::Object AccessibleDesktop::find(const QString &name)
{
    std::vector<Object> found;
    collect(Object{atspi_get_desktop(0)}, name.toUtf8(), found);
    for (Object &object : found) {
        if (canBeActedUpon(object.get())) {
            return std::move(object);
        }
    }
    return found.empty() ? Object{} : std::move(found.front());
}

bool AccessibleDesktop::isShowing(const QString &name)
{
    return find(name) != nullptr;
}

bool AccessibleDesktop::isUsable(const QString &name)
{
    const Object object = find(name);
    return object != nullptr && hasState(object.get(), ATSPI_STATE_ENABLED);
}

bool AccessibleDesktop::isChecked(const QString &name)
{
    const Object object = find(name);
    return object != nullptr && hasState(object.get(), ATSPI_STATE_CHECKED);
}

bool AccessibleDesktop::hasFocus(const QString &name)
{
    const Object object = find(name);
    return object != nullptr && hasState(object.get(), ATSPI_STATE_FOCUSED);
}

QRect AccessibleDesktop::bounds(const QString &name)
{
    const Object object = find(name);
    AtspiComponent *component =
        object == nullptr ? nullptr : atspi_accessible_get_component_iface(object.get());
    AtspiRect *extents = component == nullptr
                             ? nullptr
                             : atspi_component_get_extents(component, ATSPI_COORD_TYPE_SCREEN, nullptr);
    const QRect bounds =
        extents == nullptr ? QRect{} : QRect{extents->x, extents->y, extents->width, extents->height};
    g_free(extents);
    if (component != nullptr) {
        g_object_unref(component);
    }
    return bounds;
}

bool AccessibleDesktop::act(const QString &name)
{
    const Object object = find(name);
    AtspiAction *action = object == nullptr ? nullptr : atspi_accessible_get_action_iface(object.get());
    if (action == nullptr) {
        return false;
    }
    const bool done = atspi_action_do_action(action, 0, nullptr) != FALSE;
    g_object_unref(action);
    return done;
}

bool AccessibleDesktop::setText(const QString &name, const QString &text)
{
    const Object object = find(name);
    AtspiEditableText *field =
        object == nullptr ? nullptr : atspi_accessible_get_editable_text_iface(object.get());
    if (field == nullptr) {
        return false;
    }
    const bool done =
        atspi_editable_text_set_text_contents(field, text.toUtf8().constData(), nullptr) != FALSE;
    g_object_unref(field);
    return done;
}

} // namespace quilmora::test
