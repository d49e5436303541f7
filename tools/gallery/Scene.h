#pragma once

#include <QList>
#include <QString>

#include <functional>

namespace quilmora::gallery {

class SceneResources;
class ApplicationFixture;

/// One state of one screen, and how a user comes to it.
struct Scene {
    enum class Sizes {
        common,  ///< As the application opens its window, and as small as that can be.
        large,   ///< A large window too.
        scrolls, ///< A large window too, and the whole page at once.
    };

    QString name;    ///< Begins the names of its pictures.
    QString caption; ///< For people.
    Sizes sizes = Sizes::common;
    QString lookAt; ///< Control to be scrolled into sight; empty for the start of the page.

    /// Opens the window and works it up to the state.
    std::function<void(ApplicationFixture &, SceneResources &)> prepare;
    /// What is done last, again for every size of the window: opening a sheet. May be empty.
    std::function<void(ApplicationFixture &)> finish = {};
};

/// All scenes, in the order in which a user may meet them.
QList<Scene> allScenes();

QList<Scene> formScenes();
QList<Scene> outcomeScenes();
QList<Scene> historyScenes();
QList<Scene> otherScenes();
QList<Scene> menuScenes();

} // namespace quilmora::gallery
