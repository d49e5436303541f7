#include "screens/generate/MessageView.h"
#include "support/AccessibleFinder.h"
#include "support/Drawing.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/theme/Fonts.h"
#include "ui/widgets/ElidedText.h"
#include "ui/widgets/LabeledField.h"
#include "ui/widgets/TextEditor.h"
#include "ui/widgets/TextField.h"
#include "ui/widgets/TextLabel.h"

#include <QFontMetrics>
#include <QMenu>
#include <QPainter>

#include <algorithm>
#include <array>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

/// The runs of text color on the field's middle line: for each its start and its length.
QList<QPoint> dotsIn(const MaskedField &field, const QImage &picture)
{
    return screenCapture::runs(picture.width(), [&](int x) {
        return screenCapture::isClose(picture.pixelColor(x, picture.height() / 2),
                                      field.palette().color(QPalette::Text), 100);
    });
}

bool isChinese(const QString &text)
{
    return std::any_of(text.begin(), text.end(),
                       [](QChar letter) { return letter.script() == QChar::Script_Han; });
}

} // namespace

/// The widgets that show texts, and the menus that a right click on them opens.
class TextWidgetsTest final : public QObject
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
        QCOMPARE(dots().size(), 0);
        m_field->setText(u"钥i中W"_s);
        const QList<QPoint> shown = dots();
        QCOMPARE(shown.size(), 4);
        for (const QPoint dot : shown) {
            QVERIFY2(dot.y() >= 5 && dot.y() <= 7, qPrintable(QString::number(dot.y())));
        }
        QVERIFY(shown.constFirst().x() > 4);
        QCOMPARE(shown[2].x() - shown[1].x(), shown[1].x() - shown[0].x());
    }

    void aLongTextIsScrolledToTheCursorAndStaysInsideTheField()
    {
        m_field->setMaxLength(2'000'000);
        for (const int length : {100, 1'000'000}) {
            m_field->setText(QString{length, u'k'});
            const QList<QPoint> atEnd = dots();
            QVERIFY(atEnd.size() > 10 && atEnd.size() < 20);
            // The last one ends where the cursor stands, inside the margin.
            const int end = atEnd.constLast().x() + atEnd.constLast().y();
            QVERIFY(end <= m_field->width() - 5);
            QVERIFY(end > m_field->width() - 20);
            QVERIFY(atEnd.constFirst().x() >= 4);

            m_field->setCursorPosition(0);
            const QList<QPoint> atStart = dots();
            QVERIFY(atStart.constFirst().x() < 16);
            QCOMPARE(atStart.constFirst().y(), atStart[1].y());
        }
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
        const QRect line{0, picture.height() / 2, picture.width(), 1};
        QVERIFY(screenCapture::countOf(picture, Qt::green, line, 0) >= 3);
    }

    void theFirstLinesAreShown()
    {
        const QList<std::pair<QString, QStringList>> rows{
            {{}, {QString{}}},
            {u"标题"_s, {u"标题"_s}},
            {u"标题\n背景"_s, {u"标题"_s, u"背景"_s}},
            {u"标题\n\n"_s, {u"标题"_s, QString{}}},
            {u"标题\r\n背景"_s, {u"标题"_s, u"背景"_s}},
            {u"<b>a</b>"_s, {u"<b>a</b>"_s}},
            {u"a & b"_s, {u"a & b"_s}},
            {u"一\n二\n"_s, {u"一"_s, u"二"_s}},
            {u"一\n二\n三\n四"_s, {u"一"_s, u"二…"_s}},
            {u"一\n二 \n三"_s, {u"一"_s, u"二…"_s}},
        };
        for (const auto &[text, lines] : rows) {
            QCOMPARE(linesOf(text), lines);
        }
        QCOMPARE(linesOf(u"一\n二\n三\n四"_s, 200, 3), (QStringList{u"一"_s, u"二"_s, u"三…"_s}));
    }

    void longTextsEndWithAnEllipsisAndNoLineIsTooWide()
    {
        const QStringList texts{
            u"字"_s.repeated(500),
            u"some words in a row "_s.repeated(50),
            u"x"_s.repeated(3000),
            u"👨‍👩‍👧‍👦🎬"_s.repeated(100),
            u"שלום עולם "_s.repeated(50),
            u"标题 שלום title مرحبا "_s.repeated(50),
            u"短\n"_s + u"长"_s.repeated(500),
            // Longer than is ever laid out.
            u"word "_s.repeated(100'000),
        };
        for (const QString &text : texts) {
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
    }

    void partsAndLinesStayWhole()
    {
        // A character of several parts is not torn apart.
        const QString family = u"👨‍👩‍👧‍👦"_s;
        const QStringList lines = linesOf(family.repeated(3000));
        QCOMPARE(lines.at(0).size() % family.size(), 0);
        QCOMPARE((lines.at(1).size() - 1) % family.size(), 0);
        const QFont font = systemFont(12);
        QCOMPARE((ElidedText{u"一"_s, font, 2}.height(200)), QFontMetrics{font}.height());
        QCOMPARE((ElidedText{u"一\n二\n三"_s, font, 2}.height(200)), 2 * QFontMetrics{font}.height());
        QCOMPARE(ElidedText::heightOfLines(font, 3), 3 * QFontMetrics{font}.height());
    }

    void textsFromOutsideAreDrawnAsTheyAre()
    {
        for (const QString &text : {u"<b>bold</b><br>&lt;x&gt;"_s, u"R&D && &File"_s}) {
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
            QCOMPARE(screenCapture::countDifferent(shown, expected), 0);
        }
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

    void everyCommandOfTheirMenusIsChinese()
    {
        for (const auto &make : std::array<QWidget *(*)(QWidget *), 3>{
                 [](QWidget *parent) -> QWidget * { return makeTextField(u"名字"_s, u"提示"_s, 13, parent); },
                 [](QWidget *parent) -> QWidget * {
                     return new TextEditor{13, parent};
                 },
                 [](QWidget *parent) -> QWidget * {
                     return new MessageView{u"消息"_s, 13, u"长消息"_s, parent};
                 },
             }) {
            QWidget window;
            QWidget *const text = make(&window);
            text->resize(300, 80);
            showWindow(window, {400, 200});

            QMenu *const menu = openMenu(text);
            QVERIFY(menu != nullptr);
            int commands = 0;
            for (const QAction *action : menu->actions()) {
                if (!action->isSeparator()) {
                    ++commands;
                    // Without its key, which follows a tab.
                    QVERIFY2(isChinese(action->text().section(u'\t', 0, 0)), qPrintable(action->text()));
                    // As a screen reader says it, too.
                    QVERIFY2(!action->text().contains(u'&'), qPrintable(action->text()));
                }
            }
            QVERIFY(commands >= 2);
            const Drawing drawing{menu};
            QVERIFY(drawing.texts().size() >= commands);
            for (const DrawnText &drawn : drawing.texts()) {
                QVERIFY2(!drawn.text.contains(u'(') && !drawn.text.contains(u'&'), qPrintable(drawn.text));
                QCOMPARE(drawn.font.pixelSize(), 13);
            }
            menu->close();
        }
    }

private:
    QList<QPoint> dots() const { return dotsIn(*m_field, screenCapture::capture(m_field.get())); }

    std::unique_ptr<MaskedField> m_field;

    static QStringList linesOf(const QString &text, int width = 200, int count = 2)
    {
        return ElidedText{text, systemFont(12), count}.lines(width);
    }
};

QUILMORA_TEST(TextWidgetsTest, runScreenTest)
#include "TextWidgetsTest.moc"
