#include "BenchHistory.h"

#include "generation/GenerationRequest.h"
#include "model/CoverInputs.h"
#include "store/SqliteConnection.h"

#include <QFile>
#include <QImage>
#include <QRandomGenerator>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

constexpr QSize coverSize{2848, 1600};

void writeCover(const QString &path)
{
    QImage cover{coverSize, QImage::Format_RGB32};
    QRandomGenerator random{1};
    for (int y = 0; y < cover.height(); ++y) {
        for (int x = 0; x < cover.width(); ++x) {
            const auto grain = static_cast<int>(random.generate() % 8U);
            cover.setPixel(x, y, qRgb(x / 16 + grain, y / 8 + grain, 90 + grain));
        }
    }
    if (!cover.save(path, "png")) {
        qFatal("Cannot write a cover");
    }
}

} // namespace

BenchHistory::BenchHistory(int count) : database{folder.path(), folder.filePath(u"none"_s)}
{
    const QString first = coverFile(0);
    writeCover(first);
    const QString prompt = composePrompt({CoverSize::presets().constFirst(),
                                          u"这个秘密改变了一切"_s,
                                          u"未来科技感"_s,
                                          Emotion::presets().constFirst(),
                                          {},
                                          {},
                                          {},
                                          {}});
    SqliteConnection connection{folder.filePath(u"quilmora.db"_s)};
    connection.execute(u"BEGIN;"_s);
    for (int number = 0; number < count; ++number) {
        if (number > 0) {
            QFile::link(first, coverFile(number));
        }
        connection.execute(
            u"INSERT INTO history (prompt, image_path, created_at, model_id) VALUES "
            "('%1', '%2', %3.5, 'doubao-seedream-4-0-250828');"_s.arg(prompt, coverFile(number))
                .arg(1700000000 + number));
    }
    connection.execute(u"COMMIT;"_s);
}

} // namespace quilmora::bench
