#pragma once

#include "screens/common/PaintedButton.h"

namespace quilmora
{

/// A row that opens and closes what lies below it, wherever on it the user clicks.
class DisclosureHeader final : public PaintedButton
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(DisclosureHeader)

public:
    DisclosureHeader(QString iconName, const QString &title, bool expanded, QWidget *parent = nullptr);
    ~DisclosureHeader() override = default;

    QSize sizeHint() const override;
    bool isExpanded() const { return expanded; }

Q_SIGNALS:
    void expandedChanged(bool expanded);

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const QString iconName;
    bool expanded;
};

} // namespace quilmora
