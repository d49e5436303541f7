#pragma once

#include <QString>
#include <QStyleOption>

class QPainter;

namespace quilmora
{

/// One line of a menu: a command, or the line between two groups of them. Lives no longer than the option
/// that it is made of.
class MenuItem final
{
public:
    explicit MenuItem(const QStyleOptionMenuItem &option);

    /// The room that it takes. The menu itself adds that of the widest key.
    QSize size() const;
    void draw(QPainter &painter) const;

private:
    bool isSeparator() const { return option.menuItemType == QStyleOptionMenuItem::Separator; }
    int roomBefore() const;
    int roomBehind() const;
    void drawSeparator(QPainter &painter) const;
    void drawCommand(QPainter &painter) const;

    const QStyleOptionMenuItem &option;
    QString title; ///< As it is shown, without the letter that selects it by keyboard.
    QString key;
};

} // namespace quilmora
