#include "model/CoverInputs.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/GenerateScreen.h"
#include "support/Placement.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"

#include <QLabel>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

namespace {

const QColor yellow = srgb(1.0, 0.78, 0.2);

/// How thick the line of one of these colors along the left edge is, halfway down, in device-independent
/// pixels.
double leftLineWidth(QWidget *piece, const QList<QColor> &colors, int tolerance = 4)
{
    constexpr int ratio = 8;
    const QImage face = screenCapture::capture(piece, ratio);
    int width = 0;
    while (std::any_of(colors.begin(), colors.end(), [&](const QColor &color) {
        return screenCapture::isClose(face.pixelColor(width, face.height() / 2), color, tolerance);
    })) {
        ++width;
    }
    return static_cast<double>(width) / ratio;
}

/// The grey line around options, beside the ground and on it.
QList<QColor> optionBorder(const QColor &fill)
{
    const QColor bare = srgb(0x8E / 255.0, 0x8E / 255.0, 0x93 / 255.0, 0.25);
    return {bare, screenCapture::over(bare, fill)};
}

QColor middleLeft(QWidget *piece, double x)
{
    return screenCapture::colorAt(screenCapture::capture(piece), {x, piece->height() / 2.0});
}

} // namespace

/// The numbers of the form, read from what is drawn.
class FormMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<GenerateScreen>(); }
    void cleanup() { m_screen.reset(); }

    void pageAndGaps()
    {
        const QWidget *form = piece(texts::steps.at(0))->parentWidget();
        const QRect content = m_screen->view->widget()->rect();
        QCOMPARE(content.size(), m_screen->view->viewport()->size().expandedTo(content.size()));
        QCOMPARE(form->geometry().topLeft(), QPoint(32, 32));
        QCOMPARE(form->width(), content.width() - 2 * 32);
        QVERIFY(content.height() - form->geometry().bottom() - 1 >= 32);
        // The window's own background shows between the pieces and around them.
        const QImage seen = screenCapture::capture(m_screen->view.get());
        const int between = placement::inWindow(piece(texts::steps.at(1))).top() - 12;
        for (const QPoint place : {QPoint{10, 10}, QPoint{500, 20}, QPoint{500, between}}) {
            QCOMPARE(seen.pixelColor(place).alpha(), 0);
        }
        QList<QWidget *> sections = form->findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
        sections.removeIf([](const QWidget *section) { return !section->isVisible(); });
        QCOMPARE(sections.size(), 6);
        for (qsizetype i = 1; i < sections.size(); ++i) {
            // The button has four more above it.
            QCOMPARE(placement::gapBelow(sections.at(i - 1), sections.at(i)), i == 5 ? 28 : 24);
        }
        QCOMPARE(m_screen->generateButton()->width(), form->width());
        const QWidget *face = m_screen->facePhoto()->parentWidget();
        const QWidget *style = m_screen->stylePicture()->parentWidget();
        QCOMPARE(placement::gapBeside(face, style), 16);
        QVERIFY(std::abs(style->width() - face->width()) <= 1);
    }

    void stepHeaders()
    {
        for (int step = 0; step < texts::steps.size(); ++step) {
            // The first item of the section, which has the same name.
            QWidget *header = m_screen->find<QWidget>(texts::steps.at(step))->layout()->itemAt(0)->widget();
            const Drawing drawn{header};
            const QString number = QString::number(step + 1);
            QCOMPARE(drawn.lookOf(number), Drawing::look(12, QFont::Bold, Qt::white));
            QCOMPARE(drawn.lookOf(texts::steps.at(step)),
                     Drawing::look(14, QFont::DemiBold, ColorRole::primaryText));
            // The disc: as wide as high, with the number in its middle.
            const QImage face = screenCapture::capture(header, 4.0);
            const auto extent = [&](int count, const auto &pixelAt) {
                int inside = 0;
                for (int i = 0; i < count; ++i) {
                    inside += pixelAt(i).alpha() > 127 ? 1 : 0;
                }
                return inside / 4.0;
            };
            const int middle = face.height() / 2;
            QCOMPARE(extent(25 * 4, [&](int x) { return face.pixelColor(x, middle); }), 22.0);
            QCOMPARE(extent(face.height(), [&](int y) { return face.pixelColor(44, y); }), 22.0);
            QCOMPARE(face.pixelColor(2, middle), srgb(0.18, 0.72, 0.45));
            QVERIFY(placement::centredAcross(drawn.placeOf(number), QRectF{0, 0, 22, 22}));
            QVERIFY(std::abs(drawn.placeOf(number).center().y() - header->height() / 2.0) <= 0.5);
        }
    }

    void sizeCards()
    {
        const QColor dark = srgb(0.2, 0.2, 0.1);
        for (const CoverSize &size : CoverSize::presets()) {
            QWidget *card = piece(size.name);
            if (size != CoverSize::presets().constFirst()) {
                const Drawing plain{card};
                QCOMPARE(plain.lookOf(size.name), Drawing::look(13, QFont::DemiBold, ColorRole::primaryText));
                QCOMPARE(plain.lookOf(size.ratio),
                         Drawing::look(10, QFont::Normal, ColorRole::secondaryText));
                const QRectF symbol = plain.symbol(size.iconName, 16, QFont::Medium, ColorRole::primaryText);
                const QRectF name = plain.placeOf(size.name);
                const QRectF ratio = plain.placeOf(size.ratio);
                QCOMPARE(qRound(symbol.top()), 14);
                QCOMPARE(qRound(name.top() - symbol.bottom()), 6);
                QCOMPARE(qRound(ratio.top() - name.bottom()), 6);
                QCOMPARE(qRound(card->height() - ratio.bottom()), 14);
                for (const QRectF &line : {symbol, name, ratio}) {
                    QVERIFY(placement::centredAcross(line, card->rect()));
                }
                QCOMPARE(leftLineWidth(card, optionBorder(Qt::white)), 1.0);
                QCOMPARE(middleLeft(card, 8), QColor{Qt::white});
            }
            click(card);
            const Drawing chosen{card};
            QCOMPARE(chosen.lookOf(size.name), Drawing::look(13, QFont::DemiBold, dark));
            QCOMPARE(chosen.lookOf(size.ratio), Drawing::look(10, QFont::Normal, srgb(0.3, 0.25, 0.05)));
            QVERIFY(!chosen.symbol(size.iconName, 16, QFont::Medium, dark).isNull());
            QCOMPARE(leftLineWidth(card, {srgb(0.95, 0.7, 0.1)}, 0), 1.5);
            QCOMPARE(middleLeft(card, 8), yellow);
            QCOMPARE(CornerShape{card}.differenceFromCircle(10), QString{});
        }
        QWidget *first = piece(CoverSize::presets().constFirst().name);
        QCOMPARE(CornerShape{first}.differenceFromCircle(10), QString{});
        // A scheme that is set repaints the screen.
        QCOMPARE(middleLeft(first, 6), QColor(0xFFFFFFU));
        Theme::current().setScheme(ColorScheme::dark);
        QCOMPARE(middleLeft(first, 6), QColor(0x1E1E1EU));
        Theme::current().setScheme(ColorScheme::light);
        QCOMPARE(middleLeft(first, 6), QColor(0xFFFFFFU));
    }

    void textFields()
    {
        const QString hint = Drawing::look(13, QFont::Normal, ColorRole::tertiaryText);
        QCOMPARE(drawing().lookOf(u"我靠这个赚了100万 / 这个秘密改变了一切"_s), hint);
        QCOMPARE(drawing().lookOf(u"豪华办公室 / 未来科技感 / 金色财富主题"_s), hint);
        typeInto(m_screen->titleField(), u"题"_s);
        const Drawing drawn = drawing();
        for (const QString &label : {texts::title, texts::scene}) {
            QCOMPARE(drawn.lookOf(label), Drawing::look(12, QFont::Normal, ColorRole::secondaryText));
        }
        for (const QString &below : {texts::titleHint, texts::sceneHint}) {
            QCOMPARE(drawn.lookOf(below), Drawing::look(11, QFont::Normal, ColorRole::tertiaryText));
        }
        QCOMPARE(drawn.lookOf(u"题"_s), Drawing::look(13, QFont::Normal, ColorRole::primaryText));
        // Label above, hint below.
        QVERIFY(drawn.placeOf(texts::title).bottom() < drawn.placeOf(u"题"_s).top());
        QVERIFY(drawn.placeOf(u"题"_s).bottom() < drawn.placeOf(texts::titleHint).top());
    }

    void expressionChips()
    {
        for (const Emotion &emotion : Emotion::presets()) {
            QWidget *chip = piece(emotion.name);
            const auto check = [&](QFont::Weight weight, const QColor &color, const QColor &fill) {
                const Drawing drawn{chip};
                QCOMPARE(drawn.lookOf(emotion.name), Drawing::look(12, weight, color));
                QCOMPARE(placement::padding(chip->rect(), drawn.placeOf(emotion.name)), u"14, 7, 14, 7"_s);
                QCOMPARE(leftLineWidth(chip, optionBorder(fill)), 1.0);
                QCOMPARE(middleLeft(chip, 10), fill);
                QCOMPARE(CornerShape{chip}.differenceFromCircle(chip->height() / 2.0), QString{});
            };
            if (emotion != Emotion::presets().constFirst()) {
                check(QFont::Normal, themeColor(ColorRole::primaryText), Qt::white);
            }
            click(chip);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            check(QFont::DemiBold, srgb(0.1, 0.1, 0.1), yellow);
        }
        QCOMPARE(
            placement::gapBeside(piece(Emotion::presets().at(0).name), piece(Emotion::presets().at(1).name)),
            8);
        // The last one has a field of its own.
        QLineEdit *field = m_screen->customExpression();
        typeInto(field, u"眨眼"_s);
        QCOMPARE(Drawing{field}.lookOf(u"眨眼"_s), Drawing::look(13, QFont::Normal, ColorRole::primaryText));
        QVERIFY(placement::gapBelow(piece(Emotion::presets().constLast().name), field) > 0);
    }

    void emptyUploadButton()
    {
        const Drawing whole = drawing();
        const QString grey = Drawing::look(12, QFont::Normal, ColorRole::secondaryText);
        for (const QString &title : {texts::facePhoto, texts::stylePicture}) {
            QCOMPARE(whole.lookOf(title), grey);
            auto *button = m_screen->find<QAbstractButton>(title);
            QVERIFY(button->height() >= 140);
            QCOMPARE(button->width(), button->parentWidget()->width());
            const QWidget *label = accessible::find<QLabel>(button->parentWidget(), title);
            QCOMPARE(placement::gapBelow(label, button), 8);
            const Drawing drawn{button};
            const QRectF symbol =
                drawn.symbol(u"square.and.arrow.up"_s, 22, QFont::Normal, ColorRole::secondaryText);
            QVERIFY(!symbol.isNull());
            QCOMPARE(drawn.lookOf(texts::upload), grey);
            const QRectF text = drawn.placeOf(texts::upload);
            QVERIFY(placement::centredAcross(symbol, button->rect()));
            QVERIFY(placement::centredAcross(text, button->rect()));
            QVERIFY(std::abs(symbol.top() - (button->height() - text.bottom())) <= 1);
        }
    }

    void uploadErrorAndRemoval()
    {
        QWidget *face = m_screen->facePhoto();
        m_screen->pick(m_screen->facePhoto(), {160, 90});
        const QString large = m_screen->home.path(u"large.png"_s);
        m_screen->panels.answerReference(samplePictures::write(large, samplePictures::pngOfSize(12 << 20)));
        click(face);
        const QString red = Drawing::look(11, QFont::Normal, ColorRole::redText);
        const QString message = u"图片过大（12.0M），不能超过 10M"_s;
        QWidget *error = piece(message);
        QCOMPARE(Drawing{error}.lookOf(message), red);
        QWidget *remove = piece(texts::remove);
        const Drawing drawn{remove};
        QCOMPARE(drawn.lookOf(texts::remove), red);
        const QRectF symbol = drawn.symbol(u"xmark.circle"_s, 11, QFont::Normal, ColorRole::redText);
        QVERIFY(!symbol.isNull());
        QCOMPARE(qRound(drawn.placeOf(texts::remove).left() - symbol.right()), 4);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
        QCOMPARE(placement::gapBelow(face, error), 8);
        QCOMPARE(placement::gapBelow(error, remove), 8);
        QCOMPARE(placement::inWindow(remove).left(), placement::inWindow(face).left());
    }

    void advancedSection()
    {
        QWidget *header = piece(texts::advancedOptions);
        const Drawing open{header};
        QCOMPARE(open.lookOf(texts::advancedOptions),
                 Drawing::look(13, QFont::Medium, ColorRole::primaryText));
        const QRectF symbol = open.symbol(u"gearshape"_s, 13, QFont::Medium, ColorRole::primaryText);
        QVERIFY(!symbol.isNull());
        QVERIFY(symbol.right() < open.placeOf(texts::advancedOptions).left());
        const QRectF up = open.symbol(u"chevron.up"_s, 10, QFont::Normal, ColorRole::primaryText);
        QCOMPARE(qRound(up.right()), header->width());
        click(header);
        QCOMPARE(Drawing{header}.symbol(u"chevron.down"_s, 10, QFont::Normal, ColorRole::primaryText), up);
        click(header);
        QWidget *editor = m_screen->advancedEditor();
        QCOMPARE(editor->height(), 80);
        QCOMPARE(placement::gapBelow(m_screen->find<QLabel>(texts::instructions), editor), 8);
        QCOMPARE(drawing().lookOf(texts::instructions),
                 Drawing::look(13, QFont::Normal, ColorRole::tertiaryText));
        typeInto(editor, u"蓝金"_s);
        const Drawing drawn{editor};
        QCOMPARE(drawn.lookOf(u"蓝金"_s), Drawing::look(13, QFont::Normal, ColorRole::primaryText));
        // Padding, and across the inset that the text of fields has, too.
        QCOMPARE(drawn.placeOf(u"蓝金"_s).topLeft().toPoint(), QPoint(4 + 3, 4));
        typeInto(m_screen->titleField(), u"标题"_s);
        QCOMPARE(Drawing{m_screen->titleField()}.placeOf(u"标题"_s).toRect().left(), 4 + 3);
        m_screen->titleField()->setFocus();
        const QImage face = screenCapture::capture(editor);
        QCOMPARE(screenCapture::colorAt(face, {editor->width() / 2.0, 60}), QColor{Qt::white});
        QVERIFY2(qAlpha(face.pixel(0, 0)) == 0, "the border is rounded");
        // A hairline, of which the ground fills the inner half.
        const QColor line = face.pixelColor(editor->width() / 2, 0);
        const QColor expected =
            screenCapture::over(themeColor(ColorRole::controlBorder), QColor{255, 255, 255, 128});
        QVERIFY2(screenCapture::isClose(line, expected), qPrintable(screenCapture::text(line)));
        QCOMPARE(face.pixelColor(editor->width() / 2, 1), QColor{Qt::white});
    }

    void generateButton()
    {
        typeInto(m_screen->titleField(), u"题"_s);
        QAbstractButton *button = m_screen->generateButton();
        const Drawing drawn{button};
        QCOMPARE(drawn.lookOf(texts::start), Drawing::look(15, QFont::Bold, Qt::white));
        const QRectF text = drawn.placeOf(texts::start);
        QCOMPARE(qRound(text.top()), 14);
        QCOMPARE(qRound(button->height() - text.bottom()), 14);
        QVERIFY(placement::centredAcross(text, button->rect()));
        QCOMPARE(CornerShape{button}.differenceFromContinuous(10), QString{});
        const QImage face = screenCapture::capture(button);
        QCOMPARE(screenCapture::differenceFromAccentGradient(face, 2), QString{});
        QTest::mousePress(button, Qt::LeftButton);
        QVERIFY(button->isDown());
        QCOMPARE(screenCapture::capture(button), face);
        QTest::mouseRelease(button, Qt::LeftButton, {}, {-10, -10});
        QVERIFY(!button->isDown());
        // Half transparent while disabled.
        typeInto(m_screen->titleField(), {});
        const QColor disabled = middleLeft(button, 1);
        QVERIFY2(screenCapture::isClose(disabled, srgb(0.1, 0.8, 0.85, 0.5), 3),
                 qPrintable(screenCapture::text(disabled)));
    }

private:
    Drawing drawing() { return Drawing{m_screen->view->widget()}; }
    QWidget *piece(const QString &name) { return m_screen->find(name); }

    std::unique_ptr<GenerateScreen> m_screen;
};

QUILMORA_TEST(FormMeasuresTest, runScreenTest)
#include "FormMeasuresTest.moc"
