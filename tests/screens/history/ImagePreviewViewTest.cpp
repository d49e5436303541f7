#include "screens/history/ImagePreviewView.h"

#include "screens/common/ClampedLabel.h"
#include "screens/common/Fonts.h"
#include "screens/common/GradientButton.h"
#include "screens/common/PictureView.h"
#include "screens/common/Theme.h"
#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFilePanels.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QLabel>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QDateTime creation{{2025, 3, 5}, {9, 7, 3}};

} // namespace

class ImagePreviewViewTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void everyPieceHasItsName();
    void theViewIsOnADarkBackdrop();
    void aRemovedFileLeavesOutThePictureAndSavesNothing();
    void anEmptyModelShowsADash();
    void theProposedNameHoldsTheTimeOfCreation();
    void aPictureIsAsLargeAsItsBoxAllows_data();
    void aPictureIsAsLargeAsItsBoxAllows();
    void aLongPromptLeavesLessHeightToThePicture();
    void aPromptLongerThanThreeLinesIsCutOff();
    void theItemsAreEighteenApart();
    void aClickOnTheMarginClosesAndOneOnContentDoesNot_data();
    void aClickOnTheMarginClosesAndOneOnContentDoesNot();
    void aPressThatIsLetGoElsewhereDoesNotClose();
    void clicksBesideTheLinesOfThePromptClose();
    void theSymbolAndTheButtonClose();
    void savingWritesAPngOfThePicture();
    void savingReadsTheFileAnew();
    void cancellingThePanelLeavesNoFileAndThePreviewOpen();
    void aFailedWriteIsSilent();
    void theButtonsKeepTheirOwnShadow();

private:
    /// Shows the preview of a picture of that size; none for an empty size.
    void open(QSize size, const QString &prompt = u"提示词"_s, const QString &modelID = u"模型"_s);
    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return accessible::find<Widget>(view.get(), name);
    }
    QWidget *picture() { return find(u"封面"_s); }
    QRect placeOf(QWidget *widget) { return {widget->mapTo(view.get(), QPoint{}), widget->size()}; }
    void clickAt(QPoint place);

    std::unique_ptr<TemporaryHome> home;
    std::unique_ptr<ScriptedFilePanels> panels;
    std::unique_ptr<ImagePreviewView> view;
    QString file;
    int closed = 0;
};

void ImagePreviewViewTest::init()
{
    home = std::make_unique<TemporaryHome>();
    panels = std::make_unique<ScriptedFilePanels>();
    file = home->path(u"cover.png"_s);
    closed = 0;
}

void ImagePreviewViewTest::cleanup()
{
    view.reset();
    home.reset();
}

void ImagePreviewViewTest::open(QSize size, const QString &prompt, const QString &modelID)
{
    if (!size.isEmpty()) {
        samplePictures::write(file, samplePictures::png(samplePictures::picture(size)));
    }
    const HistoryRecord record{1, prompt, u"~/cover.png"_s,
                               fromSecondsSince1970(static_cast<double>(creation.toSecsSinceEpoch())),
                               modelID};
    view = std::make_unique<ImagePreviewView>(
        record, [this] { ++closed; }, *panels);
    showWindow(*view, {900, 760});
}

void ImagePreviewViewTest::clickAt(QPoint place)
{
    QWidget *hit = view->childAt(place);
    QWidget *target = hit != nullptr ? hit : view.get();
    QTest::mouseClick(target, Qt::LeftButton, {}, target->mapFrom(view.get(), place));
}

void ImagePreviewViewTest::everyPieceHasItsName()
{
    open({160, 90});
    QStringList names = accessible::names(view.get());
    names.sort();
    QStringList expected{u"关闭"_s,     u"封面"_s,    u"提示词"_s, u"模型 · 2025-03-05 09:07"_s,
                         u"保存图片"_s, u"关闭预览"_s};
    expected.sort();
    QCOMPARE(names, expected);
    QCOMPARE(accessible::focusOrder(view.get()), (QStringList{u"关闭"_s, u"保存图片"_s, u"关闭预览"_s}));
}

void ImagePreviewViewTest::theViewIsOnADarkBackdrop()
{
    open({160, 90});
    QCOMPARE(view->sizeHint(), QSize(900, 760));
    const QImage image = screenCapture::capture(view.get());
    const QColor window = themeColor(ColorRole::windowBackground);
    const QColor seen{qRound(window.red() * 0.08), qRound(window.green() * 0.08),
                      qRound(window.blue() * 0.08)};
    QVERIFY(screenCapture::isClose(screenCapture::colorAt(image, {5, 380}), seen));
    QVERIFY(screenCapture::isClose(screenCapture::colorAt(image, {450, 5}), seen));
}

void ImagePreviewViewTest::aRemovedFileLeavesOutThePictureAndSavesNothing()
{
    open({});
    QVERIFY(picture() == nullptr);
    QVERIFY(find(u"关闭"_s) != nullptr);
    QVERIFY(find(u"提示词"_s) != nullptr);
    QVERIFY(find(u"模型 · 2025-03-05 09:07"_s) != nullptr);
    QVERIFY(find(u"关闭预览"_s) != nullptr);
    panels->answerDestination(home->path(u"out.png"_s));
    click(find(u"保存图片"_s));
    QCOMPARE(panels->proposedNames(), QStringList{});
    QVERIFY(!QFile::exists(home->path(u"out.png"_s)));
    QCOMPARE(closed, 0);
    // Nothing stands in the picture's place: what is left lies together in the middle.
    const int top = placeOf(find(u"关闭"_s)).top();
    const int bottom = placeOf(find(u"关闭预览"_s)).bottom();
    QVERIFY(std::abs((top - 0) - (759 - bottom)) <= 2);
    QVERIFY(bottom - top < 200);
}

void ImagePreviewViewTest::anEmptyModelShowsADash()
{
    open({16, 9}, u"提示词"_s, {});
    QVERIFY(find(u"— · 2025-03-05 09:07"_s) != nullptr);
}

void ImagePreviewViewTest::theProposedNameHoldsTheTimeOfCreation()
{
    open({16, 9});
    click(find(u"保存图片"_s));
    click(find(u"保存图片"_s));
    QCOMPARE(panels->proposedNames(),
             (QStringList{u"Quilmora_20250305_090703.png"_s, u"Quilmora_20250305_090703.png"_s}));
}

void ImagePreviewViewTest::aPictureIsAsLargeAsItsBoxAllows_data()
{
    QTest::addColumn<QSize>("size");
    QTest::addColumn<QSize>("shown");
    QTest::newRow("16:9") << QSize{2848, 1600} << QSize{800, 449};
    QTest::newRow("small 16:9") << QSize{32, 18} << QSize{800, 450};
    QTest::newRow("4:3") << QSize{2304, 1728} << QSize{720, 540};
    QTest::newRow("wide") << QSize{4000, 100} << QSize{800, 20};
}

void ImagePreviewViewTest::aPictureIsAsLargeAsItsBoxAllows()
{
    QFETCH(const QSize, size);
    QFETCH(const QSize, shown);
    open(size);
    const QSize seen = picture()->size();
    // A sheet of fixed height may leave a little less than the box's height.
    if (shown.height() < 500) {
        QCOMPARE(seen, shown);
    } else {
        QVERIFY(seen.height() <= 540 && seen.height() >= 500);
        QVERIFY(std::abs(seen.width() - seen.height() * size.width() / size.height()) <= 1);
    }
    QVERIFY(view->rect().adjusted(40, 40, -40, -40).contains(placeOf(picture())));
}

void ImagePreviewViewTest::aLongPromptLeavesLessHeightToThePicture()
{
    open({900, 1600}, u"一行"_s);
    const int tall = picture()->height();
    view.reset();
    open({900, 1600}, u"一\n二\n三\n四"_s);
    const int lower = picture()->height();
    QVERIFY(lower < tall);
    QCOMPARE(tall - lower, 2 * ClampedText::heightOfLines(systemFont(14), 1));
    QVERIFY(placeOf(find(u"关闭"_s)).top() >= 40);
    QVERIFY(placeOf(find(u"关闭预览"_s)).bottom() < 720);
    QVERIFY(std::abs(picture()->width() - lower * 900 / 1600) <= 1);
}

void ImagePreviewViewTest::aPromptLongerThanThreeLinesIsCutOff()
{
    const QString prompt = u"字"_s.repeated(1000);
    open({16, 9}, prompt);
    auto *label = find<ClampedLabel>(prompt);
    QCOMPARE(label->height(), ClampedText::heightOfLines(systemFont(14), 3));
    QCOMPARE(label->width(), 820 - 2 * 24);
    const QStringList lines = ClampedText{prompt, systemFont(14), 3, Qt::AlignHCenter}.lines(label->width());
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(2).endsWith(u'…'));
}

void ImagePreviewViewTest::theItemsAreEighteenApart()
{
    open({2848, 1600});
    const QRect close = placeOf(find(u"关闭"_s));
    const QRect prompt = placeOf(find(u"提示词"_s));
    const QRect meta = placeOf(find(u"模型 · 2025-03-05 09:07"_s));
    const QRect save = placeOf(find(u"保存图片"_s));
    const QRect closeButton = placeOf(find(u"关闭预览"_s));
    const QRect image = placeOf(picture());
    QCOMPARE(image.top() - close.bottom() - 1, 18);
    QCOMPARE(prompt.top() - image.bottom() - 1, 18);
    QCOMPARE(meta.top() - prompt.bottom() - 1, 6);
    QCOMPARE(save.top() - meta.bottom() - 1, 18 + 6);
    QCOMPARE(closeButton.left() - save.right() - 1, 14);
    QCOMPARE(close.right() + 1, 900 - 40 - 8);
    QVERIFY(std::abs(image.center().x() - 450) <= 1);
    QVERIFY(std::abs((save.left() + closeButton.right()) / 2 - 450) <= 1);
}

void ImagePreviewViewTest::aClickOnTheMarginClosesAndOneOnContentDoesNot_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("closes");
    QTest::newRow("the margin") << QString{} << 1;
    QTest::newRow("the picture") << u"封面"_s << 0;
    QTest::newRow("the prompt") << u"提示词"_s << 0;
    QTest::newRow("the meta line") << u"模型 · 2025-03-05 09:07"_s << 0;
}

void ImagePreviewViewTest::aClickOnTheMarginClosesAndOneOnContentDoesNot()
{
    QFETCH(const QString, name);
    QFETCH(const int, closes);
    open({2848, 1600});
    clickAt(name.isEmpty() ? QPoint{12, 400} : placeOf(find(name)).center());
    QCOMPARE(closed, closes);
}

void ImagePreviewViewTest::aPressThatIsLetGoElsewhereDoesNotClose()
{
    open({2848, 1600});
    const QPoint onPicture = placeOf(picture()).center();
    QTest::mousePress(view.get(), Qt::LeftButton, {}, {12, 400});
    QTest::mouseRelease(view.get(), Qt::LeftButton, {}, onPicture);
    QTest::mousePress(view.get(), Qt::RightButton, {}, {12, 400});
    QTest::mouseRelease(view.get(), Qt::RightButton, {}, {12, 400});
    QTest::mouseRelease(view.get(), Qt::LeftButton, {}, {12, 400});
    QCOMPARE(closed, 0);
}

void ImagePreviewViewTest::clicksBesideTheLinesOfThePromptClose()
{
    open({16, 9}, u"短"_s);
    const QRect prompt = placeOf(find(u"短"_s));
    clickAt(prompt.center());
    QCOMPARE(closed, 0);
    clickAt(prompt.center() + QPoint{40, 0});
    QCOMPARE(closed, 1);
    clickAt(prompt.center() - QPoint{40, 0});
    QCOMPARE(closed, 2);
}

void ImagePreviewViewTest::theSymbolAndTheButtonClose()
{
    open({16, 9});
    click(find(u"关闭"_s));
    QCOMPARE(closed, 1);
    click(find(u"关闭预览"_s));
    QCOMPARE(closed, 2);
}

void ImagePreviewViewTest::savingWritesAPngOfThePicture()
{
    open({64, 36});
    const QString out = home->path(u"导出 '封面'.png"_s);
    samplePictures::write(out, "an older file");
    panels->answerDestination(out);
    click(find(u"保存图片"_s));
    QImage written;
    QVERIFY(written.load(out, "png"));
    QCOMPARE(written.convertToFormat(QImage::Format_RGB32),
             samplePictures::inSrgb(samplePictures::picture({64, 36})));
    QCOMPARE(closed, 0);
    QVERIFY(QFile::exists(file));
}

void ImagePreviewViewTest::savingReadsTheFileAnew()
{
    open({64, 36});
    samplePictures::write(file, samplePictures::png(samplePictures::picture({32, 32}, Qt::green)));
    panels->answerDestination(home->path(u"out.png"_s));
    click(find(u"保存图片"_s));
    QCOMPARE(QImage{home->path(u"out.png"_s)}.size(), QSize(32, 32));
}

void ImagePreviewViewTest::cancellingThePanelLeavesNoFileAndThePreviewOpen()
{
    open({64, 36});
    const QStringList before = QDir{home->path()}.entryList(QDir::Files);
    panels->answerDestination(std::nullopt);
    click(find(u"保存图片"_s));
    QCOMPARE(panels->proposedNames().size(), 1);
    QCOMPARE(QDir{home->path()}.entryList(QDir::Files), before);
    QCOMPARE(closed, 0);
    QVERIFY(view->isVisible());
}

void ImagePreviewViewTest::aFailedWriteIsSilent()
{
    open({64, 36});
    panels->answerDestination(home->path(u"no/such/folder/out.png"_s));
    click(find(u"保存图片"_s));
    QCOMPARE(panels->proposedNames().size(), 1);
    QCOMPARE(closed, 0);
    QVERIFY(QApplication::activeModalWidget() == nullptr);
}

void ImagePreviewViewTest::theButtonsKeepTheirOwnShadow()
{
    open({16, 9});
    for (const QString &name : {u"保存图片"_s, u"关闭预览"_s}) {
        const Shadow shadow = find<GradientButton>(name)->shadow();
        QVERIFY(std::abs(shadow.color.alphaF() - 0.30F) < 0.01F);
        QCOMPARE(shadow.blurRadius, 6.0);
        QCOMPARE(shadow.offset, QPointF(0, 3));
    }
    const Shadow shadow = find<PictureView>(u"封面"_s)->shadow();
    QVERIFY(screenCapture::isClose(shadow.color, screenCapture::srgb(0, 0, 0, 0.6)));
    QCOMPARE(shadow.blurRadius, 14.0);
    QCOMPARE(shadow.offset, QPointF(0, 6));
    // It is really drawn, on the sheet below the picture.
    const QImage image = screenCapture::capture(view.get());
    const QRect place = placeOf(picture());
    const QColor below = screenCapture::colorAt(image, {place.center().x() * 1.0, place.bottom() + 4.0});
    const QColor bare = screenCapture::colorAt(image, {5, 380});
    QVERIFY2(below.red() < bare.red(), qPrintable(screenCapture::text(below)));
}

int main(int argc, char **argv)
{
    return runScreenTest<ImagePreviewViewTest>(argc, argv);
}
#include "ImagePreviewViewTest.moc"
