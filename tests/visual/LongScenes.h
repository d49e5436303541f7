#pragma once

#include "gallery/Scene.h"

namespace quilmora::test {

/// Screens with texts that are far longer than usual, Chinese and Latin, with and without places to break.
QList<gallery::Scene> longScenes();

} // namespace quilmora::test
