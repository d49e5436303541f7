#pragma once

#include <QFileIconProvider>

namespace quilmora
{

/// Names the kinds of files in Qt's own file panels in Chinese; its catalogue of kinds speaks the
/// language of the desktop.
class FileKinds final : public QFileIconProvider
{
public:
    QString type(const QFileInfo &file) const override;
};

} // namespace quilmora
