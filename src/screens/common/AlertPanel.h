#pragma once

#include "screens/common/Sheet.h"

namespace quilmora
{

/// A short message over the window, with one button that closes it, as do Return and Escape. Modal to its
/// window; deletes itself when it is closed.
class AlertPanel final : public Sheet
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(AlertPanel)

public:
    /// `parent` is anything in the window that the alert belongs to.
    AlertPanel(const QString &title, const QString &message, const QString &buttonTitle, QWidget *parent);
    ~AlertPanel() override = default;
};

} // namespace quilmora
