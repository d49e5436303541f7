#pragma once

#include <QApplication>
#include <QPaintEvent>
#include <QWidget>

#include <functional>
#include <utility>

namespace quilmora::test {

/// Calls a function for every widget that is about to paint, with what of it is painted.
class PaintWatcher final : public QObject
{
public:
    using Note = std::function<void(QWidget &widget, const QRegion &area)>;

    explicit PaintWatcher(Note note) : m_note{std::move(note)} { qApp->installEventFilter(this); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && watched->isWidgetType()) {
            m_note(*static_cast<QWidget *>(watched), static_cast<QPaintEvent *>(event)->region());
        }
        return false;
    }

private:
    const Note m_note;
};

} // namespace quilmora::test
