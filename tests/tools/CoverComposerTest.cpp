#include "local_service/cover/CoverComposer.h"

#include "local_service/cover/CoverLayout.h"

#include <QTest>

#include <future>
#include <vector>

using namespace Qt::StringLiterals;
using namespace quilmora;

namespace
{

constexpr QSize landscape{1424, 800};
constexpr QSize portrait{800, 1424};

QString promptFor(const QString &title, const QString &scene)
{
    QString prompt = u"生成一张视频封面图。"_s;
    if (!title.isEmpty()) {
        prompt += u" 封面主标题文字：「"_s + title + u"」，标题需突出醒目、具有冲击力。"_s;
    }
    if (!scene.isEmpty()) {
        prompt += u" 背景场景："_s + scene + u"。"_s;
    }
    return prompt + u" 整体风格：高质量、电影感、社交媒体爆款封面风格。"_s;
}

PictureRequest requestFor(const QString &title, const QString &scene, QSize size = landscape)
{
    PictureRequest request;
    request.prompt = promptFor(title, scene);
    request.size = size;
    request.watermark = false;
    return request;
}

QImage plain(const QColor &colour, QSize size = {300, 400})
{
    QImage image{size, QImage::Format_RGB32};
    image.fill(colour);
    return image;
}

/// The share of the pixels of `area` that differ clearly between the two pictures, judged by every third one.
double changedShare(const QImage &a, const QImage &b, QRect area)
{
    constexpr int step = 3;
    int changed = 0;
    int seen = 0;
    for (int y = area.top(); y <= area.bottom(); y += step) {
        for (int x = area.left(); x <= area.right(); x += step) {
            const QRgb first = a.pixel(x, y);
            const QRgb second = b.pixel(x, y);
            const int distance = std::abs(qRed(first) - qRed(second)) +
                                 std::abs(qGreen(first) - qGreen(second)) +
                                 std::abs(qBlue(first) - qBlue(second));
            changed += distance > 60 ? 1 : 0;
            ++seen;
        }
    }
    return double(changed) / seen;
}

bool isNear(const QColor &a, const QColor &b)
{
    return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) + std::abs(a.blue() - b.blue()) < 40;
}

} // namespace

class CoverComposerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theCoverHasTheSizeAsked_data();
    void theCoverHasTheSizeAsked();
    void theSameRequestGivesTheSamePicture_data();
    void theSameRequestGivesTheSamePicture();
    void threadsDoNotDisturbOneAnother();
    void scenesLookDifferent();
    void unknownScenesDifferByTheirText();
    void extraWishesDecideWhereTheSceneSaysNothing();
    void theFaceIsSetIntoTheCover();
    void theUpperPartOfATallFaceIsKept();
    void theTitleIsSet();
    void differentTitlesLookDifferent();
    void theStylePictureColoursTheCover();
    void aGreyStylePictureChangesNothing();
    void theExpressionShows();
    void theWatermarkShowsInTheCorner();
    void oddTitlesAreComposed_data();
    void oddTitlesAreComposed();
};

void CoverComposerTest::theCoverHasTheSizeAsked_data()
{
    QTest::addColumn<QSize>("size");
    for (const QSize size : {QSize{2848, 1600}, QSize{2304, 1728}, QSize{1728, 2304}, QSize{1600, 2848},
                             QSize{960, 960}, QSize{3840, 240}, QSize{240, 3840}, QSize{1279, 721}}) {
        QTest::addRow("%dx%d", size.width(), size.height()) << size;
    }
}

void CoverComposerTest::theCoverHasTheSizeAsked()
{
    QFETCH(const QSize, size);
    PictureRequest request = requestFor(u"月入十万的秘密"_s, u"科技"_s, size);
    request.images = {plain(Qt::magenta)};
    QCOMPARE(coverComposer::compose(request).size(), size);
}

void CoverComposerTest::theSameRequestGivesTheSamePicture_data()
{
    QTest::addColumn<QString>("scene");
    for (const QString &scene : {u"豪华办公室"_s, u"未来科技"_s, u"金色财富"_s, u"海边沙滩"_s, u"城市夜景"_s,
                                 u"星空宇宙"_s, u"森林"_s, u"美食"_s, u"一片空白"_s}) {
        QTest::newRow(scene.toUtf8().constData()) << scene;
    }
}

void CoverComposerTest::theSameRequestGivesTheSamePicture()
{
    QFETCH(const QString, scene);
    PictureRequest request = requestFor(u"秘密"_s, scene);
    request.images = {plain(Qt::magenta), plain(Qt::green)};
    QCOMPARE(coverComposer::compose(request), coverComposer::compose(request));
}

void CoverComposerTest::threadsDoNotDisturbOneAnother()
{
    std::vector<PictureRequest> requests;
    std::vector<QImage> alone;
    for (const QString &scene : {u"金色财富"_s, u"未来科技"_s, u"城市夜景"_s, u"森林"_s}) {
        for (const QString &title : {u"普通人如何赚到第一桶金？"_s, u"How to win 100 games"_s}) {
            requests.push_back(requestFor(title, scene, portrait));
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

void CoverComposerTest::scenesLookDifferent()
{
    const QStringList scenes{u"豪华办公室"_s, u"未来科技"_s, u"金色财富"_s, u"海边沙滩"_s, u"城市夜景"_s,
                             u"星空宇宙"_s,   u"森林"_s,     u"美食"_s,     u"一片空白"_s};
    QList<QImage> covers;
    for (const QString &scene : scenes) {
        covers.append(coverComposer::compose(requestFor({}, scene)));
    }
    for (qsizetype i = 0; i < covers.size(); ++i) {
        for (qsizetype j = i + 1; j < covers.size(); ++j) {
            QVERIFY2(changedShare(covers[i], covers[j], covers[i].rect()) > 0.3,
                     qPrintable(scenes[i] + u" / "_s + scenes[j]));
        }
    }
}

void CoverComposerTest::unknownScenesDifferByTheirText()
{
    const QImage first = coverComposer::compose(requestFor(u"秘密"_s, u"一面白墙"_s));
    const QImage second = coverComposer::compose(requestFor(u"秘密"_s, u"纯色"_s));
    QVERIFY(changedShare(first, second, first.rect()) > 0.2);
}

void CoverComposerTest::extraWishesDecideWhereTheSceneSaysNothing()
{
    PictureRequest request = requestFor(u"秘密"_s, {});
    const QImage calm = coverComposer::compose(request);
    request.prompt.replace(u" 整体风格"_s, u" 额外风格指令：赛博朋克。 整体风格"_s);
    QVERIFY(changedShare(calm, coverComposer::compose(request), calm.rect()) > 0.2);
}

void CoverComposerTest::theFaceIsSetIntoTheCover()
{
    for (const QSize size : {landscape, portrait}) {
        PictureRequest request = requestFor(u"秘密"_s, u"海边"_s, size);
        request.images = {plain(QColor{200, 0, 200})};
        const CoverLayout layout = CoverLayout::of(size, true, true);
        const QImage cover = coverComposer::compose(request);
        for (const double angle : {0.0, 1.6, 3.1, 4.7}) {
            const QPointF spot =
                layout.focus + 0.55 * layout.radius * QPointF{std::cos(angle), std::sin(angle)};
            QVERIFY(isNear(cover.pixelColor(spot.toPoint()), QColor{200, 0, 200}));
        }
    }
}

void CoverComposerTest::theUpperPartOfATallFaceIsKept()
{
    QImage face = plain(Qt::blue, {300, 600});
    for (int y = 0; y < 300; ++y) {
        std::fill_n(reinterpret_cast<QRgb *>(face.scanLine(y)), face.width(), qRgb(255, 0, 0));
    }
    PictureRequest request = requestFor(u"秘密"_s, {});
    request.images = {face};
    const CoverLayout layout = CoverLayout::of(landscape, true, true);
    const QColor middle = coverComposer::compose(request).pixelColor(layout.focus.toPoint());
    QVERIFY(isNear(middle, Qt::red));
}

void CoverComposerTest::theTitleIsSet()
{
    for (const QSize size : {landscape, portrait}) {
        for (const bool face : {false, true}) {
            PictureRequest request = requestFor(u"月入十万"_s, u"森林"_s, size);
            request.images = face ? QList{plain(Qt::magenta)} : QList<QImage>{};
            const QImage cover = coverComposer::compose(request);
            const QRect room =
                CoverLayout::of(size, true, face).title.toAlignedRect().intersected(cover.rect());
            int light = 0;
            for (int y = room.top(); y <= room.bottom(); ++y) {
                for (int x = room.left(); x <= room.right(); ++x) {
                    const QColor pixel = cover.pixelColor(x, y);
                    const bool yellow = pixel.red() > 240 && pixel.green() > 160 && pixel.blue() < 110;
                    const bool white = pixel.red() > 235 && pixel.green() > 235 && pixel.blue() > 215;
                    light += yellow || white ? 1 : 0;
                }
            }
            QVERIFY2(light > room.width() * room.height() / 20, qPrintable(QString::number(light)));
        }
    }
}

void CoverComposerTest::differentTitlesLookDifferent()
{
    const QImage first = coverComposer::compose(requestFor(u"月入十万"_s, u"森林"_s));
    const QImage second = coverComposer::compose(requestFor(u"一无所有"_s, u"森林"_s));
    QVERIFY(changedShare(first, second, CoverLayout::of(landscape, true, false).title.toAlignedRect()) > 0.1);
}

void CoverComposerTest::theStylePictureColoursTheCover()
{
    PictureRequest request = requestFor(u"秘密"_s, u"城市夜景"_s);
    request.images = {plain(Qt::white), plain(QColor{20, 220, 60})};
    const QImage green = coverComposer::compose(request);
    request.images[1] = plain(QColor{230, 120, 10});
    const QImage orange = coverComposer::compose(request);
    QVERIFY(changedShare(green, orange, green.rect()) > 0.02);
    // Left of the ring's middle stands the accent.
    const CoverLayout layout = CoverLayout::of(landscape, true, true);
    const QPoint ring = (layout.focus - QPointF{1.045 * layout.radius, 0}).toPoint();
    const QColor greenRing = green.pixelColor(ring);
    const QColor orangeRing = orange.pixelColor(ring);
    QVERIFY(greenRing.green() > greenRing.red());
    QVERIFY(orangeRing.red() > orangeRing.blue());
    QVERIFY(greenRing != orangeRing);
}

void CoverComposerTest::aGreyStylePictureChangesNothing()
{
    PictureRequest request = requestFor(u"秘密"_s, u"城市夜景"_s);
    request.images = {plain(Qt::magenta)};
    const QImage without = coverComposer::compose(request);
    request.images.append(plain(Qt::gray));
    QCOMPARE(coverComposer::compose(request), without);
}

void CoverComposerTest::theExpressionShows()
{
    PictureRequest request = requestFor(u"秘密"_s, u"海边"_s);
    request.images = {plain(Qt::magenta)};
    const QImage without = coverComposer::compose(request);
    request.prompt.replace(u" 整体风格"_s, u" 人物表情：震惊。 整体风格"_s);
    const QImage with = coverComposer::compose(request);
    QVERIFY(without != with);
    const QPoint badge = CoverLayout::of(landscape, true, true).badge.toPoint();
    QVERIFY(changedShare(without, with, QRect{badge - QPoint{20, 10}, QSize{40, 20}}) > 0.5);
}

void CoverComposerTest::theWatermarkShowsInTheCorner()
{
    PictureRequest request = requestFor(u"秘密"_s, u"星空"_s);
    const QImage without = coverComposer::compose(request);
    request.watermark = true;
    const QImage with = coverComposer::compose(request);
    QVERIFY(changedShare(without, with, QRect{1300, 740, 124, 60}) > 0.05);
    QCOMPARE(with.copy(0, 0, 1200, 700), without.copy(0, 0, 1200, 700));
}

void CoverComposerTest::oddTitlesAreComposed_data()
{
    QTest::addColumn<QString>("title");
    QTest::newRow("10,000 signs") << u"字"_s.repeated(10'000);
    QTest::newRow("10,000 letters") << u"w"_s.repeated(10'000);
    QTest::newRow("10,000 blanks") << u" "_s.repeated(10'000);
    QTest::newRow("emoji") << u"🔥爆款🔥"_s;
    QTest::newRow("only emoji") << u"🔥"_s;
    QTest::newRow("right to left") << u"שלום עולם"_s;
    QTest::newRow("half a pair") << QString{QChar{0xD83D}};
    QTest::newRow("HTML") << u"<b>粗体</b><img src='file:///etc/passwd'>"_s;
}

void CoverComposerTest::oddTitlesAreComposed()
{
    QFETCH(const QString, title);
    QCOMPARE(coverComposer::compose(requestFor(title, u"金币"_s)).size(), landscape);
}

QTEST_MAIN(CoverComposerTest)

#include "CoverComposerTest.moc"
