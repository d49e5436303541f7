#include "ProgramOnDesktop.h"
#include "platform/Files.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDir>

#include <cmath>
#include <memory>

using namespace quilmora;
using namespace quilmora::test;

namespace {

QString message() { return u"火山引擎配置已成功保存"_s; }

/// Black at 92 % over the background of the window.
QColor previewGround()
{
    constexpr int level = 19;
    return {level, level, level};
}

} // namespace

/// Alert and preview lie in the middle of the window and keep the keyboard, whatever manages the windows.
class SheetDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir{}.mkpath(coversFolder::path()));
        samplePictures::write(coversFolder::path() + u"/cover.png"_s,
                              samplePictures::png(samplePictures::picture({160, 90})));
        DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
            u"http://127.0.0.1:9/"_s, u"key"_s, u"model"_s);
        m_program = std::make_unique<ProgramOnDesktop>();
        m_program->locate();
        m_window = desktopInput::pixelsOf(QColor{ProgramOnDesktop::windowBackground});
    }

    void cleanupTestCase() { QCOMPARE(m_program->end(), QByteArray{}); }

    void theAlertLiesInTheMiddleAndKeepsTheKeyboard()
    {
        choose(u"功能设置"_s, u"保存设置"_s);
        for (const QString &key : {u"Escape"_s, u"Return"_s, u"Escape"_s, u"Return"_s}) {
            openAlert();
            // Only the button of the alert has the full color meanwhile.
            compareWithWindow(QColor{ProgramOnDesktop::accent});
            desktopInput::click(m_window.bottomRight() - QPoint{40, 40});
            desktopInput::press(key);
            QTRY_VERIFY_WITH_TIMEOUT(!shows(message()), desktopLimit);
        }
    }

    void thePreviewLiesInTheMiddleAndKeepsTheKeyboard()
    {
        choose(u"已生成列表"_s, u"刷新"_s);
        for (int round = 0; round < 2; ++round) {
            QTRY_VERIFY_WITH_TIMEOUT(shows(u"(历史图片，已自动补录)"_s), desktopLimit);
            desktopInput::click(m_program->centerOf(u"(历史图片，已自动补录)"_s));
            QTRY_VERIFY_WITH_TIMEOUT(shows(u"关闭预览"_s), desktopLimit);
            compareWithWindow(previewGround());
            desktopInput::click(m_window.bottomLeft() + QPoint{20, -20});
            desktopInput::press(u"Escape"_s);
            QTRY_VERIFY_WITH_TIMEOUT(!shows(u"关闭预览"_s), desktopLimit);
        }
    }

    void aDoubleClickOnACoverLeavesItsPreviewOpen()
    {
        QTRY_VERIFY_WITH_TIMEOUT(shows(u"(历史图片，已自动补录)"_s), desktopLimit);
        // Where a click closes the preview, to the left of its picture.
        const QPoint besidePicture = QPointF{-30 * m_program->scale(), 0}.toPoint();
        desktopInput::doubleClick(m_program->centerOf(u"(历史图片，已自动补录)"_s) + besidePicture);
        QTRY_VERIFY_WITH_TIMEOUT(shows(u"关闭预览"_s), desktopLimit);
        compareWithWindow(previewGround());
        QVERIFY(shows(u"关闭预览"_s));
        desktopInput::press(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!shows(u"关闭预览"_s), desktopLimit);
    }

private:
    bool shows(const QString &name) { return m_program->desktop().isShowing(name); }

    void choose(const QString &tab, const QString &shown)
    {
        desktopInput::click(m_program->centerOf(tab));
        QTRY_VERIFY_WITH_TIMEOUT(shows(shown), desktopLimit);
    }

    void openAlert()
    {
        desktopInput::click(m_program->centerOf(u"保存设置"_s));
        QTRY_VERIFY_WITH_TIMEOUT(shows(message()), desktopLimit);
    }

    /// What the given colors cover on the screen lies in the window, as far from its left as from its right
    /// side.
    void compareWithWindow(const QColor &color) const
    {
        QRect drawn;
        const auto isInTheMiddle = [&] {
            drawn = desktopInput::pixelsOf(color);
            const int left = drawn.left() - m_window.left();
            const int right = m_window.right() - drawn.right();
            return !drawn.isEmpty() && m_window.contains(drawn) &&
                   std::abs(left - right) <= 2 * m_program->scale();
        };
        // The screen may still show what was there before.
        QTRY_VERIFY2_WITH_TIMEOUT(isInTheMiddle(),
                                  qPrintable(u"from %1 to %2 of %3 to %4"_s.arg(drawn.left())
                                                 .arg(drawn.right())
                                                 .arg(m_window.left())
                                                 .arg(m_window.right())),
                                  desktopLimit);
    }

    TemporaryHome m_home;
    std::unique_ptr<ProgramOnDesktop> m_program;
    QRect m_window; ///< On the screen, in pixels.
};

QUILMORA_TEST(SheetDesktopTest, runCoreTest)
#include "SheetDesktopTest.moc"
