#pragma once

#include <QWidget>

namespace quilmora {

/// The shadow of an open menu, drawn by a child of the window below it: the menu's own window is no larger
/// than the menu. Deleted with the menu.
class MenuShadow final : public QWidget
{
    Q_OBJECT

public:
    MenuShadow(QWidget &menu, QWidget *window);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QRect menuPlace() const;
    void follow();

    QWidget &m_menu;
};

} // namespace quilmora
