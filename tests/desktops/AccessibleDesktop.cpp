#include "AccessibleDesktop.h"

#include <atspi/atspi.h>
#include <memory>
#include <utility>
#include <vector>

namespace quilmora::test {
namespace {

struct Release {
    void operator()(void *object) const { g_object_unref(object); }
};

/// An object of the library's that is released with this.
template <typename T>
using Owned = std::unique_ptr<T, Release>;

using Object = Owned<AtspiAccessible>;

/// Takes over a text of the library's.
QByteArray taken(gchar *owned)
{
    QByteArray text{owned};
    g_free(owned);
    return text;
}

bool hasState(AtspiAccessible *object, AtspiStateType state)
{
    const Owned<AtspiStateSet> states{atspi_accessible_get_state_set(object)};
    return states != nullptr && atspi_state_set_contains(states.get(), state) != FALSE;
}

bool canBeActedUpon(AtspiAccessible *object)
{
    const Owned<AtspiAction> action{atspi_accessible_get_action_iface(object)};
    return action != nullptr && atspi_action_get_n_actions(action.get(), nullptr) > 0;
}

QByteArray nameOf(AtspiAccessible *object) { return taken(atspi_accessible_get_name(object, nullptr)); }

QByteArray contentOf(AtspiAccessible *object)
{
    const Owned<AtspiText> text{atspi_accessible_get_text_iface(object)};
    if (text == nullptr) {
        return {};
    }
    const int size = atspi_text_get_character_count(text.get(), nullptr);
    return taken(atspi_text_get_text(text.get(), 0, size, nullptr));
}

std::vector<Object> childrenOf(AtspiAccessible *object)
{
    std::vector<Object> children;
    const int count = atspi_accessible_get_child_count(object, nullptr);
    for (int index = 0; index < count; ++index) {
        if (Object child{atspi_accessible_get_child_at_index(object, index, nullptr)}) {
            children.push_back(std::move(child));
        }
    }
    return children;
}

/// Adds what is shown of that name below the object and then the object itself.
void collect(Object object, const QByteArray &name, std::vector<Object> &found)
{
    for (Object &child : childrenOf(object.get())) {
        collect(std::move(child), name, found);
    }
    if (nameOf(object.get()) == name && hasState(object.get(), ATSPI_STATE_SHOWING)) {
        found.push_back(std::move(object));
    }
}

void collectTexts(AtspiAccessible *object, QStringList &texts)
{
    texts.append(QString::fromUtf8(nameOf(object)));
    texts.append(QString::fromUtf8(taken(atspi_accessible_get_description(object, nullptr))));
    texts.append(QString::fromUtf8(contentOf(object)));
    for (const Object &child : childrenOf(object)) {
        collectTexts(child.get(), texts);
    }
}

/// The shown object of that name that can do most: one that can be acted upon before a mere text.
Object find(const QString &name)
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

bool has(const QString &name, AtspiStateType state)
{
    const Object object = find(name);
    return object != nullptr && hasState(object.get(), state);
}

} // namespace

AccessibleDesktop::AccessibleDesktop()
{
    atspi_init();
    // Every look is to be a fresh one.
    const Object desktop{atspi_get_desktop(0)};
    atspi_accessible_set_cache_mask(desktop.get(), ATSPI_CACHE_NONE);
}

AccessibleDesktop::~AccessibleDesktop()
{
    if (m_listener != nullptr) {
        g_object_unref(m_listener);
    }
    atspi_exit();
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
    m_listener = atspi_event_listener_new(hear, &m_announced, nullptr);
    for (const char *kind : {"object:text-changed", "object:property-change"}) {
        atspi_event_listener_register(m_listener, kind, nullptr);
    }
}

bool AccessibleDesktop::isShowing(const QString &name) { return find(name) != nullptr; }

bool AccessibleDesktop::isUsable(const QString &name) { return has(name, ATSPI_STATE_ENABLED); }

bool AccessibleDesktop::isChecked(const QString &name) { return has(name, ATSPI_STATE_CHECKED); }

bool AccessibleDesktop::hasFocus(const QString &name) { return has(name, ATSPI_STATE_FOCUSED); }

QString AccessibleDesktop::content(const QString &name)
{
    const Object object = find(name);
    return object == nullptr ? QString{} : QString::fromUtf8(contentOf(object.get()));
}

QStringList AccessibleDesktop::texts()
{
    QStringList texts;
    collectTexts(Object{atspi_get_desktop(0)}.get(), texts);
    texts.removeAll(QString{});
    return texts;
}

QRect AccessibleDesktop::bounds(const QString &name)
{
    const Object object = find(name);
    const Owned<AtspiComponent> component{
        object == nullptr ? nullptr : atspi_accessible_get_component_iface(object.get())};
    const std::unique_ptr<AtspiRect, decltype(&g_free)> extents{
        component == nullptr ? nullptr
                             : atspi_component_get_extents(component.get(), ATSPI_COORD_TYPE_SCREEN, nullptr),
        &g_free};
    return extents == nullptr ? QRect{} : QRect{extents->x, extents->y, extents->width, extents->height};
}

bool AccessibleDesktop::act(const QString &name)
{
    const Object object = find(name);
    const Owned<AtspiAction> action{object == nullptr ? nullptr
                                                      : atspi_accessible_get_action_iface(object.get())};
    return action != nullptr && atspi_action_do_action(action.get(), 0, nullptr) != FALSE;
}

bool AccessibleDesktop::setText(const QString &name, const QString &text)
{
    const Object object = find(name);
    const Owned<AtspiEditableText> field{
        object == nullptr ? nullptr : atspi_accessible_get_editable_text_iface(object.get())};
    return field != nullptr &&
           atspi_editable_text_set_text_contents(field.get(), text.toUtf8().constData(), nullptr) != FALSE;
}

} // namespace quilmora::test
