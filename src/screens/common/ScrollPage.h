#pragma once

#include <QScrollArea>

namespace quilmora
{

/// A screen whose content scrolls up and down when the window is too low for it.
class ScrollPage : public QScrollArea
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(ScrollPage)

public:
    explicit ScrollPage(QWidget *parent = nullptr);
    ~ScrollPage() override = default;

protected:
    /// The widget that scrolls.
    QWidget *content() const { return page; }

private:
    QWidget *const page;
};

} // namespace quilmora
