#pragma once

#include "gallery/ApplicationFixture.h"
#include "gallery/Scene.h"

#include <QList>
#include <QRectF>
#include <QSize>
#include <QString>

class QWidget;

namespace quilmora::test {

/// One scene brought about for a test that looks at all that is to be seen of it.
class SceneRun final
{
public:
    explicit SceneRun(gallery::Scene scene);
    Q_DISABLE_COPY_MOVE(SceneRun)
    ~SceneRun() = default;

    /// Gives the window that size, and brings about what the scene ends with.
    void show(QSize size);

    /// The visible widgets of the window, and of the sheet over it if there is one; parents come first.
    QList<QWidget *> widgets() const;

    gallery::ApplicationFixture stage;

    /// A row of test data for each scene.
    static void addRows(const QList<gallery::Scene> &scenes);
    /// The scene of the present row.
    static gallery::Scene current(const QList<gallery::Scene> &scenes);

    /// A widget and a place for messages.
    static QString describe(const QWidget *widget);
    static QString describe(const QRectF &place);

private:
    const gallery::Scene m_scene;
};

} // namespace quilmora::test
