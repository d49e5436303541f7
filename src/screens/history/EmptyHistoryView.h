#pragma once

#include <QWidget>

namespace quilmora
{

/// What the history screen shows while there are no covers.
class EmptyHistoryView final : public QWidget
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(EmptyHistoryView)

public:
    explicit EmptyHistoryView(QWidget *parent = nullptr);
    ~EmptyHistoryView() override = default;
};

} // namespace quilmora
