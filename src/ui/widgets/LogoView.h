#pragma once

#include <QPixmap>
#include <QStringList>
#include <QWidget>

namespace quilmora {

/// Where the logo is looked for.
struct LogoFiles {
    QStringList resourceFolders = besideProgram();
    QString assetPath = QStringLiteral(":/assets/AppLogo.png");

    /// The folders of resource files of the installed program.
    static QStringList besideProgram();
};

/// Loads the logo at `side` x `side` device-independent pixels with round corners: the first readable file
/// "AppLogo.png" in the resource folders, else the asset ("NAME.png", with smaller ones in "NAME-64.png" and
/// "NAME-128.png"), else a symbol.
QPixmap logoPixmap(int side, double cornerRadius, double devicePixelRatio, const LogoFiles &files = {});

/// The application's logo, loaded when the view is first painted.
class LogoView final : public QWidget
{
    Q_OBJECT

public:
    /// `side` and `cornerRadius` in device-independent pixels.
    LogoView(int side, double cornerRadius, QWidget *parent = nullptr, LogoFiles files = {});

    QSize sizeHint() const override { return {m_side, m_side}; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    const int m_side;
    const double m_cornerRadius;
    const LogoFiles m_files;
    QPixmap m_logo;
};

} // namespace quilmora
