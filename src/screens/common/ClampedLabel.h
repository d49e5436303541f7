#pragma once

#include "screens/common/ClampedText.h"
#include "screens/common/Theme.h"

#include <QWidget>

namespace quilmora
{

/// A centred text of at most a few lines, cut off with an ellipsis. As wide as its layout makes it, and as
/// high as its lines are then. Clicks beside the lines go to what lies behind.
class ClampedLabel final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ClampedLabel)

public:
    /// `text` is also what screen readers say, whole.
    ClampedLabel(const QString &text, const QFont &font, ColorRole color, int maximumLines,
                 QWidget *parent = nullptr);
    ~ClampedLabel() override = default;

    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return shown.height(width); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const ClampedText shown;
    const ColorRole color;
};

} // namespace quilmora
