#include "gallery/Scene.h"

namespace quilmora::gallery {

QList<Scene> allScenes()
{
    return formScenes() + outcomeScenes() + historyScenes() + otherScenes() + menuScenes();
}

} // namespace quilmora::gallery
