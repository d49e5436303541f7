#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace quilmora
{

/// The panels in which the user names a file. Each is modal and gives an absolute path, or nothing when the
/// user cancels.
class FilePanels
{
public:
    FilePanels() = default;
    Q_DISABLE_COPY_MOVE(FilePanels)
    virtual ~FilePanels() = default;

    /// Picks one PNG or JPEG file.
    virtual std::optional<QString> chooseReferenceImage(QWidget *parent) = 0;

    /// Asks where to save a PNG file; replacing an existing one has been confirmed.
    virtual std::optional<QString> chooseCoverDestination(QWidget *parent, const QString &proposedName) = 0;
};

} // namespace quilmora
