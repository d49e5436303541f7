#pragma once

#include <QPixmap>
#include <QStringList>

namespace quilmora
{

/// Where the logo lies that is built into the program.
QString logoAssetPath();

/// Looks the logo up, anew at each call, and gives it at `side` x `side` device-independent pixels with
/// corners of `cornerRadius`: the file "AppLogo.png" in the first of `resourceFolders` that holds a readable
/// one, else the picture at `assetPath` ("NAME.png"; smaller ones beside it are "NAME-64.png" and
/// "NAME-128.png"), else a symbol.
QPixmap logoPixmap(int side, double cornerRadius, double devicePixelRatio, const QStringList &resourceFolders,
                   const QString &assetPath = logoAssetPath());

/// Where the program's own resource files lie beside the installed program.
QStringList applicationResourceFolders();

/// Where the logo is looked for, see logoPixmap.
struct LogoFiles {
    QStringList resourceFolders = applicationResourceFolders();
    QString assetPath = logoAssetPath();
};

} // namespace quilmora
