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
    /// Shows the panel and takes it away again. Nothing when the user cancels, or when `asker`, and with it
    /// perhaps the window and the panel, goes while it is open.
    std::optional<QString> run(QFileDialog *dialog, const QWidget *asker);

    QString folder;
    FileKinds kinds;
};

} // namespace quilmora
