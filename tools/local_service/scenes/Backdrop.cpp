#include "local_service/scenes/Backdrop.h"

#include "local_service/cover/SoftLayer.h"

#include <array>

using namespace Qt::StringLiterals;

namespace quilmora::localservice {
namespace {

/// How far out of focus the far part lies, in thousandths of the shorter side.
constexpr double farBlur = 4;

const std::array all{&Backdrop::tech, &Backdrop::office, &Backdrop::beach};

const Backdrop *namedFirst(const QString &text)
{
    const Backdrop *result = nullptr;
    qsizetype first = text.size();
    for (const Backdrop *backdrop : all) {
        const QList<QStringView> words = backdrop->words.split(u' ');
        for (const QStringView word : words) {
            const qsizetype at = text.indexOf(word, 0, Qt::CaseInsensitive);
            if (at >= 0 && at < first) {
                first = at;
                result = backdrop;
            }
        }
    }
    return result;
}

} // namespace

const Backdrop &Backdrop::forPrompt(const PromptParts &prompt)
{
    for (const QString &text : {prompt.scene, prompt.style}) {
        if (const Backdrop *named = namedFirst(text)) {
            return *named;
        }
    }
    // Not Qt's hash, which differs from run to run.
    const quint16 sum = qChecksum(QString{prompt.scene + prompt.title}.toUtf8());
    return *all.at(sum % all.size());
}

void Backdrop::paint(QPainter &cover, QSize size, QPointF focus, const Palette &colors) const
{
    const double blur = farBlur * qMin(size.width(), size.height()) / 1000;
    softLayer::put(cover, size, blur, [&](QPainter &painter) {
        Canvas canvas{painter, size, focus, colors, QRandomGenerator{1}};
        farPart(canvas);
    });
    Canvas canvas{cover, size, focus, colors, QRandomGenerator{2}};
    cover.save();
    nearPart(canvas);
    cover.restore();
}

} // namespace quilmora::localservice
