#include "GenerateScreen.h"
#include "screens/common/PictureView.h"
#include "screens/common/StepHeader.h"
#include "screens/common/Theme.h"
#include "screens/generate/SizeCard.h"
#include "support/ScreenCapture.h"

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// Measures and colours of the generate screen, read from renderings.
class SectionLookTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStepDiscsAreGreenWithWhiteNumbers();
    void theFormKeepsItsPaddingsAndGaps();
    void theResultPictureFitsItsBox_data();
    void theResultPictureFitsItsBox();
    void theResultsTitleIsGreenAndTheErrorsRed();
    void theGradientButtonRunsThroughTheThreeColours();
    void theGenerateButtonLooksTheSameWhilePressed();
    void aSchemeThatIsSetRepaintsTheScreen();
};

void SectionLookTest::theStepDiscsAreGreenWithWhiteNumbers()
{
    GenerateScreen screen;
    for (const QString &title : {u"选择尺寸"_s, u"填写封面内容"_s, u"选择表情"_s, u"上传照片"_s}) {
        QWidget *header = screen.find<StepHeader>(title);
        const QImage face = screenCapture::capture(header, 2.0);
        const double middle = header->height() / 2.0;
        QCOMPARE(screenCapture::colorAt(face, {2, middle}), screenCapture::srgb(0.18, 0.72, 0.45));
        QCOMPARE(screenCapture::colorAt(face, {20.5, middle}), screenCapture::srgb(0.18, 0.72, 0.45));
        QCOMPARE(screenCapture::colorAt(face, {22.5, middle}).alpha(), 0);
        QVERIFY(screenCapture::countOf(face, Qt::white, {0, 0, 44, face.height()}, 8) > 8);
    }
}

void SectionLookTest::theFormKeepsItsPaddingsAndGaps()
{
    GenerateScreen screen;
    QWidget *form = screen.find<StepHeader>(u"选择尺寸"_s)->parentWidget()->parentWidget();
    QCOMPARE(form->mapTo(screen.view->widget(), QPoint{0, 0}), QPoint(32, 32));
    QCOMPARE(form->width(), screen.view->widget()->width() - 2 * 32);
    QList<const QWidget *> sections;
    for (const QObject *child : form->children()) {
        if (const auto *section = qobject_cast<const QWidget *>(child);
            section != nullptr && section->isVisible()) {
            sections.append(section);
        }
    }
    QCOMPARE(sections.size(), 6);
    for (qsizetype i = 1; i < sections.size(); ++i) {
        const int gap = sections.at(i)->y() - sections.at(i - 1)->geometry().bottom() - 1;
        // The button has four more above it.
        QCOMPARE(gap, i == 5 ? 28 : 24);
    }
    QCOMPARE(screen.generateButton()->width(), form->width());
    const QWidget *face = screen.find<QAbstractButton>(u"人脸形象（必填）"_s)->parentWidget();
    const QWidget *style =
        screen.find<QAbstractButton>(u"风格参考（上传示例封面，非必填）"_s)->parentWidget();
    QCOMPARE(style->x() - face->geometry().right() - 1, 16);
    QVERIFY(std::abs(style->width() - face->width()) <= 1);
}

void SectionLookTest::theResultPictureFitsItsBox_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::addColumn<QSize>("shown");
    QTest::newRow("16:9") << QSize{320, 180} << QSize{600, 338};
    QTest::newRow("9:16") << QSize{180, 320} << QSize{281, 500};
    QTest::newRow("square and large") << QSize{1200, 1200} << QSize{500, 500};
}

void SectionLookTest::theResultPictureFitsItsBox()
{
    QFETCH(const QSize, picture);
    QFETCH(const QSize, shown);
    GenerateScreen screen{GenerateScreen::answerWithPicture(picture)};
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成成功"_s));
    const auto *view = screen.find<PictureView>(u"生成的封面"_s);
    const QSize size = view->outline().boundingRect().size().toSize();
    QVERIFY2(std::abs(size.width() - shown.width()) <= 1 && std::abs(size.height() - shown.height()) <= 1,
             qPrintable(u"%1 x %2"_s.arg(size.width()).arg(size.height())));
    const int middle = view->mapTo(&screen.window, view->rect().center()).x();
    QVERIFY(std::abs(middle - screen.window.width() / 2) <= 1);
}

void SectionLookTest::theResultsTitleIsGreenAndTheErrorsRed()
{
    GenerateScreen good;
    good.generate(u"标题"_s);
    QTRY_VERIFY(good.shows(u"生成成功"_s));
    const QImage success = screenCapture::capture(good.find(u"生成成功"_s), 3.0);
    QVERIFY(screenCapture::countOf(success, themeColor(ColorRole::greenText)) > 20);
    GenerateScreen bad{GenerateScreen::answerWithText("Bad Gateway")};
    bad.generate(u"标题"_s);
    QTRY_VERIFY(bad.shows(u"生成失败"_s));
    const QImage failure = screenCapture::capture(bad.find(u"生成失败"_s), 3.0);
    QVERIFY(screenCapture::countOf(failure, themeColor(ColorRole::redText)) > 20);
}

void SectionLookTest::theGradientButtonRunsThroughTheThreeColours()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"保存图片"_s));
    auto *button = screen.find<QAbstractButton>(u"返回表单"_s);
    const QImage face = screenCapture::capture(button, 1.0);
    // Above the title, from the first to the last column of the capsule.
    const int row = button->height() / 2 - 12;
    const QColor middle = screenCapture::colorAt(face, {button->width() / 2.0, static_cast<double>(row)});
    QVERIFY2(screenCapture::isClose(middle, screenCapture::srgb(0.45, 0.35, 0.95), 6),
             qPrintable(screenCapture::text(middle)));
    QVERIFY(screenCapture::countOf(face, screenCapture::srgb(0.1, 0.8, 0.85), {}, 8) > 5);
    QVERIFY(screenCapture::countOf(face, screenCapture::srgb(0.95, 0.3, 0.75), {}, 8) > 5);
}

void SectionLookTest::theGenerateButtonLooksTheSameWhilePressed()
{
    GenerateScreen screen;
    typeInto(screen.titleField(), u"标题"_s);
    QAbstractButton *button = screen.generateButton();
    QVERIFY(button->isEnabled());
    const QImage released = screenCapture::capture(button);
    QTest::mousePress(button, Qt::LeftButton);
    QVERIFY(button->isDown());
    QCOMPARE(screenCapture::capture(button), released);
    QTest::mouseRelease(button, Qt::LeftButton, {}, {-10, -10});
    QVERIFY(!button->isDown());
}

void SectionLookTest::aSchemeThatIsSetRepaintsTheScreen()
{
    GenerateScreen screen;
    const auto fill = [&screen] {
        auto *card = screen.find<SizeCard>(u"经典"_s);
        return card == nullptr
                   ? QColor{}
                   : screenCapture::colorAt(screenCapture::capture(card), {6, card->height() / 2.0});
    };
    QCOMPARE(fill(), QColor(0xFFFFFFU));
    Theme::current().setScheme(ColorScheme::dark);
    QCOMPARE(fill(), QColor(0x1E1E1EU));
    Theme::current().setScheme(ColorScheme::light);
    QCOMPARE(fill(), QColor(0xFFFFFFU));
}

int main(int argc, char *argv[])
{
    return runScreenTest<SectionLookTest>(argc, argv);
}

#include "SectionLookTest.moc"
