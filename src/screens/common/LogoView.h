#pragma once

#include "screens/common/LogoImage.h"

#include <QPixmap>
#include <QWidget>

namespace quilmora
{

/// The application's logo, looked up when the view is first painted.
class LogoView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(LogoView)

public:
    /// `side` and `cornerRadius` in device-independent pixels.
    LogoView(int side, double cornerRadius, QWidget *parent = nullptr, LogoFiles files = {});
    ~LogoView() override = default;

    QSize sizeHint() const override { return {side, side}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int side;
    const double cornerRadius;
    const LogoFiles files;
    QPixmap logo;
};

} // namespace quilmora
