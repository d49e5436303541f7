#pragma once

#include "screens/common/FilePanels.h"

namespace quilmora
{

/// The system's own file panels. They open where the last one was closed.
class SystemFilePanels final : public FilePanels
{
public:
    SystemFilePanels();

    std::optional<QString> chooseReferenceImage(QWidget *parent) override;
    std::optional<QString> chooseCoverDestination(QWidget *parent, const QString &proposedName) override;

private:
    QString folder;
};

} // namespace quilmora
