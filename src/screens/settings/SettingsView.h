#pragma once

#include "ui/widgets/ScrollPage.h"

namespace quilmora {

class DatabaseManager;
class ErrorLine;
class LabeledField;

/// The screen on which the address, the key and the model of the image service are entered.
class SettingsView final : public ScrollPage
{
    Q_OBJECT

public:
    /// `database` must outlive the screen.
    explicit SettingsView(DatabaseManager &database, QWidget *parent = nullptr);

protected:
    void showEvent(QShowEvent *event) override;

private:
    QWidget *makeCard();
    void load();
    void saveSettings();
    void refuse(const QString &message, const LabeledField &missing);

    DatabaseManager &m_database;
    LabeledField *m_url;
    LabeledField *m_key;
    LabeledField *m_model;
    ErrorLine *m_validationError;
};

} // namespace quilmora
