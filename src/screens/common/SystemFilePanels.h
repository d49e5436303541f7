#pragma once

#include "screens/common/FileKinds.h"
#include "screens/common/FilePanels.h"

class QFileDialog;

namespace quilmora
{

/// The system's own file panels. They open where the last one was closed. One whose asking widget is
/// destroyed closes without an answer.
class SystemFilePanels final : public FilePanels
{
public:
    SystemFilePanels();

    std::optional<QString> chooseReferenceImage(QWidget *parent) override;
    std::optional<QString> chooseCoverDestination(QWidget *parent, const QString &proposedName) override;

private:
    /// A panel in the folder of the last one, which closes when `asker` is destroyed. Desktops' panels take a
    /// name that is selected later to be in the folder that they have then.
    QFileDialog *makePanel(QWidget *asker, const QString &title);

    /// Shows the panel and deletes it. Nothing when the user cancels, or when the asker, and with it perhaps
    /// the window and the panel, goes while it is open.
    std::optional<QString> run(QFileDialog *dialog);

    QString folder;
    FileKinds kinds;
};

} // namespace quilmora
