#pragma once

#include "ui/theme/Theme.h"
#include "ui/widgets/ElidedText.h"

#include <QWidget>

namespace quilmora {

/// An elided text of a few centered lines. Mouse events beside the lines go to the parent.
class ElidedLabel final : public QWidget
{
    Q_OBJECT

public:
    /// Screen readers read the whole text.
    ElidedLabel(const QString &text, const QFont &font, ColorRole color, int maximumLines,
                QWidget *parent = nullptr);

    QSize sizeHint() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override { return m_text.height(width); }

protected:
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const ElidedText m_text;
    const ColorRole m_color;
};

} // namespace quilmora
