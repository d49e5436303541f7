#pragma once

#include <QStringView>

#include <memory>

namespace quilmora
{
class Scene;

/// The scenes there are, and the words that call for them.
namespace sceneCatalogue
{

/// The scene that most words of `text` call for, the first named among equals. Null when there is none.
std::unique_ptr<Scene> make(QStringView text);

/// The scene for texts that call for no other; `hue` from 0 to 359 sets its colour.
std::unique_ptr<Scene> makeCalm(int hue);

} // namespace sceneCatalogue
} // namespace quilmora
