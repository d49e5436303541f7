#include "ProgramOnDesktop.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

/// Two windows side by side on a tiling compositor, each narrower than the usual minimum of the window.
class TiledWindowDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theWindowIsAsNarrowAsItsTile()
    {
        constexpr int tileWidth = 640;
        ProgramOnDesktop first;
        QTRY_VERIFY_WITH_TIMEOUT(first.desktop().bounds(u"开始生成封面"_s).width() > tileWidth, desktopLimit);
        const ProgramOnDesktop second;
        for (const QString &name : {u"帮助说明"_s, u"抖音 / TikTok"_s, u"开始生成封面"_s}) {
            QTRY_VERIFY2_WITH_TIMEOUT(first.desktop().bounds(name).right() < tileWidth, qPrintable(name),
                                      desktopLimit);
        }
    }

private:
    const TemporaryHome m_home;
};

QUILMORA_TEST(TiledWindowDesktopTest, runCoreTest)
#include "TiledWindowDesktopTest.moc"
