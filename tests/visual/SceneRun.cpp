#include "SceneRun.h"

#include "gallery/SceneResources.h"

#include <QTest>

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

gallery::SceneResources &resources()
{
    static gallery::SceneResources shared;
    return shared;
}

void addVisible(QWidget *widget, QList<QWidget *> &widgets)
{
    widgets.append(widget);
    for (QObject *child : widget->children()) {
        auto *below = qobject_cast<QWidget *>(child);
        if (below != nullptr && below->isVisible() && !below->isWindow()) {
            addVisible(below, widgets);
        }
    }
}

} // namespace

SceneRun::SceneRun(gallery::Scene played) : m_scene{std::move(played)}
{
    m_scene.prepare(stage, resources());
}

void SceneRun::show(QSize size)
{
    stage.dismissOverlay();
    stage.show(size, {});
    if (m_scene.finish) {
        m_scene.finish(stage);
    }
    stage.settle();
}

QList<QWidget *> SceneRun::widgets() const
{
    QList<QWidget *> widgets;
    addVisible(stage.window(), widgets);
    if (QWidget *overlay = stage.overlay(); overlay != nullptr && overlay->isWindow()) {
        addVisible(overlay, widgets);
    }
    return widgets;
}

void SceneRun::addRows(const QList<gallery::Scene> &scenes)
{
    QTest::addColumn<QString>("scene");
    for (const gallery::Scene &listed : scenes) {
        QTest::newRow(qUtf8Printable(listed.name)) << listed.name;
    }
}

gallery::Scene SceneRun::current(const QList<gallery::Scene> &scenes)
{
    const QString name = QString::fromLatin1(QTest::currentDataTag());
    return *std::find_if(scenes.begin(), scenes.end(),
                         [&](const gallery::Scene &listed) { return listed.name == name; });
}

QString SceneRun::describe(const QWidget *widget)
{
    const QPoint place = widget->mapTo(widget->window(), QPoint{});
    return u"%1 \"%2\" at %3, %4 (%5 x %6)"_s
        .arg(QString::fromLatin1(widget->metaObject()->className()), widget->accessibleName().left(20))
        .arg(place.x())
        .arg(place.y())
        .arg(widget->width())
        .arg(widget->height());
}

QString SceneRun::describe(const QRectF &place)
{
    return u"(%1, %2 %3 x %4)"_s.arg(place.x()).arg(place.y()).arg(place.width()).arg(place.height());
}

} // namespace quilmora::test
