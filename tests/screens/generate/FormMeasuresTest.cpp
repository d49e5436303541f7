#include "GenerateScreen.h"
#include "model/CoverSize.h"
#include "model/Emotion.h"
#include "screens/common/StepHeader.h"
#include "screens/common/Theme.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QLabel>

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

namespace
{

QString advancedLabel()
{
    return u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s;
}

/// How thick the line along the left edge is, halfway down, in device-independent pixels.
double leftLineWidth(QWidget *piece, const std::function<bool(const QColor &)> &isLine)
{
    constexpr int ratio = 8;
    const QImage face = screenCapture::capture(piece, ratio);
    int width = 0;
    while (isLine(face.pixelColor(width, face.height() / 2))) {
        ++width;
    }
    return static_cast<double>(width) / ratio;
}

/// A colour laid over another one.
QColor over(const QColor &upper, const QColor &lower)
{
    const auto mixed = [&](float above, float below) {
        return above * upper.alphaF() + below * (1 - upper.alphaF());
    };
    return srgb(mixed(upper.redF(), lower.redF()), mixed(upper.greenF(), lower.greenF()),
                mixed(upper.blueF(), lower.blueF()));
}

} // namespace

/// The numbers of the form, read from what is drawn.
class FormMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { screen = std::make_unique<GenerateScreen>(); }
    void cleanup() { screen.reset(); }
    void page();
    void stepHeaders();
    void sizeCardTexts();
    void sizeCardPlaces();
    void sizeCardOutlines();
    void textFields();
    void expressionChipTexts();
    void expressionChipOutlines();
    void customExpressionField();
    void emptyUploadFace();
    void uploadedPicture_data();
    void uploadedPicture();
    void uploadErrorAndRemoval();
    void advancedHeader();
    void advancedEditor();
    void generateButtonText();
    void generateButtonShape();

private:
    Drawing drawing() { return Drawing{screen->view->widget()}; }
    QWidget *piece(const QString &name) { return screen->find(name); }
    QAbstractButton *face() { return screen->find<QAbstractButton>(u"人脸形象（必填）"_s); }

    std::unique_ptr<GenerateScreen> screen;
};

void FormMeasuresTest::page()
{
    QWidget *form = piece(u"选择尺寸"_s)->parentWidget();
    const QRect content = screen->view->widget()->rect();
    QCOMPARE(content.size(), screen->view->viewport()->size().expandedTo(content.size()));
    QCOMPARE(form->geometry().topLeft(), QPoint(32, 32));
    QCOMPARE(form->width(), content.width() - 2 * 32);
    QVERIFY(content.height() - form->geometry().bottom() - 1 >= 32);
    // The window's own background shows between the pieces and around them.
    const QImage seen = screenCapture::capture(screen->view.get());
    const int between = placement::inWindow(piece(u"填写封面内容"_s)).top() - 12;
    for (const QPoint place : {QPoint{10, 10}, QPoint{500, 20}, QPoint{500, between}}) {
        QCOMPARE(seen.pixelColor(place).alpha(), 0);
    }
}

void FormMeasuresTest::stepHeaders()
{
    const QStringList titles{u"选择尺寸"_s, u"填写封面内容"_s, u"选择表情"_s, u"上传照片"_s};
    for (int step = 1; step <= titles.size(); ++step) {
        QWidget *header = screen->find<StepHeader>(titles.at(step - 1));
        const Drawing drawn{header};
        const QString number = QString::number(step);
        QCOMPARE(drawn.lookOf(number), Drawing::look(12, QFont::Bold, Qt::white));
        QCOMPARE(drawn.lookOf(titles.at(step - 1)),
                 Drawing::look(14, QFont::DemiBold, themeColor(ColorRole::primaryText)));
        // The disc: as wide as high, with the number in its middle.
        const QImage face = screenCapture::capture(header, 4.0);
        const QColor green = srgb(0.18, 0.72, 0.45);
        const auto extent = [&](int count, const auto &pixelAt) {
            int inside = 0;
            for (int i = 0; i < count; ++i) {
                inside += pixelAt(i).alpha() > 127 ? 1 : 0;
            }
            return inside / 4.0;
        };
        const int middle = face.height() / 2;
        QCOMPARE(extent(25 * 4, [&](int x) { return face.pixelColor(x, middle); }), 22.0);
        QCOMPARE(extent(face.height(), [&](int y) { return face.pixelColor(44, y); }), 22.0);
        QCOMPARE(face.pixelColor(2, middle), green);
        QVERIFY(placement::centredAcross(drawn.placeOf(number), QRectF{0, 0, 22, 22}));
        QVERIFY(std::abs(drawn.placeOf(number).center().y() - header->height() / 2.0) <= 0.5);
    }
}

void FormMeasuresTest::sizeCardTexts()
{
    const QColor selected = srgb(0.2, 0.2, 0.1);
    const QColor selectedRatio = srgb(0.3, 0.25, 0.05);
    for (const CoverSize &size : CoverSize::presets()) {
        QWidget *card = piece(size.name);
        const Drawing plain{card};
        if (size != CoverSize::presets().constFirst()) {
            const QColor primary = themeColor(ColorRole::primaryText);
            QCOMPARE(plain.lookOf(size.name), Drawing::look(13, QFont::DemiBold, primary));
            QCOMPARE(plain.lookOf(size.ratio),
                     Drawing::look(10, QFont::Normal, themeColor(ColorRole::secondaryText)));
            QVERIFY(!plain.symbol(size.iconName, 16, QFont::Medium, primary).isNull());
        }
        click(card);
        const Drawing chosen{card};
        QCOMPARE(chosen.lookOf(size.name), Drawing::look(13, QFont::DemiBold, selected));
        QCOMPARE(chosen.lookOf(size.ratio), Drawing::look(10, QFont::Normal, selectedRatio));
        QVERIFY(!chosen.symbol(size.iconName, 16, QFont::Medium, selected).isNull());
    }
}

void FormMeasuresTest::sizeCardPlaces()
{
    for (const CoverSize &size : CoverSize::presets().sliced(1)) {
        QWidget *card = piece(size.name);
        const Drawing drawn{card};
        const QRectF symbol =
            drawn.symbol(size.iconName, 16, QFont::Medium, themeColor(ColorRole::primaryText));
        const QRectF name = drawn.placeOf(size.name);
        const QRectF ratio = drawn.placeOf(size.ratio);
        QCOMPARE(qRound(symbol.top()), 14);
        QCOMPARE(qRound(name.top() - symbol.bottom()), 6);
        QCOMPARE(qRound(ratio.top() - name.bottom()), 6);
        QCOMPARE(qRound(card->height() - ratio.bottom()), 14);
        for (const QRectF &line : {symbol, name, ratio}) {
            QVERIFY(placement::centredAcross(line, card->rect()));
        }
    }
}

void FormMeasuresTest::sizeCardOutlines()
{
    QWidget *selected = piece(u"YouTube"_s);
    QWidget *other = piece(u"经典"_s);
    QCOMPARE(CornerShape{selected}.differenceFromCircle(10), QString{});
    QCOMPARE(CornerShape{other}.differenceFromCircle(10), QString{});
    const QColor border = srgb(0.95, 0.7, 0.1);
    QCOMPARE(leftLineWidth(selected, [&](const QColor &seen) { return seen == border; }), 1.5);
    const QColor bare = srgb(0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 0.25);
    const QColor filled = over(bare, Qt::white);
    QCOMPARE(leftLineWidth(other,
                           [&](const QColor &seen) {
                               return screenCapture::isClose(seen, bare, 4) ||
                                      screenCapture::isClose(seen, filled, 4);
                           }),
             1.0);
    QCOMPARE(screenCapture::colorAt(screenCapture::capture(selected), {8, 40}), srgb(1.0, 0.78, 0.2));
    QCOMPARE(screenCapture::colorAt(screenCapture::capture(other), {8, 40}), QColor{Qt::white});
}

void FormMeasuresTest::textFields()
{
    typeInto(screen->titleField(), u"题"_s);
    const Drawing drawn = drawing();
    const QColor secondary = themeColor(ColorRole::secondaryText);
    const QColor tertiary = themeColor(ColorRole::tertiaryText);
    for (const QString &label : {u"视频封面标题文本"_s, u"背景场景"_s}) {
        QCOMPARE(drawn.lookOf(label), Drawing::look(12, QFont::Normal, secondary));
    }
    for (const QString &hint : {u"推荐不超过16个汉字，以保证设计效果"_s, u"输入封面背景图中体现的元素"_s}) {
        QCOMPARE(drawn.lookOf(hint), Drawing::look(11, QFont::Normal, tertiary));
    }
    QCOMPARE(drawn.lookOf(u"题"_s), Drawing::look(13, QFont::Normal, themeColor(ColorRole::primaryText)));
    QCOMPARE(drawn.lookOf(u"豪华办公室 / 未来科技感 / 金色财富主题"_s),
             Drawing::look(13, QFont::Normal, tertiary));
    // Label above, hint below.
    QVERIFY(drawn.placeOf(u"视频封面标题文本"_s).bottom() < drawn.placeOf(u"题"_s).top());
    QVERIFY(drawn.placeOf(u"题"_s).bottom() < drawn.placeOf(u"推荐不超过16个汉字，以保证设计效果"_s).top());
}

void FormMeasuresTest::expressionChipTexts()
{
    const auto placeIsRight = [](QWidget *chip, const Drawing &drawn, const QString &name) {
        return placement::padding(chip->rect(), drawn.placeOf(name)) == u"14, 7, 14, 7"_s;
    };
    for (const Emotion &emotion : Emotion::presets()) {
        QWidget *chip = piece(emotion.name);
        if (emotion != Emotion::presets().constFirst()) {
            const Drawing plain{chip};
            QCOMPARE(plain.lookOf(emotion.name),
                     Drawing::look(12, QFont::Normal, themeColor(ColorRole::primaryText)));
            QVERIFY(placeIsRight(chip, plain, emotion.name));
        }
        click(chip);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        const Drawing chosen{chip};
        QCOMPARE(chosen.lookOf(emotion.name), Drawing::look(12, QFont::DemiBold, srgb(0.1, 0.1, 0.1)));
        QVERIFY(placeIsRight(chip, chosen, emotion.name));
    }
}

void FormMeasuresTest::expressionChipOutlines()
{
    const QColor bare = srgb(0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 0.25);
    const auto check = [&](const QString &name, const QColor &fill) {
        QWidget *chip = piece(name);
        const QColor filled = over(bare, fill);
        QCOMPARE(leftLineWidth(chip,
                               [&](const QColor &seen) {
                                   return screenCapture::isClose(seen, bare, 4) ||
                                          screenCapture::isClose(seen, filled, 4);
                               }),
                 1.0);
        QCOMPARE(screenCapture::colorAt(screenCapture::capture(chip), {10, chip->height() / 2.0}), fill);
        QCOMPARE(CornerShape{chip}.differenceFromCircle(chip->height() / 2.0), QString{});
    };
    check(u"震惊"_s, srgb(1.0, 0.78, 0.2));
    check(u"惊喜"_s, Qt::white);
    QCOMPARE(placement::gapBeside(piece(u"震惊"_s), piece(u"惊喜"_s)), 8);
}

void FormMeasuresTest::customExpressionField()
{
    click(piece(u"自定义..."_s));
    auto *field = screen->find<QLineEdit>(u"请输入自定义表情描述"_s);
    typeInto(field, u"眨眼"_s);
    QCOMPARE(Drawing{field}.lookOf(u"眨眼"_s),
             Drawing::look(13, QFont::Normal, themeColor(ColorRole::primaryText)));
    QVERIFY(placement::gapBelow(piece(u"自定义..."_s), field) > 0);
}

void FormMeasuresTest::emptyUploadFace()
{
    const QColor secondary = themeColor(ColorRole::secondaryText);
    const Drawing whole = drawing();
    for (const QString &title : {u"人脸形象（必填）"_s, u"风格参考（上传示例封面，非必填）"_s}) {
        QCOMPARE(whole.lookOf(title), Drawing::look(12, QFont::Normal, secondary));
        auto *button = screen->find<QAbstractButton>(title);
        QVERIFY(button->height() >= 140);
        QCOMPARE(button->width(), button->parentWidget()->width());
        const QWidget *label = accessible::find<QLabel>(button->parentWidget(), title);
        QCOMPARE(placement::gapBelow(label, button), 8);
        const Drawing drawn{button};
        const QRectF symbol = drawn.symbol(u"square.and.arrow.up"_s, 22, QFont::Normal, secondary);
        QVERIFY(!symbol.isNull());
        QCOMPARE(drawn.lookOf(u"点击上传"_s), Drawing::look(12, QFont::Normal, secondary));
        const QRectF text = drawn.placeOf(u"点击上传"_s);
        QVERIFY(placement::centredAcross(symbol, button->rect()));
        QVERIFY(placement::centredAcross(text, button->rect()));
        QVERIFY(std::abs(symbol.top() - (button->height() - text.bottom())) <= 1);
    }
}

void FormMeasuresTest::uploadedPicture_data()
{
    QTest::addColumn<QSize>("picture");
    QTest::newRow("landscape") << QSize{160, 90};
    QTest::newRow("portrait") << QSize{600, 900};
    QTest::newRow("wider than the card") << QSize{4000, 400};
}

void FormMeasuresTest::uploadedPicture()
{
    QFETCH(const QSize, picture);
    const QString file = screen->home.path(u"a.png"_s);
    screen->panels.answerReference(
        samplePictures::write(file, samplePictures::png(samplePictures::picture(picture))));
    click(face());
    const Drawing drawn{face()};
    QCOMPARE(drawn.pixmaps().size(), 1);
    const DrawnPixmap &shown = drawn.pixmaps().constFirst();
    const QSizeF expected = QSizeF{picture}.scaled(face()->width(), 140, Qt::KeepAspectRatio);
    QVERIFY(std::abs(shown.place.width() - expected.width()) <= 1);
    QVERIFY(std::abs(shown.place.height() - expected.height()) <= 1);
    QVERIFY(shown.place.height() <= 140);
    QVERIFY(placement::centredAcross(shown.place, face()->rect()));
    const QImage pixels = shown.pixmap.toImage();
    QCOMPARE(CornerShape{pixels.copy(0, 0, pixels.width() / 2, pixels.height())}.differenceFromCircle(10),
             QString{});
}

void FormMeasuresTest::uploadErrorAndRemoval()
{
    const QString small = screen->home.path(u"a.png"_s);
    screen->panels.answerReference(
        samplePictures::write(small, samplePictures::png(samplePictures::picture({160, 90}))));
    click(face());
    const QString large = screen->home.path(u"large.png"_s);
    screen->panels.answerReference(samplePictures::write(large, samplePictures::pngOfSize(12 << 20)));
    click(face());
    const QColor red = themeColor(ColorRole::redText);
    const QString message = u"图片过大（12.0M），不能超过 10M"_s;
    QWidget *error = piece(message);
    QCOMPARE(Drawing{error}.lookOf(message), Drawing::look(11, QFont::Normal, red));
    QWidget *remove = piece(u"移除"_s);
    const Drawing drawn{remove};
    QCOMPARE(drawn.lookOf(u"移除"_s), Drawing::look(11, QFont::Normal, red));
    const QRectF symbol = drawn.symbol(u"xmark.circle"_s, 11, QFont::Normal, red);
    QVERIFY(!symbol.isNull());
    QCOMPARE(qRound(drawn.placeOf(u"移除"_s).left() - symbol.right()), 4);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    QCOMPARE(placement::gapBelow(face(), error), 8);
    QCOMPARE(placement::gapBelow(error, remove), 8);
    QCOMPARE(placement::inWindow(remove).left(), placement::inWindow(face()).left());
}

void FormMeasuresTest::advancedHeader()
{
    QWidget *header = piece(u"高级选项"_s);
    const QColor primary = themeColor(ColorRole::primaryText);
    const Drawing open{header};
    QCOMPARE(open.lookOf(u"高级选项"_s), Drawing::look(13, QFont::Medium, primary));
    const QRectF symbol = open.symbol(u"gearshape"_s, 13, QFont::Medium, primary);
    QVERIFY(!symbol.isNull());
    QVERIFY(symbol.right() < open.placeOf(u"高级选项"_s).left());
    const QRectF up = open.symbol(u"chevron.up"_s, 10, QFont::Normal, primary);
    QCOMPARE(qRound(up.right()), header->width());
    click(header);
    const Drawing folded{header};
    QCOMPARE(folded.symbol(u"chevron.down"_s, 10, QFont::Normal, primary), up);
}

void FormMeasuresTest::advancedEditor()
{
    QWidget *editor = screen->advancedEditor();
    QCOMPARE(editor->height(), 80);
    const QWidget *label = screen->find<QLabel>(advancedLabel());
    QCOMPARE(placement::gapBelow(label, editor), 8);
    QCOMPARE(drawing().lookOf(advancedLabel()),
             Drawing::look(13, QFont::Normal, themeColor(ColorRole::tertiaryText)));
    typeInto(editor, u"蓝金"_s);
    const Drawing drawn{editor};
    QCOMPARE(drawn.lookOf(u"蓝金"_s), Drawing::look(13, QFont::Normal, themeColor(ColorRole::primaryText)));
    // Padding, and across the inset that the text of fields has, too.
    QCOMPARE(drawn.placeOf(u"蓝金"_s).topLeft().toPoint(), QPoint(4 + 3, 4));
    typeInto(screen->titleField(), u"标题"_s);
    QCOMPARE(Drawing{screen->titleField()}.placeOf(u"标题"_s).toRect().left(), 4 + 3);
    screen->titleField()->setFocus();
    const QImage face = screenCapture::capture(editor);
    QCOMPARE(screenCapture::colorAt(face, {editor->width() / 2.0, 60}), QColor{Qt::white});
    QVERIFY2(qAlpha(face.pixel(0, 0)) == 0, "the border is rounded");
    // A grey between the text background and black, one wide.
    const QColor line = face.pixelColor(editor->width() / 2, 0);
    QVERIFY2(line.alpha() < 255 || line.red() < 250, qPrintable(screenCapture::text(line)));
    QCOMPARE(face.pixelColor(editor->width() / 2, 1), QColor{Qt::white});
}

void FormMeasuresTest::generateButtonText()
{
    QAbstractButton *button = screen->generateButton();
    const Drawing drawn{button};
    QCOMPARE(drawn.lookOf(u"开始生成封面"_s), Drawing::look(15, QFont::Bold, Qt::white));
    const QRectF text = drawn.placeOf(u"开始生成封面"_s);
    QCOMPARE(qRound(text.top()), 14);
    QCOMPARE(qRound(button->height() - text.bottom()), 14);
    QVERIFY(placement::centredAcross(text, button->rect()));
}

void FormMeasuresTest::generateButtonShape()
{
    typeInto(screen->titleField(), u"题"_s);
    QAbstractButton *button = screen->generateButton();
    QCOMPARE(CornerShape{button}.differenceFromContinuous(10), QString{});
    const QImage face = screenCapture::capture(button);
    const QList<QColor> stops{srgb(0.1, 0.8, 0.85), srgb(0.275, 0.575, 0.9), srgb(0.45, 0.35, 0.95),
                              srgb(0.7, 0.325, 0.85), srgb(0.95, 0.3, 0.75)};
    for (int quarter = 0; quarter <= 4; ++quarter) {
        const double x = std::clamp(button->width() * quarter / 4.0, 0.0, button->width() - 1.0);
        // Above the text and below the corners' reach at the ends.
        const double y = quarter == 0 || quarter == 4 ? button->height() / 2.0 : 4;
        const QColor seen = screenCapture::colorAt(face, {x, y});
        QVERIFY2(screenCapture::isClose(seen, stops.at(quarter)), qPrintable(screenCapture::text(seen)));
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<FormMeasuresTest>(argc, argv);
}

#include "FormMeasuresTest.moc"
