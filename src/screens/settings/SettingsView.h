#pragma once

#include "screens/common/ScrollPage.h"

namespace quilmora
{

class DatabaseManager;
class ErrorLine;
class LabelledField;

/// The screen on which the address, the key and the model of the image service are entered.
class SettingsView final : public ScrollPage
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SettingsView)

public:
    /// `store` must outlive the screen.
    explicit SettingsView(DatabaseManager &store, QWidget *parent = nullptr);
    ~SettingsView() override = default;

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeCard();
    void load();
    void saveSettings();
    void refuse(const QString &message, const LabelledField &missing);

    DatabaseManager &database;
    LabelledField *url;
    LabelledField *key;
    LabelledField *model;
    ErrorLine *validationError;
};

} // namespace quilmora
