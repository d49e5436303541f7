#include "ui/widgets/TextLabel.h"

#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QPainter>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class TextLabelTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsFromOutsideAreDrawnAsTheyAre_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("markup") << u"<b>bold</b><br>&lt;x&gt;"_s;
        QTest::newRow("ampersands") << u"R&D && &File"_s;
    }

    void textsFromOutsideAreDrawnAsTheyAre()
    {
        QFETCH(const QString, text);
        TextLabel label{text, {13}};
        label.resize(label.sizeHint());
        QCOMPARE(accessible::interfaceOf(&label)->text(QAccessible::Name), text);
        // As wide as the characters themselves, and drawn like them.
        const QFontMetrics metrics{label.font()};
        QCOMPARE(label.sizeHint().width(), metrics.boundingRect({0, 0, 2000, 100}, 0, text).width());
        QImage expected{label.size(), QImage::Format_ARGB32};
        expected.fill(Qt::transparent);
        QPainter painter{&expected};
        painter.setFont(label.font());
        painter.setPen(themeColor(ColorRole::primaryText));
        painter.drawText(label.rect(), Qt::AlignLeft | Qt::AlignVCenter, text);
        painter.end();
        const QImage shown = screenCapture::capture(&label);
        int differing = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                differing +=
                    screenCapture::isClose(shown.pixelColor(x, y), expected.pixelColor(x, y), 24) ? 0 : 1;
            }
        }
        QCOMPARE(differing, 0);
    }

    void theColorFollowsTheScheme()
    {
        TextLabel label{u"文"_s, {13, QFont::Normal, ColorRole::red}};
        showWindow(label, {100, 40});
        QVERIFY(screenCapture::countOf(screenCapture::capture(&label, 3.0), QColor{0xFF3B30U}, {}, 2) > 5);
        Theme::current().setScheme(ColorScheme::dark);
        QTRY_VERIFY(screenCapture::countOf(screenCapture::capture(&label, 3.0), QColor{0xFF453AU}, {}, 2) >
                    5);
        QVERIFY(screenCapture::countOf(screenCapture::capture(&label, 3.0), QColor{0xFF3B30U}, {}, 2) == 0);
        Theme::current().setScheme(ColorScheme::light);
    }

    void sizesArePixelsAndWeightsAreKept()
    {
        const TextLabel label{u"文"_s, {22, QFont::Bold}};
        QCOMPARE(label.font().pixelSize(), 22);
        QCOMPARE(label.font().weight(), QFont::Bold);
    }
};

QUILMORA_TEST(TextLabelTest, runScreenTest)

#include "TextLabelTest.moc"
