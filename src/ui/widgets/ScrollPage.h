#pragma once

#include <QScrollArea>

namespace quilmora {

/// A screen whose content scrolls vertically.
class ScrollPage : public QScrollArea
{
    Q_OBJECT

public:
    explicit ScrollPage(QWidget *parent = nullptr);

protected:
    /// The widget that scrolls.
    QWidget *content() const { return m_page; }

private:
    QWidget *const m_page;
};

} // namespace quilmora
