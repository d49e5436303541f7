#pragma once

#include <QWidget>

namespace quilmora {

/// The header of a form section: a numbered disc and the title.
class StepHeader final : public QWidget
{
    Q_OBJECT

public:
    StepHeader(int number, QString title, QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_number;
    const QString m_title;
};

} // namespace quilmora
