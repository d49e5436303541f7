#include "ui/widgets/MaskedField.h"

#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Fonts.h"

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

struct Dot {
    int left;
    int width;
};

/// The runs of text color on the field's middle line.
QList<Dot> dotsIn(const MaskedField &field, const QImage &picture)
{
    QList<Dot> dots;
    const int y = picture.height() / 2;
    bool inside = false;
    for (int x = 0; x < picture.width(); ++x) {
        const bool dark =
            screenCapture::isClose(picture.pixelColor(x, y), field.palette().color(QPalette::Text), 100);
        if (dark && !inside) {
            dots.append({x, 0});
        }
        if (dark) {
            ++dots.last().width;
        }
        inside = dark;
    }
    return dots;
}

} // namespace

class MaskedFieldTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_field = std::make_unique<MaskedField>();
        m_field->setFont(systemFont(12));
        m_field->setTextMargins(4, 0, 4, 0);
        m_field->resize(200, 26);
    }

    void everyCharacterIsADotOfTheSameSize()
    {
        m_field->setText(u"钥i中W"_s);
        const QList<Dot> shown = dots();
        QCOMPARE(shown.size(), 4);
        for (const Dot &dot : shown) {
            QVERIFY2(dot.width >= 5 && dot.width <= 7, qPrintable(QString::number(dot.width)));
        }
        QVERIFY(shown.constFirst().left > 4);
        QCOMPARE(shown[2].left - shown[1].left, shown[1].left - shown[0].left);
    }

    void anEmptyFieldHasNoDots() { QCOMPARE(dots().size(), 0); }

    void aLongTextIsScrolledToTheCursorAndStaysInsideTheField()
    {
        m_field->setText(QString{100, u'k'});
        const QList<Dot> atEnd = dots();
        QVERIFY(atEnd.size() > 10 && atEnd.size() < 20);
        // The last one ends where the cursor stands, inside the margin.
        const Dot last = atEnd.constLast();
        QVERIFY(last.left + last.width <= m_field->width() - 5);
        QVERIFY(last.left + last.width > m_field->width() - 20);
        QVERIFY(atEnd.constFirst().left >= 4);

        m_field->setCursorPosition(0);
        const QList<Dot> atStart = dots();
        QVERIFY(atStart.constFirst().left < 16);
        QCOMPARE(atStart.constFirst().width, atStart[1].width);
    }

    void selectedDotsAreDrawnInTheColorOfSelectedText()
    {
        QPalette colors = m_field->palette();
        colors.setColor(QPalette::Text, Qt::black);
        colors.setColor(QPalette::Base, Qt::white);
        colors.setColor(QPalette::Highlight, Qt::blue);
        colors.setColor(QPalette::HighlightedText, Qt::green);
        m_field->setPalette(colors);
        m_field->setText(u"abc"_s);
        m_field->setSelection(1, 1);
        const QImage picture = screenCapture::capture(m_field.get());
        QCOMPARE(dotsIn(*m_field, picture).size(), 2);
        int green = 0;
        for (int x = 0; x < picture.width(); ++x) {
            green += picture.pixelColor(x, picture.height() / 2) == QColor{Qt::green} ? 1 : 0;
        }
        QVERIFY(green >= 3);
    }

    void aMegabyteIsDrawnToo()
    {
        m_field->setMaxLength(2'000'000);
        m_field->setText(QString{1'000'000, u'k'});
        QVERIFY(dots().size() > 10);
    }

private:
    QList<Dot> dots() const { return dotsIn(*m_field, screenCapture::capture(m_field.get())); }

    std::unique_ptr<MaskedField> m_field;
};

QUILMORA_TEST(MaskedFieldTest, runScreenTest)

#include "MaskedFieldTest.moc"
