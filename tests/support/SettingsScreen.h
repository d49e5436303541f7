#pragma once

#include "model/VolcengineConfig.h"
#include "screens/settings/SettingsView.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/Texts.h"
#include "ui/dialogs/Sheet.h"

#include <QLineEdit>
#include <QVBoxLayout>

namespace quilmora::test {

/// The settings screen in a window, with a database in a home folder of its own.
class SettingsScreen final
{
public:
    SettingsScreen()
        : database{home.path(QStringLiteral("data")), home.path(QStringLiteral("covers"))},
          view{new SettingsView{database, &window}}
    {
        auto *column = new QVBoxLayout{&window};
        column->setContentsMargins({});
        column->addWidget(view);
        showWindow(window, {1000, 643});
    }
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
    void fill(const QStringList &values)
    {
        for (qsizetype i = 0; i < values.size(); ++i) {
            typeInto(field(texts::settings.at(i)), values.at(i));
        }
    }
    /// What the fields hold.
    QStringList values()
    {
        return {field(texts::apiURL)->text(), field(texts::apiKey)->text(), field(texts::modelID)->text()};
    }
    /// What the database holds, in the order of the fields.
    QStringList stored()
    {
        const VolcengineConfig config = database.getConfig();
        return {config.apiURL, config.apiKey, config.modelID};
    }

    void save() { click(find(texts::saveSettings)); }
    /// Presses the button of the alert; whether the alert was there and goes.
    static bool closeAlert()
    {
        Sheet *alert = openSheet();
        if (alert != nullptr) {
            click(accessible::find(alert, texts::confirm));
        }
        return alert != nullptr && QTest::qWaitFor([] { return openSheet() == nullptr; });
    }

    /// Leaves the screen and comes back.
    void appearAgain() const
    {
        view->hide();
        view->show();
    }

    const TemporaryHome home;
    DatabaseManager database;
    QWidget window;
    SettingsView *view; ///< The window's.
};

} // namespace quilmora::test
