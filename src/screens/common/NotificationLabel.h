#pragma once

#include "screens/common/TextLabel.h"

namespace quilmora
{

/// A text that screen readers announce when it is shown, followed by its accessible description.
class NotificationLabel final : public TextLabel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(NotificationLabel)

public:
    NotificationLabel(const QString &text, const QString &description, Style style,
                      QWidget *parent = nullptr);
    ~NotificationLabel() override = default;
};

} // namespace quilmora
