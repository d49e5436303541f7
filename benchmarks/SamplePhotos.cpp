#include "SamplePhotos.h"

#include "Tile.h"
#include "imaging/ImageCodec.h"

#include <QBuffer>
#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <array>
#include <random>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

constexpr int tileSide = 512;

/// Brightness that wanders smoothly, in finer and finer steps, over a tile that can be laid side by side.
Tile textureTile(std::mt19937 &random, int coarsest, int finest)
{
    Tile tile{tileSide};
    float strength = 1.0F;
    for (int cell = coarsest; cell >= finest; cell /= 2, strength *= 0.6F) {
        Tile knots{tileSide / cell};
        std::generate(knots.all().begin(), knots.all().end(),
                      [&random] { return static_cast<float>(random() % 1001U) / 500.0F - 1.0F; });
        for (int y = 0; y < tileSide; ++y) {
            const float v = static_cast<float>(y % cell) / static_cast<float>(cell);
            for (int x = 0; x < tileSide; ++x) {
                const float u = static_cast<float>(x % cell) / static_cast<float>(cell);
                const int left = x / cell;
                const int top = y / cell;
                const float above = knots.at(left, top) * (1 - u) + knots.at(left + 1, top) * u;
                const float below = knots.at(left, top + 1) * (1 - u) + knots.at(left + 1, top + 1) * u;
                tile.at(x, y) += strength * (above * (1 - v) + below * v);
            }
        }
    }
    return tile;
}

/// Sensor noise: it spreads to its neighbours, as the colours of a camera are made from several sensor cells.
Tile grainTile(std::mt19937 &random)
{
    std::normal_distribution<float> normal{0.0F, 1.0F};
    Tile cells{tileSide};
    std::generate(cells.all().begin(), cells.all().end(), [&] { return normal(random); });
    Tile grain{tileSide};
    for (int y = 0; y < tileSide; ++y) {
        for (int x = 0; x < tileSide; ++x) {
            grain.at(x, y) = 0.7F * cells.at(x, y) + 0.5F * cells.at(x + 1, y) + 0.5F * cells.at(x, y + 1);
        }
    }
    return grain;
}

struct Camera {
    float texture;     ///< How strongly surfaces vary, in levels of 256.
    float fineTexture; ///< The same for the lower half of the picture, from pixel to pixel.
    float grain;       ///< Standard deviation of the noise in mid grey, in levels of 256.
};

Camera cameraFor(Scene scene)
{
    switch (scene) {
    case Scene::portrait:
        return {8, 6, 4.5F};
    case Scene::street:
        return {8, 8, 4.0F};
    case Scene::night:
        return {5, 3, 6.0F};
    case Scene::meadow:
        return {10, 18, 3.2F};
    }
    return {};
}

uchar shade(int value, float change)
{
    return static_cast<uchar>(std::clamp(static_cast<float>(value) + change, 0.0F, 255.0F));
}

void photograph(QImage &image, const Camera &camera, std::mt19937 &random)
{
    const Tile texture = textureTile(random, 128, 8);
    const Tile fine = textureTile(random, 8, 1);
    const std::array<Tile, 3> grain{grainTile(random), grainTile(random), grainTile(random)};
    constexpr int block = 256;
    for (int y = 0; y < image.height(); ++y) {
        auto *line = static_cast<QRgb *>(static_cast<void *>(image.scanLine(y)));
        const float fineStrength = y * 2 > image.height() ? camera.fineTexture : camera.fineTexture / 5;
        int shift = 0;
        for (int x = 0; x < image.width(); ++x) {
            // The grain is moved about from block to block, so that it does not repeat.
            shift = x % block == 0 ? static_cast<int>(random() % tileSide) : shift;
            const QRgb pixel = line[x];
            const float dark = 1.4F - static_cast<float>(qGray(pixel)) / 256.0F;
            const float light = camera.texture * texture.at(x, y) + fineStrength * fine.at(x, y);
            const float noise = camera.grain * dark;
            line[x] = qRgb(shade(qRed(pixel), light + noise * grain[0].at(x + shift, y + 7 * shift)),
                           shade(qGreen(pixel), light + noise * grain[1].at(x + shift, y + 7 * shift)),
                           shade(qBlue(pixel), light + noise * grain[2].at(x + shift, y + 7 * shift)));
        }
    }
}

QImage throughJpegFile(const QImage &image, int quality)
{
    QBuffer buffer;
    buffer.open(QIODevice::ReadWrite);
    if (!image.save(&buffer, "jpeg", quality)) {
        qFatal("Cannot write a photo");
    }
    return imageCodec::decode(buffer.data());
}

} // namespace

QImage samplePhoto(Scene scene, QSize size)
{
    std::mt19937 random{static_cast<unsigned int>(scene) + 1};
    QImage image = paintScene(scene, size, random);
    photograph(image, cameraFor(scene), random);
    constexpr int qualityOfTelephones = 93;
    return throughJpegFile(image, qualityOfTelephones);
}

QImage sampleCover(Scene scene, QSize size, bool throughJpeg)
{
    std::mt19937 random{static_cast<unsigned int>(scene) + 101};
    QImage image = paintScene(scene, size, random);
    Camera camera = cameraFor(scene);
    constexpr float painted = 0.5F;
    camera.grain *= painted;
    photograph(image, camera, random);
    QPainter painter{&image};
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(QRectF{0, size.height() * 0.62, double(size.width()), size.height() * 0.26},
                     QColor{0, 0, 0, 120});
    QFont font;
    font.setPixelSize(size.height() / 7);
    font.setBold(true);
    QPainterPath title;
    title.addText(QPointF{size.width() * 0.06, size.height() * 0.8}, font, u"这个秘密改变了一切"_s);
    painter.strokePath(title, QPen{QColor{20, 20, 30}, size.height() / 60.0});
    painter.fillPath(title, QColor{255, 214, 60});
    painter.end();
    constexpr int qualityOfServices = 95;
    return throughJpeg ? throughJpegFile(image, qualityOfServices) : image;
}

} // namespace quilmora::bench
