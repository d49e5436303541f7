#pragma once

#include <QWidget>

namespace quilmora
{

/// The shadow of an open menu on the window that it belongs to. It lies in that window, so that the menu's
/// own window is no larger than what is to be seen and clicked. Deletes itself when the menu closes.
class MenuShadow final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(MenuShadow)

public:
    MenuShadow(QWidget &menu, QWidget *window);
    ~MenuShadow() override = default;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect menuPlace() const;
    void follow();

    QWidget &menu;
};

} // namespace quilmora
