#pragma once

#include <QtGlobal>

class QNetworkReply;

/// No answer and no picture that an answer names may fill the memory: what grows beyond any cover is given
/// up.
namespace quilmora::responseSizeLimit {

/// The most bytes that are read of a body, unpacked. A cover of the largest size, uncompressed, with an alpha
/// and 16 bits a sample, takes 49 million.
constexpr qint64 maximumBytes = qint64{64} * 1024 * 1024;

/// Aborts `reply` as soon as it promises or brings more than that; what is on its way by then still comes. To
/// be called before anything has come.
void apply(QNetworkReply &reply);

/// Whether `reply` was given up so.
bool isExceeded(const QNetworkReply &reply);

} // namespace quilmora::responseSizeLimit
