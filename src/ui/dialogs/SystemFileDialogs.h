#pragma once

#include "ui/dialogs/FileDialogs.h"

#include <QAbstractFileIconProvider>

#include <memory>

class QFileDialog;

namespace quilmora {

/// The file dialogs of the system. They open in the folder that was last used, and are cancelled when their
/// parent is destroyed.
class SystemFileDialogs final : public FileDialogs
{
public:
    SystemFileDialogs();

    std::optional<QString> chooseReferenceImage(QWidget *parent) override;
    std::optional<QString> chooseCoverDestination(QWidget *parent, const QString &proposedName) override;

private:
    /// A dialog in the folder that was last used. Dialogs of desktops look for a file that is selected later
    /// in the folder of that time.
    QFileDialog *makeDialog(QWidget *owner, const QString &title);

    /// Shows and deletes the dialog, which may be deleted with the window while it is open.
    std::optional<QString> run(QFileDialog *newDialog);

    const std::unique_ptr<QAbstractFileIconProvider> m_fileTypes;
    QString m_folder;
};

} // namespace quilmora
