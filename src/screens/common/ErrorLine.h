#pragma once

#include "screens/common/TextLabel.h"

namespace quilmora
{

/// A line in red that is there only while there is something to say. Screen readers announce
/// each message once.
class ErrorLine final : public TextLabel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ErrorLine)

public:
    explicit ErrorLine(int pixelSize, QWidget *parent = nullptr);
    ~ErrorLine() override = default;

    /// Shown as it is; an empty message takes the line away.
    void setMessage(const QString &message);
};

} // namespace quilmora
