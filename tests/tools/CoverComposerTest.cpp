#include "local_service/cover/CoverComposer.h"

#include "local_service/cover/CoverLayout.h"
#include "local_service/cover/TitlePainter.h"
#include "local_service/scenes/Backdrop.h"
#include "model/CoverInputs.h"
#include "support/TestProgram.h"

#include <QPainter>

#include <future>
#include <vector>

using namespace quilmora::localservice;
using namespace quilmora::test;

namespace {

constexpr QSize landscape{1424, 800};

QImage plain(const QColor &color, QSize size = {300, 400})
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(color);
    return image;
}

PictureRequest requestFor(const QString &title, const QString &scene, QSize size = landscape,
                          const QList<QImage> &images = {})
{
    PictureRequest request;
    request.prompt =
        u"封面主标题文字：「%1」，标题需突出醒目、具有冲击力。 背景场景：%2。 人物表情：震惊。"_s.arg(title,
                                                                                                      scene);
    request.size = size;
    request.watermark = false;
    request.images = images;
    return request;
}

/// How far two colors lie apart, from 0 to 765.
int distance(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue());
}

/// The share of the pixels of `area` that differ clearly between the two pictures, judged by every third one.
double changedShare(const QImage &a, const QImage &b, QRect area)
{
    int changed = 0;
    for (int y = area.top(); y <= area.bottom(); y += 3) {
        for (int x = area.left(); x <= area.right(); x += 3) {
            changed += distance(a.pixelColor(x, y), b.pixelColor(x, y)) > 60 ? 9 : 0;
        }
    }
    return double(changed) / (area.width() * area.height());
}

double luminance(QRgb color)
{
    const auto linear = [](int part) {
        return std::pow(part / 255.0, 2.2);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

QRect brightPart(const QImage &image)
{
    QRect result;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            result |= qGray(image.pixel(x, y)) > 120 ? QRect{x, y, 1, 1} : QRect{};
        }
    }
    return result;
}

/// How well the bright pixels of `letters` stand out in `cover` from those just left and right of them, as
/// the ratio of their mean luminances.
double contrast(const QImage &cover, const QImage &letters)
{
    constexpr int near = 3;
    double inside = 0;
    double outside = 0;
    int insides = 0;
    int outsides = 0;
    for (int y = 0; y < letters.height(); ++y) {
        for (int x = near; x < letters.width() - near; ++x) {
            if (qGray(letters.pixel(x, y)) > 120) {
                inside += luminance(cover.pixel(x, y));
                ++insides;
            } else if (qGray(letters.pixel(x - near, y)) > 120 || qGray(letters.pixel(x + near, y)) > 120) {
                outside += luminance(cover.pixel(x, y));
                ++outsides;
            }
        }
    }
    return (inside / insides + 0.05) / (outside / outsides + 0.05);
}

} // namespace

class CoverComposerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCoverShowsTitleAndFace_data()
    {
        const DataRows<QString, QSize, bool> row{"scene", "size", "hasFace"};
        for (const QString &scene : {u"未来科技感"_s, u"豪华办公室"_s, u"海边日落"_s}) {
            for (const quilmora::CoverSize &preset : quilmora::CoverSize::presets()) {
                // A quarter of it, or the test would take a minute.
                const QSize size{static_cast<int>(preset.width) / 4, static_cast<int>(preset.height) / 4};
                row((scene + u' ' + preset.ratio).toUtf8(), scene, size, true);
                row((scene + u' ' + preset.ratio + u" without face").toUtf8(), scene, size, false);
            }
        }
    }

    void everyCoverShowsTitleAndFace()
    {
        QFETCH(const QString, scene);
        QFETCH(const QSize, size);
        QFETCH(const bool, hasFace);
        const QString title = u"这个秘密改变了一切"_s;
        const QColor face{200, 0, 200};
        const QImage cover = coverComposer::compose(
            requestFor(title, scene, size, hasFace ? QList{plain(face)} : QList<QImage>{}));
        QCOMPARE(cover.size(), size);

        const CoverLayout layout = CoverLayout::of(size, true, hasFace);
        QImage letters = plain(Qt::black, size);
        QPainter painter{&letters};
        titlePainter::paint(painter, size, TitleLayout::of(title, layout.title.size(), layout.mostLines),
                            layout, Backdrop::tech.palette);
        painter.end();
        const QRect bounds = brightPart(letters);
        const int margin = static_cast<int>(20 * layout.unit);
        QVERIFY(bounds.width() * bounds.height() > 0.3 * layout.title.width() * layout.title.height());
        QVERIFY(cover.rect().marginsRemoved({margin, margin, margin, margin}).contains(bounds));
        const QPointF reach{layout.radius, layout.radius};
        QVERIFY(!hasFace || !QRectF(layout.focus - reach, layout.focus + reach).intersects(bounds));
        QVERIFY2(contrast(cover, letters) > 7, qPrintable(QString::number(contrast(cover, letters))));

        for (const double angle : {0.0, 1.6, 3.1, 4.7}) {
            const QPointF spot =
                layout.focus + 0.55 * layout.radius * QPointF{std::cos(angle), std::sin(angle)};
            QCOMPARE(distance(cover.pixelColor(spot.toPoint()), face) < 40, hasFace);
        }
    }

    void oddRequestsAreComposed_data()
    {
        const DataRows<QString, QSize> row{"title", "size"};
        row("3840x240", u"秘密"_s, {3840, 240});
        row("240x3840", u"秘密"_s, {240, 3840});
        row("1279x721", u"秘密"_s, {1279, 721});
        row("960x960", u"秘密"_s, {960, 960});
        row("10,000 signs", u"字"_s.repeated(10'000), landscape);
        row("10,000 letters", u"w"_s.repeated(10'000), landscape);
        row("10,000 blanks", u" "_s.repeated(10'000), landscape);
        row("emoji", u"🔥爆款🔥"_s, landscape);
        row("only emoji", u"🔥"_s, landscape);
        row("right to left", u"שלום עולם"_s, landscape);
        row("half a pair", QString{QChar{0xD83D}}, landscape);
        row("HTML", u"<b>粗体</b><img src='file:///etc/passwd'>"_s, landscape);
    }

    void oddRequestsAreComposed()
    {
        QFETCH(const QString, title);
        QFETCH(const QSize, size);
        for (const QList<QImage> &images : {QList<QImage>{}, QList{plain(Qt::magenta, {1, 1})}}) {
            QCOMPARE(coverComposer::compose(requestFor(title, u"科技"_s, size, images)).size(), size);
        }
    }

    void promptsGetTheNearestBackdrop_data()
    {
        const DataRows<QString, const Backdrop *, QString> addRow{"scene", "backdrop", "style"};
        const auto row = [&addRow](const char *name, const QString &scene, const Backdrop &backdrop,
                                   const QString &style = {}) {
            addRow(name, scene, &backdrop, style);
        };
        row("technology", u"未来科技感"_s, Backdrop::tech);
        row("city", u"城市夜景"_s, Backdrop::tech);
        row("space", u"宇宙星空"_s, Backdrop::tech);
        row("office", u"豪华办公室"_s, Backdrop::office);
        row("wealth", u"金色财富主题"_s, Backdrop::office);
        row("food", u"美食"_s, Backdrop::office);
        row("sea", u"海边日落"_s, Backdrop::beach);
        row("forest", u"A Forest"_s, Backdrop::beach);
        row("the first word", u"海边的办公室"_s, Backdrop::beach);
        row("scene before style", u"海边"_s, Backdrop::beach, u"赛博朋克"_s);
        row("style alone", u"一面白墙"_s, Backdrop::tech, u"赛博朋克"_s);
    }

    void promptsGetTheNearestBackdrop()
    {
        QFETCH(const QString, scene);
        QFETCH(const QString, style);
        QFETCH(const Backdrop *const, backdrop);
        QCOMPARE(&Backdrop::forPrompt({.title = {}, .scene = scene, .expression = {}, .style = style}),
                 backdrop);
    }

    /// Nor does the same request ever give another picture.
    void threadsDoNotDisturbOneAnother()
    {
        std::vector<PictureRequest> requests;
        std::vector<QImage> alone;
        for (const QString &scene : {u"海边"_s, u"未来科技"_s, u"办公室"_s, u"一片空白"_s}) {
            for (const QString &title : {u"普通人如何赚到第一桶金？"_s, u"How to win 100 games"_s}) {
                requests.push_back(requestFor(title, scene, landscape.transposed()));
                alone.push_back(coverComposer::compose(requests.back()));
            }
        }
        std::vector<std::future<QImage>> together;
        together.reserve(requests.size());
        for (const PictureRequest &request : requests) {
            together.push_back(
                std::async(std::launch::async, [&request] { return coverComposer::compose(request); }));
        }
        for (std::size_t i = 0; i < together.size(); ++i) {
            QCOMPARE(together[i].get(), alone[i]);
        }
    }

    void theUpperPartOfATallFaceIsKept()
    {
        QImage face = plain(Qt::blue, {300, 600});
        QPainter{&face}.fillRect(0, 0, 300, 300, Qt::red);
        const QImage cover = coverComposer::compose(requestFor(u"秘密"_s, {}, landscape, {face}));
        const QPoint middle = CoverLayout::of(landscape, true, true).focus.toPoint();
        QVERIFY(distance(cover.pixelColor(middle), Qt::red) < 40);
    }

    void stylePicturesGiveTheAccents_data()
    {
        const DataRows<QColor, QColor, int, int> row{"large", "small", "accent", "accent2"};
        row("two hues", {220, 30, 30}, {30, 60, 220}, 0, 225);
        row("two hues close together", {220, 30, 30}, {220, 90, 30}, 0, 0);
        row("one hue", {40, 200, 90}, {Qt::gray}, 135, 135);
        row("a dark hue", {20, 20, 90}, {Qt::black}, 240, 240);
        row("transparent", {255, 0, 0, 0}, {20, 200, 40}, 120, 120);
        row("none", {Qt::white}, {Qt::gray}, 186, 317);
    }

    void stylePicturesGiveTheAccents()
    {
        QFETCH(const QColor, large);
        QFETCH(const QColor, small);
        QImage picture{60, 40, QImage::Format_ARGB32};
        picture.fill(large);
        QPainter{&picture}.fillRect(0, 0, 60, 8, small);
        const Palette palette = Backdrop::tech.palette.accentedBy(picture);
        QTEST(palette.accent.hsvHue(), "accent");
        QTEST(palette.accent2.hsvHue(), "accent2");
        QVERIFY(palette.accent.value() >= 225);
        QVERIFY(palette.accent != palette.accent2);
    }

    void theAccentsShow()
    {
        const CoverLayout layout = CoverLayout::of(landscape, true, true);
        // Left of the ring's middle stands the accent.
        const QPoint ring = (layout.focus - QPointF{1.045 * layout.radius, 0}).toPoint();
        const auto ringOf = [&](const QList<QImage> &images) {
            return coverComposer::compose(requestFor(u"秘密"_s, u"夜"_s, landscape, images)).pixelColor(ring);
        };
        const QColor green = ringOf({plain(Qt::white), plain(QColor{20, 220, 60})});
        const QColor orange = ringOf({plain(Qt::white), plain(QColor{230, 120, 10})});
        QVERIFY(green.green() > green.red());
        QVERIFY(orange.red() > orange.blue());
        QCOMPARE(ringOf({plain(Qt::white), plain(Qt::gray)}), ringOf({plain(Qt::white)}));
    }

    void expressionAndWatermarkShow()
    {
        PictureRequest request = requestFor(u"秘密"_s, u"海边"_s, landscape, {plain(Qt::magenta)});
        const QImage with = coverComposer::compose(request);
        request.prompt.remove(u" 人物表情：震惊。"_s);
        const QImage without = coverComposer::compose(request);
        request.watermark = true;
        const QImage marked = coverComposer::compose(request);
        const CoverLayout layout = CoverLayout::of(landscape, true, true);
        const QPoint badge = (layout.focus + QPointF{0.72, 0.72} * layout.radius).toPoint();
        QVERIFY(changedShare(without, with, {badge - QPoint{20, 10}, QSize{40, 20}}) > 0.5);
        QVERIFY(changedShare(without, marked, {1340, 750, 80, 45}) > 0.05);
        QCOMPARE(marked.copy(0, 0, 1200, 700), without.copy(0, 0, 1200, 700));
    }
};

QUILMORA_TEST(CoverComposerTest, runGuiTest)
#include "CoverComposerTest.moc"
