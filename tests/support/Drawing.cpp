#include "support/Drawing.h"

#include "support/SilentEngine.h"
#include "ui/theme/Symbol.h"

#include <QFile>
#include <QFontMetricsF>
#include <QWidget>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

/// Draws nothing and notes what texts and pictures it is asked to draw.
class NotingEngine final : public SilentEngine
{
public:
    NotingEngine(QList<DrawnText> &textList, QList<DrawnPixmap> &pixmapList)
        : m_texts{textList},
          m_pixmaps{pixmapList}
    {
    }

    void drawPixmap(const QRectF &to, const QPixmap &pixmap, const QRectF & /*from*/) override
    {
        m_pixmaps.append({pixmap, state->transform().mapRect(to)});
    }

    void drawTextItem(const QPointF &baseline, const QTextItem &item) override
    {
        const QFontMetricsF metrics{item.font()};
        const QRectF box = state->transform().mapRect(
            QRectF{baseline.x(), baseline.y() - metrics.ascent(), item.width(), metrics.height()});
        const QColor color = state->pen().color();
        // A text in several fonts comes in pieces, of which the later ones follow on the first.
        if (!m_texts.isEmpty()) {
            DrawnText &last = m_texts.last();
            const bool follows =
                std::abs(last.box.right() - box.left()) < 0.5 && std::abs(last.box.top() - box.top()) < 0.5;
            if (follows && last.font == item.font() && last.color == color) {
                last.text += item.text();
                last.box.setRight(box.right());
                return;
            }
        }
        m_texts.append({item.text(), item.font(), color, box});
    }

private:
    QList<DrawnText> &m_texts;
    QList<DrawnPixmap> &m_pixmaps;
};

const DrawnText *find(const QList<DrawnText> &texts, const QString &text)
{
    const auto found = std::find_if(texts.begin(), texts.end(),
                                    [&text](const DrawnText &drawn) { return drawn.text == text; });
    return found == texts.end() ? nullptr : &*found;
}

} // namespace

QImage DrawnPixmap::leftHalf() const
{
    return pixmap.toImage().copy(0, 0, pixmap.width() / 2, pixmap.height());
}

Drawing::Drawing(QWidget *widget)
{
    NotingEngine engine{m_allTexts, m_allPixmaps};
    SilentDevice device{*widget, engine};
    widget->render(&device, {}, {}, QWidget::DrawChildren);
}

QStringList Drawing::strings() const
{
    QStringList strings;
    for (const DrawnText &drawn : m_allTexts) {
        strings.append(drawn.text);
    }
    return strings;
}

QString Drawing::lookOf(const QString &text) const
{
    const DrawnText *drawn = find(m_allTexts, text);
    if (drawn == nullptr) {
        return u"not drawn"_s;
    }
    return look(drawn->font.pixelSize(), static_cast<QFont::Weight>(drawn->font.weight()), drawn->color);
}

QRectF Drawing::placeOf(const QString &text) const
{
    const DrawnText *drawn = find(m_allTexts, text);
    return drawn == nullptr ? QRectF{} : drawn->box;
}

QRectF Drawing::symbol(const QString &name, int pixelSize, QFont::Weight weight, const QColor &color) const
{
    if (!QFile::exists(u":/symbols/"_s + name + u".svg"_s)) {
        // Drawn as nothing, like any other that is missing.
        return {};
    }
    constexpr double sidePerTextSize = 1.3;
    const int side = qRound(pixelSize * sidePerTextSize);
    for (const bool isMoved : {false, true}) {
        const QImage expected = Symbol::pixmap(name, side, color, 1.0, weight, isMoved).toImage();
        for (const DrawnPixmap &drawn : m_allPixmaps) {
            if (drawn.pixmap.size() == expected.size() && drawn.pixmap.toImage() == expected) {
                return drawn.place;
            }
        }
    }
    return {};
}

QRectF Drawing::symbol(const QString &name, int pixelSize, QFont::Weight weight, ColorRole role) const
{
    return symbol(name, pixelSize, weight, themeColor(role));
}

QString Drawing::look(int pixelSize, QFont::Weight weight, ColorRole role)
{
    return look(pixelSize, weight, themeColor(role));
}

QString Drawing::look(int pixelSize, QFont::Weight weight, const QColor &color)
{
    return u"%1 px, weight %2, %3"_s.arg(pixelSize).arg(weight).arg(color.name(QColor::HexArgb).toUpper());
}

} // namespace quilmora::test
