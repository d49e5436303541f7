#include "DesktopInput.h"
#include "ProgramOnDesktop.h"
#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "store/DatabaseManager.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QTest>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Alert and preview lie in the middle of the window and keep the keyboard, whatever manages the windows.
class SheetTour final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();
    void theAlertLiesInTheMiddleAndKeepsTheKeyboard();
    void thePreviewLiesInTheMiddleAndKeepsTheKeyboard();
    void aDoubleClickOnACoverLeavesItsPreviewOpen();

private:
    bool shows(const QString &name) { return program->desktop().isShowing(name); }
    void choose(const QString &tab, const QString &shown);
    void openAlert();
    /// What the given colors cover on the screen lies in the window, as far from its left as from its right
    /// side.
    void compareWithWindow(const QColor &color) const;

    TemporaryHome home;
    std::unique_ptr<ProgramOnDesktop> program;
    QRect window; ///< On the screen, in pixels.
};

namespace
{

QString message()
{
    return u"火山引擎配置已成功保存"_s;
}

/// Black at 92 % over the background of the window.
QColor previewGround()
{
    constexpr int level = 19;
    return {level, level, level};
}

} // namespace

void SheetTour::initTestCase()
{
    QVERIFY(QDir{}.mkpath(coversFolder::path()));
    samplePictures::write(coversFolder::path() + u"/cover.png"_s,
                          samplePictures::png(samplePictures::picture({160, 90})));
    DatabaseManager{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()}.saveConfig(
        u"http://127.0.0.1:9/"_s, u"key"_s, u"model"_s);
    program = std::make_unique<ProgramOnDesktop>();
    // The window may still be moving as it comes.
    const auto clickedField = [this] {
        program->locate();
        desktopInput::click(program->centerOf(u"背景场景"_s));
        return program->desktop().hasFocus(u"背景场景"_s);
    };
    QTRY_VERIFY_WITH_TIMEOUT(!desktopInput::pixelsOf(QColor{ProgramOnDesktop::accent}).isEmpty(),
                             desktopLimit);
    QTRY_VERIFY_WITH_TIMEOUT(clickedField(), desktopLimit);
    window = desktopInput::pixelsOf(QColor{ProgramOnDesktop::windowBackground});
}

void SheetTour::cleanupTestCase()
{
    QCOMPARE(program->end(), QByteArray{});
}

void SheetTour::choose(const QString &tab, const QString &shown)
{
    desktopInput::click(program->centerOf(tab));
    QTRY_VERIFY_WITH_TIMEOUT(shows(shown), desktopLimit);
}

void SheetTour::compareWithWindow(const QColor &color) const
{
    QRect drawn;
    const auto isInTheMiddle = [&] {
        drawn = desktopInput::pixelsOf(color);
        const int left = drawn.left() - window.left();
        const int right = window.right() - drawn.right();
        return !drawn.isEmpty() && window.contains(drawn) && std::abs(left - right) <= 2 * program->scale();
    };
    // The screen may still show what was there before.
    QTRY_VERIFY2_WITH_TIMEOUT(isInTheMiddle(),
                              qPrintable(u"from %1 to %2 of %3 to %4"_s.arg(drawn.left())
                                             .arg(drawn.right())
                                             .arg(window.left())
                                             .arg(window.right())),
                              desktopLimit);
}

void SheetTour::openAlert()
{
    desktopInput::click(program->centerOf(u"保存设置"_s));
    QTRY_VERIFY_WITH_TIMEOUT(shows(message()), desktopLimit);
}

void SheetTour::theAlertLiesInTheMiddleAndKeepsTheKeyboard()
{
    choose(u"功能设置"_s, u"保存设置"_s);
    for (const QString &key : {u"Escape"_s, u"Return"_s, u"Escape"_s, u"Return"_s}) {
        openAlert();
        // Only the button of the alert has the full color meanwhile.
        compareWithWindow(QColor{ProgramOnDesktop::accent});
        desktopInput::click(window.bottomRight() - QPoint{40, 40});
        desktopInput::press(key);
        QTRY_VERIFY_WITH_TIMEOUT(!shows(message()), desktopLimit);
    }
}

void SheetTour::thePreviewLiesInTheMiddleAndKeepsTheKeyboard()
{
    choose(u"已生成列表"_s, u"刷新"_s);
    for (int round = 0; round < 2; ++round) {
        QTRY_VERIFY_WITH_TIMEOUT(shows(u"(历史图片，已自动补录)"_s), desktopLimit);
        desktopInput::click(program->centerOf(u"(历史图片，已自动补录)"_s));
        QTRY_VERIFY_WITH_TIMEOUT(shows(u"关闭预览"_s), desktopLimit);
        compareWithWindow(previewGround());
        desktopInput::click(window.bottomLeft() + QPoint{20, -20});
        desktopInput::press(u"Escape"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!shows(u"关闭预览"_s), desktopLimit);
    }
}

void SheetTour::aDoubleClickOnACoverLeavesItsPreviewOpen()
{
    QTRY_VERIFY_WITH_TIMEOUT(shows(u"(历史图片，已自动补录)"_s), desktopLimit);
    // Where a click closes the preview, to the left of its picture.
    const QPoint besidePicture = QPointF{-30 * program->scale(), 0}.toPoint();
    desktopInput::doubleClick(program->centerOf(u"(历史图片，已自动补录)"_s) + besidePicture);
    QTRY_VERIFY_WITH_TIMEOUT(shows(u"关闭预览"_s), desktopLimit);
    compareWithWindow(previewGround());
    QVERIFY(shows(u"关闭预览"_s));
    desktopInput::press(u"Escape"_s);
    QTRY_VERIFY_WITH_TIMEOUT(!shows(u"关闭预览"_s), desktopLimit);
}

QTEST_GUILESS_MAIN(SheetTour)
#include "SheetTour.moc"
