#pragma once

#include "platform/Timestamp.h"

#include <QString>

#include <optional>

class QImage;
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

/// Lets the user save `image` as a PNG file. The proposed name contains `moment` in local time. A failed
/// write changes nothing and is not reported.
void exportCover(const QImage &image, Timestamp moment, FileDialogs &dialogs, QWidget *parent);

} // namespace quilmora
