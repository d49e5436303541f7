#include "screens/common/MaskedField.h"

#include "screens/common/Fonts.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

struct Dot {
    int left;
    int width;
};

/// The runs of text colour on the field's middle line.
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
    void init();
    void everyCharacterIsADotOfTheSameSize();
    void anEmptyFieldHasNoDots();
    void aLongTextIsScrolledToTheCursorAndStaysInsideTheField();
    void selectedDotsAreDrawnInTheColourOfSelectedText();
    void aMegabyteIsDrawnToo();

private:
    QList<Dot> dots() const { return dotsIn(*field, screenCapture::capture(field.get())); }

    std::unique_ptr<MaskedField> field;
};

void MaskedFieldTest::init()
{
    field = std::make_unique<MaskedField>();
    field->setFont(systemFont(12));
    field->setTextMargins(4, 0, 4, 0);
    field->resize(200, 26);
}

void MaskedFieldTest::everyCharacterIsADotOfTheSameSize()
{
    field->setText(u"钥i中W"_s);
    const QList<Dot> shown = dots();
    QCOMPARE(shown.size(), 4);
    for (const Dot &dot : shown) {
        QVERIFY2(dot.width >= 5 && dot.width <= 7, qPrintable(QString::number(dot.width)));
    }
    QVERIFY(shown.constFirst().left > 4);
    QCOMPARE(shown[2].left - shown[1].left, shown[1].left - shown[0].left);
}

void MaskedFieldTest::anEmptyFieldHasNoDots()
{
    QCOMPARE(dots().size(), 0);
}

void MaskedFieldTest::aLongTextIsScrolledToTheCursorAndStaysInsideTheField()
{
    field->setText(QString{100, u'k'});
    const QList<Dot> atEnd = dots();
    QVERIFY(atEnd.size() > 10 && atEnd.size() < 20);
    // The last one ends where the cursor stands, inside the margin.
    const Dot last = atEnd.constLast();
    QVERIFY(last.left + last.width <= field->width() - 5);
    QVERIFY(last.left + last.width > field->width() - 20);
    QVERIFY(atEnd.constFirst().left >= 4);

    field->setCursorPosition(0);
    const QList<Dot> atStart = dots();
    QVERIFY(atStart.constFirst().left < 16);
    QCOMPARE(atStart.constFirst().width, atStart[1].width);
}

void MaskedFieldTest::selectedDotsAreDrawnInTheColourOfSelectedText()
{
    QPalette colours = field->palette();
    colours.setColor(QPalette::Text, Qt::black);
    colours.setColor(QPalette::Base, Qt::white);
    colours.setColor(QPalette::Highlight, Qt::blue);
    colours.setColor(QPalette::HighlightedText, Qt::green);
    field->setPalette(colours);
    field->setText(u"abc"_s);
    field->setSelection(1, 1);
    const QImage picture = screenCapture::capture(field.get());
    QCOMPARE(dotsIn(*field, picture).size(), 2);
    int green = 0;
    for (int x = 0; x < picture.width(); ++x) {
        green += picture.pixelColor(x, picture.height() / 2) == QColor{Qt::green} ? 1 : 0;
    }
    QVERIFY(green >= 3);
}

void MaskedFieldTest::aMegabyteIsDrawnToo()
{
    field->setMaxLength(2'000'000);
    field->setText(QString{1'000'000, u'k'});
    QVERIFY(dots().size() > 10);
}

int main(int argc, char *argv[])
{
    return runScreenTest<MaskedFieldTest>(argc, argv);
}

#include "MaskedFieldTest.moc"
