#include "support/SettingsScreen.h"

#include "model/VolcengineConfig.h"
#include "ui/dialogs/Sheet.h"

#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace quilmora::test {

SettingsScreen::SettingsScreen()
    : database{home.path(u"data"_s), home.path(u"covers"_s)},
      view{new SettingsView{database, &window}}
{
    auto *column = new QVBoxLayout{&window};
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view);
    showWindow(window, {1000, 643});
}

void SettingsScreen::fill(const QStringList &values)
{
    for (qsizetype i = 0; i < values.size(); ++i) {
        typeInto(field(texts::settings.at(i)), values.at(i));
    }
}

QStringList SettingsScreen::values()
{
    QStringList values;
    for (const QString &name : texts::settings) {
        values.append(field(name)->text());
    }
    return values;
}

QStringList SettingsScreen::stored()
{
    const VolcengineConfig config = database.getConfig();
    return {config.apiURL, config.apiKey, config.modelID};
}

bool SettingsScreen::closeAlert()
{
    if (openSheet() == nullptr) {
        return false;
    }
    click(accessible::find(openSheet(), texts::confirm));
    return QTest::qWaitFor([] { return openSheet() == nullptr; });
}

void SettingsScreen::appearAgain() const
{
    view->hide();
    view->show();
}

} // namespace quilmora::test
