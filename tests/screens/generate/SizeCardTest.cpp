#include "screens/generate/SizeCard.h"

#include "screens/common/Theme.h"
#include "screens/generate/SizeSection.h"
#include "support/AccessibleFinder.h"
#include "support/DrawnTexts.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QSignalSpy>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QStringList &cardNames()
{
    static const QStringList names{u"YouTube"_s, u"经典"_s, u"小红书"_s, u"抖音 / TikTok"_s};
    return names;
}

QStringList checkedNames(QWidget *root)
{
    QStringList checked;
    for (const QString &name : cardNames()) {
        if (accessible::interfaceOf(accessible::find<SizeCard>(root, name))->state().checked) {
            checked.append(name);
        }
    }
    return checked;
}

} // namespace

class SizeCardTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theFirstPresetIsSelectedAtTheStart();
    void aClickAnywhereOnACardSelectsIt();
    void aClickOnTheSelectedCardKeepsIt();
    void arrowKeysMoveTheSelection();
    void theSpaceKeySelectsTheFocusedCard();
    void screenReadersHearNameRoleRatioAndState();
    void theSelectedFaceHasItsColours();
    void theUnselectedFaceHasItsColours();
    void thePixelSizeIsNotShown();
    void theCardsShareTheRowEvenly();

private:
    SizeCard *card(int index) { return accessible::find<SizeCard>(&window, cardNames().at(index)); }

    QWidget window;
    SizeSection *section = nullptr;
};

void SizeCardTest::initTestCase()
{
    auto *column = new QVBoxLayout{&window};
    section = new SizeSection{&window};
    column->addWidget(section);
    showWindow(window, {800, 160});
}

void SizeCardTest::theFirstPresetIsSelectedAtTheStart()
{
    QCOMPARE(section->selectedSize(), CoverSize::presets().constFirst());
    QCOMPARE(checkedNames(&window), QStringList{u"YouTube"_s});
}

void SizeCardTest::aClickAnywhereOnACardSelectsIt()
{
    for (const QPoint place : {QPoint{2, 40}, QPoint{60, 3}, QPoint{60, 40}}) {
        click(card(0));
        QTest::mouseClick(card(2), Qt::LeftButton, {}, place);
        QCOMPARE(checkedNames(&window), QStringList{u"小红书"_s});
        QCOMPARE(section->selectedSize(), CoverSize::presets().at(2));
    }
}

void SizeCardTest::aClickOnTheSelectedCardKeepsIt()
{
    click(card(1));
    click(card(1));
    QCOMPARE(checkedNames(&window), QStringList{u"经典"_s});
    QCOMPARE(section->selectedSize(), CoverSize::presets().at(1));
}

void SizeCardTest::arrowKeysMoveTheSelection()
{
    click(card(0));
    QTest::keyClick(card(0), Qt::Key_Right);
    QCOMPARE(checkedNames(&window), QStringList{u"经典"_s});
    QCOMPARE(section->selectedSize(), CoverSize::presets().at(1));
    QVERIFY(card(1)->hasFocus());
    QTest::keyClick(card(1), Qt::Key_Right);
    QTest::keyClick(card(2), Qt::Key_Left);
    QCOMPARE(checkedNames(&window), QStringList{u"经典"_s});
}

void SizeCardTest::theSpaceKeySelectsTheFocusedCard()
{
    click(card(0));
    card(3)->setFocus(Qt::TabFocusReason);
    QTest::keyClick(card(3), Qt::Key_Space);
    QCOMPARE(checkedNames(&window), QStringList{u"抖音 / TikTok"_s});
    QCOMPARE(section->selectedSize(), CoverSize::presets().at(3));
}

void SizeCardTest::screenReadersHearNameRoleRatioAndState()
{
    click(card(0));
    const QAccessibleInterface *first = accessible::interfaceOf(card(0));
    QCOMPARE(first->role(), QAccessible::RadioButton);
    QCOMPARE(first->text(QAccessible::Name), u"YouTube"_s);
    QCOMPARE(first->text(QAccessible::Description), u"16:9"_s);
    QVERIFY(first->state().checkable);
    QVERIFY(first->state().checked);
    QVERIFY(!accessible::interfaceOf(card(1))->state().checked);
}

void SizeCardTest::theSelectedFaceHasItsColours()
{
    click(card(0));
    const QImage face = screenCapture::capture(card(0), 2.0);
    const double middle = card(0)->height() / 2.0;
    // Beside the texts, inside the border.
    QCOMPARE(screenCapture::colorAt(face, {6, middle}), screenCapture::srgb(1.0, 0.78, 0.2));
    QCOMPARE(screenCapture::colorAt(face, {0.5, middle}), screenCapture::srgb(0.95, 0.7, 0.1));
    const QColor primary = screenCapture::srgb(0.2, 0.2, 0.1);
    const QColor secondary = screenCapture::srgb(0.3, 0.25, 0.05);
    QVERIFY(screenCapture::countOf(face, primary, {}, 1) > 20);
    QVERIFY(screenCapture::countOf(face, secondary, {}, 1) > 2);
    QVERIFY2(qAlpha(face.pixel(0, 0)) == 0, "the corners are round");
}

void SizeCardTest::theUnselectedFaceHasItsColours()
{
    click(card(0));
    const QImage face = screenCapture::capture(card(1), 2.0);
    const double middle = card(1)->height() / 2.0;
    QCOMPARE(screenCapture::colorAt(face, {6, middle}), QColor(Qt::white));
    // Grey at a quarter over white on its inner half; nothing of the selected colours is left.
    QColor border = themeColor(ColorRole::grey);
    const auto mixed = [](int component) {
        return (component + 3 * 255) / 4;
    };
    border = QColor{mixed(border.red()), mixed(border.green()), mixed(border.blue())};
    QVERIFY(screenCapture::countOf(face, border, {}, 3) > 50);
    QCOMPARE(screenCapture::countOf(face, screenCapture::srgb(1.0, 0.78, 0.2)), 0);
    QCOMPARE(screenCapture::countOf(face, screenCapture::srgb(0.95, 0.7, 0.1)), 0);
}

void SizeCardTest::thePixelSizeIsNotShown()
{
    QString shown;
    for (int i = 0; i < cardNames().size(); ++i) {
        const QString texts = drawnTexts(card(i)).join(QString{});
        QCOMPARE(texts, CoverSize::presets().at(i).name + CoverSize::presets().at(i).ratio);
        shown += texts + accessible::interfaceOf(card(i))->text(QAccessible::Description);
    }
    for (const CoverSize &size : CoverSize::presets()) {
        QVERIFY(!shown.contains(QString::number(size.width)));
        QVERIFY(!shown.contains(QString::number(size.height)));
    }
}

void SizeCardTest::theCardsShareTheRowEvenly()
{
    for (int i = 1; i < cardNames().size(); ++i) {
        QVERIFY(std::abs(card(i)->width() - card(0)->width()) <= 1);
        QCOMPARE(card(i)->x() - card(i - 1)->geometry().right() - 1, 12);
        QCOMPARE(card(i)->y(), card(0)->y());
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<SizeCardTest>(argc, argv);
}

#include "SizeCardTest.moc"
