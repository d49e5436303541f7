#pragma once

#include "imaging/ImageCodec.h"

/// The largest pictures that are decoded, to bound the memory.
namespace quilmora::pictureLimits {

/// Of the user's own files: photos and covers. Enough for a photo of 200 megapixels.
inline constexpr imageCodec::Limits file{qint64{256} << 20, qint64{512} << 20};

/// Of a picture in a response: more than ten times the largest cover that is asked for.
inline constexpr imageCodec::Limits response{qint64{64} << 20};

} // namespace quilmora::pictureLimits
