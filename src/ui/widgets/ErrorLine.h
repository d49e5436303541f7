#pragma once

#include "ui/widgets/TextLabel.h"

namespace quilmora {

/// A red line that is visible while it has a message. Screen readers announce each message once.
class ErrorLine final : public TextLabel
{
    Q_OBJECT

public:
    explicit ErrorLine(int pixelSize, QWidget *parent = nullptr);

    /// An empty message hides the line.
    void setMessage(const QString &message);
};

} // namespace quilmora
