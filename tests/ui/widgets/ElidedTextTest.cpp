#include "ui/widgets/ElidedText.h"

#include "support/ScreenTest.h"
#include "ui/theme/Fonts.h"

#include <QFontMetrics>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class ElidedTextTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFirstLinesAreShown_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QStringList>("lines");
        QTest::newRow("nothing") << QString{} << QStringList{QString{}};
        QTest::newRow("one line") << u"标题"_s << QStringList{u"标题"_s};
        QTest::newRow("two lines") << u"标题\n背景"_s << QStringList{u"标题"_s, u"背景"_s};
        QTest::newRow("an empty line between") << u"标题\n\n"_s << QStringList{u"标题"_s, QString{}};
        QTest::newRow("breaks of other systems") << u"标题\r\n背景"_s << QStringList{u"标题"_s, u"背景"_s};
        QTest::newRow("markup") << u"<b>a</b>"_s << QStringList{u"<b>a</b>"_s};
        QTest::newRow("an ampersand") << u"a & b"_s << QStringList{u"a & b"_s};
        QTest::newRow("a break at the end") << u"一\n二\n"_s << QStringList{u"一"_s, u"二"_s};
        QTest::newRow("more lines") << u"一\n二\n三\n四"_s << QStringList{u"一"_s, u"二…"_s};
        QTest::newRow("a blank before the ellipsis") << u"一\n二 \n三"_s << QStringList{u"一"_s, u"二…"_s};
    }

    void theFirstLinesAreShown()
    {
        QFETCH(const QString, text);
        QFETCH(const QStringList, lines);
        QCOMPARE(linesOf(text), lines);
        QCOMPARE(linesOf(u"一\n二\n三\n四"_s, 200, 3), (QStringList{u"一"_s, u"二"_s, u"三…"_s}));
    }

    void longTextsEndWithAnEllipsisAndNoLineIsTooWide_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("Chinese without blanks") << u"字"_s.repeated(500);
        QTest::newRow("Latin words") << u"some words in a row "_s.repeated(50);
        QTest::newRow("one endless word") << u"x"_s.repeated(3000);
        QTest::newRow("emoji") << u"👨‍👩‍👧‍👦🎬"_s.repeated(100);
        QTest::newRow("right to left") << u"שלום עולם "_s.repeated(50);
        QTest::newRow("mixed") << u"标题 שלום title مرحبا "_s.repeated(50);
        QTest::newRow("a short and an endless line") << u"短\n"_s + u"长"_s.repeated(500);
        QTest::newRow("longer than is ever laid out") << u"word "_s.repeated(100'000);
    }

    void longTextsEndWithAnEllipsisAndNoLineIsTooWide()
    {
        QFETCH(const QString, text);
        const QFontMetrics metrics{systemFont(12)};
        for (const int width : {60, 200, 351}) {
            const QStringList lines = linesOf(text, width);
            QCOMPARE(lines.size(), 2);
            for (const QString &line : lines) {
                QVERIFY2(metrics.horizontalAdvance(line) <= width + 1, qPrintable(line));
            }
        }
        const QStringList lines = linesOf(text);
        QVERIFY(!lines.at(0).contains(u'…'));
        QVERIFY2(lines.at(1).endsWith(u'…'), qPrintable(lines.at(1)));
        QVERIFY(lines.at(1).size() > 3);
        // Nothing is lost or doubled between the two.
        QString shown = lines.at(0) + lines.at(1).chopped(1);
        QString start = text.left(shown.size() + 8);
        QVERIFY(start.remove(u' ').remove(u'\n').startsWith(shown.remove(u' ')));
    }

    void aCharacterOfSeveralPartsIsNotTornApart()
    {
        const QString family = u"👨‍👩‍👧‍👦"_s;
        const QStringList lines = linesOf(family.repeated(3000));
        QCOMPARE(lines.at(0).size() % family.size(), 0);
        QCOMPARE((lines.at(1).size() - 1) % family.size(), 0);
    }

    void theHeightIsThatOfTheLines()
    {
        const QFont font = systemFont(12);
        QCOMPARE((ElidedText{u"一"_s, font, 2}.height(200)), QFontMetrics{font}.height());
        QCOMPARE((ElidedText{u"一\n二\n三"_s, font, 2}.height(200)), 2 * QFontMetrics{font}.height());
        QCOMPARE(ElidedText::heightOfLines(font, 3), 3 * QFontMetrics{font}.height());
    }

private:
    static QStringList linesOf(const QString &text, int width = 200, int count = 2)
    {
        return ElidedText{text, systemFont(12), count}.lines(width);
    }
};

QUILMORA_TEST(ElidedTextTest, runScreenTest)
#include "ElidedTextTest.moc"
