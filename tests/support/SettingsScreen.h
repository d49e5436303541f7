#pragma once

#include "screens/settings/SettingsView.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/Texts.h"

#include <QLineEdit>

namespace quilmora::test {

/// The settings screen in a window, with a database in a home folder of its own.
class SettingsScreen final
{
public:
    SettingsScreen();
    Q_DISABLE_COPY_MOVE(SettingsScreen)
    ~SettingsScreen() = default;

    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return accessible::find<Widget>(&window, name);
    }
    bool shows(const QString &name) { return find(name) != nullptr; }
    QLineEdit *field(const QString &name) { return find<QLineEdit>(name); }

    /// Types the values into the fields, in their order, in place of what is there.
    void fill(const QStringList &values);
    /// What the fields hold.
    QStringList values();
    /// What the database holds, in the order of the fields.
    QStringList stored();

    void save() { click(find(texts::saveSettings)); }
    /// Presses the button of the alert; whether the alert was there and goes.
    static bool closeAlert();

    /// Leaves the screen and comes back.
    void appearAgain() const;

    const TemporaryHome home;
    DatabaseManager database;
    QWidget window;
    SettingsView *view; ///< The window's.
};

} // namespace quilmora::test
