#pragma once

#include <QWidget>

namespace quilmora
{

class Sheet;

/// Darkens a window while a sheet is up, with the sheet's shadow, so that the sheet stands out. Goes with the
/// sheet.
class Scrim final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(Scrim)

public:
    /// Covers the window that the sheet belongs to, which owns it. The sheet has to be in its place.
    explicit Scrim(const Sheet &sheet);
    ~Scrim() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    const QRect placeOfSheet; ///< In the window's coordinates.
};

} // namespace quilmora
