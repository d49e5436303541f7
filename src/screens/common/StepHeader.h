#pragma once

#include <QWidget>

namespace quilmora
{

/// The head of a form section: a numbered disc and the section's title.
class StepHeader final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StepHeader)

public:
    StepHeader(int number, QString title, QWidget *parent = nullptr);
    ~StepHeader() override = default;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int number;
    const QString title;
};

} // namespace quilmora
