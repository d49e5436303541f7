#pragma once

#include "ui/theme/LogoImage.h"

#include <QPixmap>
#include <QWidget>

namespace quilmora {

/// The application's logo, loaded when the view is first painted.
class LogoView final : public QWidget
{
    Q_OBJECT

public:
    /// `side` and `cornerRadius` in device-independent pixels.
    LogoView(int side, double cornerRadius, QWidget *parent = nullptr, LogoFiles files = {});

    QSize sizeHint() const override { return {m_side, m_side}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_side;
    const double m_cornerRadius;
    const LogoFiles m_files;
    QPixmap m_logo;
};

} // namespace quilmora
