#include "screens/generate/EmotionChip.h"

#include "screens/generate/ExpressionSection.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QLineEdit>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

const QString &customPlaceholder()
{
    static const QString text = u"请输入自定义表情描述"_s;
    return text;
}

} // namespace

class EmotionChipTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void allTwelveExpressionsAreThereInOrder();
    void theFirstExpressionIsSelectedAtTheStart();
    void exactlyOneChipIsCheckedAfterEveryClick();
    void aClickOnTheSelectedChipKeepsIt();
    void arrowKeysMoveTheSelection();
    void aChipIsARadioButtonToScreenReaders();
    void theSelectedFaceHasItsColours();
    void theUnselectedFaceHasItsColours();
    void theOwnTextsFieldIsThereOnlyForTheCustomExpression();
    void theOwnTextIsKeptWhileAnotherExpressionIsSelected();
    void theOwnTextsFieldFollowsTheChipsInTheTabOrder();
    void theChipsWrapWhenTheWindowNarrows();

private:
    EmotionChip *chip(const QString &name) { return accessible::find<EmotionChip>(window.get(), name); }
    QLineEdit *ownText() { return accessible::find<QLineEdit>(window.get(), customPlaceholder()); }
    QStringList checked();

    std::unique_ptr<QWidget> window;
    ExpressionSection *section = nullptr;
};

void EmotionChipTest::init()
{
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    section = new ExpressionSection{window.get()};
    column->addWidget(section);
    column->addStretch();
    showWindow(*window, {1000, 300});
}

QStringList EmotionChipTest::checked()
{
    QStringList names;
    for (const Emotion &emotion : Emotion::presets()) {
        if (accessible::interfaceOf(chip(emotion.name))->state().checked) {
            names.append(emotion.name);
        }
    }
    return names;
}

void EmotionChipTest::allTwelveExpressionsAreThereInOrder()
{
    QStringList names = accessible::names(window.get());
    names.removeAll(u"选择表情"_s);
    QStringList expected;
    for (const Emotion &emotion : Emotion::presets()) {
        expected.append(emotion.name);
    }
    QCOMPARE(names, expected);
    QCOMPARE(names.size(), 12);
}

void EmotionChipTest::theFirstExpressionIsSelectedAtTheStart()
{
    QCOMPARE(checked(), QStringList{u"震惊"_s});
    QCOMPARE(section->selectedEmotion(), Emotion::presets().constFirst());
}

void EmotionChipTest::exactlyOneChipIsCheckedAfterEveryClick()
{
    for (const Emotion &emotion : Emotion::presets()) {
        click(chip(emotion.name));
        QCOMPARE(checked(), QStringList{emotion.name});
        QCOMPARE(section->selectedEmotion(), emotion);
    }
}

void EmotionChipTest::aClickOnTheSelectedChipKeepsIt()
{
    click(chip(u"大笑"_s));
    click(chip(u"大笑"_s));
    QCOMPARE(checked(), QStringList{u"大笑"_s});
    QCOMPARE(section->selectedEmotion().name, u"大笑"_s);
}

void EmotionChipTest::arrowKeysMoveTheSelection()
{
    click(chip(u"震惊"_s));
    QTest::keyClick(chip(u"震惊"_s), Qt::Key_Right);
    QCOMPARE(checked(), QStringList{u"惊喜"_s});
    QCOMPARE(section->selectedEmotion().name, u"惊喜"_s);
    QTest::keyClick(chip(u"惊喜"_s), Qt::Key_Left);
    QCOMPARE(checked(), QStringList{u"震惊"_s});
}

void EmotionChipTest::aChipIsARadioButtonToScreenReaders()
{
    const QAccessibleInterface *interface = accessible::interfaceOf(chip(u"胜利"_s));
    QCOMPARE(interface->role(), QAccessible::RadioButton);
    QVERIFY(interface->state().checkable);
    QVERIFY(!interface->state().checked);
}

void EmotionChipTest::theSelectedFaceHasItsColours()
{
    EmotionChip *selected = chip(u"震惊"_s);
    const QImage face = screenCapture::capture(selected, 2.0);
    QCOMPARE(screenCapture::colorAt(face, {10, selected->height() / 2.0}),
             screenCapture::srgb(1.0, 0.78, 0.2));
    QVERIFY(screenCapture::countOf(face, screenCapture::srgb(0.1, 0.1, 0.1), {}, 1) > 10);
    QVERIFY2(qAlpha(face.pixel(1, 1)) == 0, "the ends are round");
}

void EmotionChipTest::theUnselectedFaceHasItsColours()
{
    EmotionChip *unselected = chip(u"惊喜"_s);
    const QImage face = screenCapture::capture(unselected, 2.0);
    QCOMPARE(screenCapture::colorAt(face, {10, unselected->height() / 2.0}), QColor(Qt::white));
    QCOMPARE(screenCapture::countOf(face, screenCapture::srgb(1.0, 0.78, 0.2)), 0);
}

void EmotionChipTest::theOwnTextsFieldIsThereOnlyForTheCustomExpression()
{
    QVERIFY(ownText() == nullptr);
    click(chip(u"自定义..."_s));
    QVERIFY(ownText() != nullptr);
    QCOMPARE(ownText()->placeholderText(), customPlaceholder());
    click(chip(u"震惊"_s));
    QVERIFY(ownText() == nullptr);
}

void EmotionChipTest::theOwnTextIsKeptWhileAnotherExpressionIsSelected()
{
    click(chip(u"自定义..."_s));
    typeInto(ownText(), u"  眨眼 & <b>笑</b> "_s);
    click(chip(u"大笑"_s));
    QCOMPARE(section->customEmotion(), u"  眨眼 & <b>笑</b> "_s);
    click(chip(u"自定义..."_s));
    QCOMPARE(ownText()->text(), u"  眨眼 & <b>笑</b> "_s);
}

void EmotionChipTest::theOwnTextsFieldFollowsTheChipsInTheTabOrder()
{
    click(chip(u"自定义..."_s));
    QCOMPARE(accessible::focusOrder(window.get()), (QStringList{u"自定义..."_s, customPlaceholder()}));
}

void EmotionChipTest::theChipsWrapWhenTheWindowNarrows()
{
    const int firstRow = chip(u"震惊"_s)->y();
    QCOMPARE(chip(u"无语"_s)->y(), firstRow);
    const int rowHeight = chip(u"震惊"_s)->height() + 8;
    window->resize(420, 300);
    QTRY_VERIFY(chip(u"自定义..."_s)->y() >= firstRow + rowHeight);
    for (const Emotion &emotion : Emotion::presets()) {
        const EmotionChip *one = chip(emotion.name);
        QVERIFY(one->geometry().right() <= one->parentWidget()->width());
        QCOMPARE(one->size(), one->sizeHint());
        QCOMPARE((one->y() - firstRow) % rowHeight, 0);
    }
}

int main(int argc, char *argv[])
{
    return runScreenTest<EmotionChipTest>(argc, argv);
}

#include "EmotionChipTest.moc"
