#pragma once

#include "ui/widgets/PaintedButton.h"

namespace quilmora {

/// A row that expands and collapses what is below it.
class DisclosureHeader final : public PaintedButton
{
    Q_OBJECT

public:
    DisclosureHeader(QString iconName, const QString &title, bool expanded, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    bool isExpanded() const { return m_expanded; }

Q_SIGNALS:
    void expandedChanged(bool expanded);

protected:
    void paint(QPainter &painter) override;

private:
    const QString m_iconName;
    bool m_expanded;
};

} // namespace quilmora
