#pragma once

#include <QString>

#include <optional>

class QWidget;

namespace quilmora {

/// Modal dialogs in which the user chooses a file. Each gives an absolute path, or nothing on cancellation.
class FileDialogs
{
public:
    FileDialogs() = default;
    Q_DISABLE_COPY_MOVE(FileDialogs)
    virtual ~FileDialogs() = default;

    /// Of a PNG or JPEG file.
    virtual std::optional<QString> chooseReferenceImage(QWidget *parent) = 0;

    /// Where to save a PNG file. The user has agreed to replace an existing one.
    virtual std::optional<QString> chooseCoverDestination(QWidget *parent, const QString &proposedName) = 0;
};

} // namespace quilmora
