#pragma once

#include "ui/widgets/TextLabel.h"

namespace quilmora {

/// The title of a screen. Its characters, not its line, are centered vertically: at this size the two are
/// pixels apart, which is visible beside a button.
class PageTitle final : public TextLabel
{
    Q_OBJECT

public:
    explicit PageTitle(const QString &text, QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
