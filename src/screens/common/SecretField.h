#pragma once

#include <QLineEdit>

namespace quilmora
{

/// A one-line field that shows a dot for every character. The dots are drawn, not written: a font's own
/// bullet is a speck in one font and a boulder in the next.
class SecretField final : public QLineEdit
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(SecretField)

public:
    explicit SecretField(QWidget *parent = nullptr);
    ~SecretField() override = default;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    /// Where texts may be drawn, in this widget's coordinates.
    QRect textArea() const;
};

} // namespace quilmora
