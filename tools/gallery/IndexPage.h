#pragma once

#include <QString>

namespace quilmora::gallery {

struct ScreenshotPlan;

/// The page that shows all pictures of the plan, as HTML. It is meant to lie in their folder.
QString indexPage(const ScreenshotPlan &plan);

} // namespace quilmora::gallery
