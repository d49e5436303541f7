#pragma once

class QTemporaryDir;

namespace quilmora::bench {

/// The click on the button with a photo of 48 megapixels, against encoding it. Puts the photo into `folder`,
/// as the others do with theirs.
void benchLoadingBeforeEncoding(const QTemporaryDir &folder);

/// Choosing a photo, against decoding it once.
void benchPickingAPhoto(const QTemporaryDir &folder);

/// Painting the form with a photo, against without.
void benchPaintingTheForm(const QTemporaryDir &folder);

/// Processor time of a window that nobody touches.
void benchIdle();

} // namespace quilmora::bench
