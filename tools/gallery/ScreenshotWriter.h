#pragma once

#include <QString>

namespace quilmora::gallery {

class SceneResources;
struct ScreenshotPlan;
struct Scene;

/// Plays the scene and writes its pictures at the screen's resolution into `folder`. Ends the program when
/// that fails.
void takePictures(const Scene &scene, const ScreenshotPlan &plan, SceneResources &resources,
                  const QString &folder);

} // namespace quilmora::gallery
