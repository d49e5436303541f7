#pragma once

#include <QString>

namespace quilmora::gallery
{

class Backstage;
struct PicturePlan;
struct Scene;

/// Plays the scene and writes its pictures at the screen's resolution into `folder`. Ends the program when
/// that fails.
void takePictures(const Scene &scene, const PicturePlan &plan, Backstage &backstage, const QString &folder);

} // namespace quilmora::gallery
