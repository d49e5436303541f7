#pragma once

#include "screens/generate/FlowLayout.h"

#include <QLayout>

#include <memory>
#include <vector>

namespace quilmora {

/// A QLayout that arranges its items by a FlowLayout, each at its size hint.
class FlowLayoutHost final : public QLayout
{
    Q_OBJECT

public:
    explicit FlowLayoutHost(QWidget *parent, FlowLayout core = {});

    void addItem(QLayoutItem *item) override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    int count() const override;

    QSize sizeHint() const override;
    QSize minimumSize() const override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    Qt::Orientations expandingDirections() const override { return {}; }
    void setGeometry(const QRect &bounds) override;

private:
    QList<QSizeF> idealSizes() const;

    const FlowLayout m_core;
    std::vector<std::unique_ptr<QLayoutItem>> m_items;
};

} // namespace quilmora
