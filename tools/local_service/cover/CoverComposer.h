#pragma once

#include "local_service/http/PictureRequest.h"

#include <QImage>

/// Composes covers: a scene, the presenter, the title.
namespace quilmora::coverComposer
{

/// The cover that `request` asks for, of exactly its size. The same request gives the same picture. May be
/// called from any thread while a QGuiApplication lives.
QImage compose(const PictureRequest &request);

} // namespace quilmora::coverComposer
