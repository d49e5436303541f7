#pragma once

#include "local_service/http/PictureRequest.h"

#include <QImage>

/// Composes covers: a backdrop, the presenter, the title.
namespace quilmora::localservice::coverComposer {

/// The cover that `request` asks for, of exactly its size. The same request gives the same picture. May be
/// called from any thread while a QGuiApplication lives.
QImage compose(const PictureRequest &request);

} // namespace quilmora::localservice::coverComposer
