#pragma once

#include <QVBoxLayout>
#include <QWidget>

namespace quilmora
{

/// A numbered part of the form: its head, and below it whatever is added to column().
class FormSection : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(FormSection)

public:
    FormSection(int number, const QString &title, QWidget *parent = nullptr);
    ~FormSection() override = default;

protected:
    QVBoxLayout *column() const { return layoutColumn; }

private:
    QVBoxLayout *const layoutColumn;
};

} // namespace quilmora
