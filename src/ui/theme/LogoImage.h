#pragma once

#include <QPixmap>
#include <QStringList>

namespace quilmora {

/// The logo in the resources of the program.
QString logoAssetPath();

/// Loads the logo at `side` x `side` device-independent pixels with round corners: the first readable file
/// "AppLogo.png" in `resourceFolders`, else the picture at `assetPath` ("NAME.png", with smaller ones in
/// "NAME-64.png" and "NAME-128.png"), else a symbol.
QPixmap logoPixmap(int side, double cornerRadius, double devicePixelRatio, const QStringList &resourceFolders,
                   const QString &assetPath = logoAssetPath());

/// The folders of resource files beside the installed program.
QStringList applicationResourceFolders();

/// See logoPixmap.
struct LogoFiles {
    QStringList resourceFolders = applicationResourceFolders();
    QString assetPath = logoAssetPath();
};

} // namespace quilmora
