#pragma once

#include "screens/common/TextLabel.h"

namespace quilmora
{

/// The title of a screen. The middle of its characters, not of its line, is that of the label: at this size
/// the two are pixels apart, which shows beside a button.
class PageTitle final : public TextLabel
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(PageTitle)

public:
    explicit PageTitle(const QString &text, QWidget *parent = nullptr);
    ~PageTitle() override = default;

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace quilmora
