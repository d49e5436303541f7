#pragma once

#include <QString>

/// The drawings that stand for a user's own pictures.
namespace quilmora::demoPictures {

/// Writes the portrait of the presenter to a file, in the format that its name says. Needs an application;
/// ends the program when it fails.
void writePresenter(const QString &path);

/// The same for a sample cover.
void writeSampleCover(const QString &path);

} // namespace quilmora::demoPictures
