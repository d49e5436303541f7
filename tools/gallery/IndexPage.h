#pragma once

#include <QString>

namespace quilmora::gallery
{

struct PicturePlan;

/// The page that shows all pictures of the plan, as HTML. It is meant to lie in their folder.
QString indexPage(const PicturePlan &plan);

} // namespace quilmora::gallery
