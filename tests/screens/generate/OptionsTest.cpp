#include "model/CoverSize.h"
#include "model/Emotion.h"
#include "screens/generate/GenerateForm.h"
#include "support/AccessibleFinder.h"
#include "support/DrawnTexts.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/Texts.h"

#include <QAbstractButton>
#include <QLineEdit>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

template <typename Option>
QStringList namesOf(const QList<Option> &options)
{
    QStringList names;
    for (const Option &option : options) {
        names.append(option.name);
    }
    return names;
}

} // namespace

/// The cover sizes and the expressions, of which one each is selected. FormMeasuresTest looks at their
/// colors.
class OptionsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        auto *column = new QVBoxLayout{m_window.get()};
        m_form = new GenerateForm{m_dialogs, m_window.get()};
        column->addWidget(m_form);
        column->addStretch();
        showWindow(*m_window, {1000, 500});
    }

    void cleanup() { m_window.reset(); }

    void oneIsSelected_data()
    {
        QTest::addColumn<QStringList>("names");
        QTest::newRow("sizes") << m_sizeNames;
        QTest::newRow("expressions") << m_expressionNames;
    }

    void oneIsSelected()
    {
        QFETCH(const QStringList, names);
        QCOMPARE(selected(names), names.constFirst());
        for (const QString &name : names) {
            click(button(name));
            QCOMPARE(selected(names), name);
            click(button(name));
            QCOMPARE(selected(names), name);
        }
    }

    void keysMoveTheSelection_data() { oneIsSelected_data(); }

    void keysMoveTheSelection()
    {
        QFETCH(const QStringList, names);
        click(button(names.at(0)));
        QTest::keyClick(button(names.at(0)), Qt::Key_Right);
        QCOMPARE(selected(names), names.at(1));
        QVERIFY(button(names.at(1))->hasFocus());
        QTest::keyClick(button(names.at(1)), Qt::Key_Right);
        QTest::keyClick(button(names.at(2)), Qt::Key_Left);
        QCOMPARE(selected(names), names.at(1));
        button(names.at(3))->setFocus(Qt::TabFocusReason);
        QTest::keyClick(button(names.at(3)), Qt::Key_Space);
        QCOMPARE(selected(names), names.at(3));
    }

    void screenReadersHearRadioButtons_data() { oneIsSelected_data(); }

    void screenReadersHearRadioButtons()
    {
        QFETCH(const QStringList, names);
        QStringList heard = accessible::names(m_window.get());
        heard.removeIf([&names](const QString &name) { return !names.contains(name); });
        QCOMPARE(heard, names);
        for (const QString &name : names) {
            const QAccessibleInterface *interface = accessible::interfaceOf(button(name));
            QCOMPARE(interface->role(), QAccessible::RadioButton);
            QVERIFY(interface->state().checkable && interface->state().focusable);
        }
    }

    void aClickAnywhereOnACardSelectsIt()
    {
        for (const QPoint place : {QPoint{2, 40}, QPoint{60, 3}, QPoint{60, 40}}) {
            click(button(m_sizeNames.at(0)));
            QTest::mouseClick(button(m_sizeNames.at(2)), Qt::LeftButton, {}, place);
            QCOMPARE(selected(m_sizeNames), m_sizeNames.at(2));
        }
    }

    void aCardHasItsRatioButNotItsPixels()
    {
        for (const CoverSize &size : CoverSize::presets()) {
            QWidget *card = button(size.name);
            QCOMPARE(drawnTexts(card).join(QString{}), size.name + size.ratio);
            QCOMPARE(accessible::interfaceOf(card)->text(QAccessible::Description), size.ratio);
        }
    }

    void theCardsShareTheRowEvenly()
    {
        const QWidget *first = button(m_sizeNames.at(0));
        for (int i = 1; i < m_sizeNames.size(); ++i) {
            const QWidget *card = button(m_sizeNames.at(i));
            QVERIFY(std::abs(card->width() - first->width()) <= 1);
            QCOMPARE(card->x() - button(m_sizeNames.at(i - 1))->geometry().right() - 1, 12);
            QCOMPARE(card->y(), first->y());
        }
    }

    void theOwnTextIsKeptWhileAnotherExpressionIsSelected()
    {
        const QString text = u"  眨眼 & <b>笑</b> "_s;
        QVERIFY(ownText() == nullptr);
        click(button(m_expressionNames.constLast()));
        QCOMPARE(ownText()->placeholderText(), texts::customExpression);
        const QStringList order = accessible::focusOrder(m_window.get());
        QCOMPARE(order.mid(order.indexOf(m_expressionNames.constLast()), 2),
                 (QStringList{m_expressionNames.constLast(), texts::customExpression}));
        typeInto(ownText(), text);
        click(button(m_expressionNames.at(3)));
        QVERIFY(ownText() == nullptr);
        QCOMPARE(m_form->inputs().customEmotion, text);
        click(button(m_expressionNames.constLast()));
        QCOMPARE(ownText()->text(), text);
    }

    void theChipsWrapWhenTheWindowNarrows()
    {
        const auto chip = [this](qsizetype index) {
            return button(m_expressionNames.at(index));
        };
        const qsizetype last = m_expressionNames.size() - 1;
        const int firstRow = chip(0)->y();
        QCOMPARE(chip(last - 1)->y(), firstRow);
        const int rowHeight = chip(0)->height() + 8;
        m_window->resize(420, 500);
        QTRY_VERIFY(chip(last)->y() >= firstRow + rowHeight);
        for (qsizetype index = 0; index <= last; ++index) {
            QVERIFY(chip(index)->geometry().right() <= chip(index)->parentWidget()->width());
            QCOMPARE(chip(index)->size(), chip(index)->sizeHint());
            QCOMPARE((chip(index)->y() - firstRow) % rowHeight, 0);
        }
    }

private:
    QAbstractButton *button(const QString &name)
    {
        return accessible::find<QAbstractButton>(m_window.get(), name);
    }
    QLineEdit *ownText() { return accessible::find<QLineEdit>(m_window.get(), texts::customExpression); }

    /// The one option that screen readers and the section say is selected; otherwise what they say.
    QString selected(const QStringList &names)
    {
        QStringList said;
        for (const QString &name : names) {
            if (accessible::interfaceOf(button(name))->state().checked) {
                said.append(name);
            }
        }
        const QString known =
            names == m_sizeNames ? m_form->inputs().selectedSize.name : m_form->inputs().selectedEmotion.name;
        return said == QStringList{known} ? known : said.join(u", "_s) + u" but "_s + known;
    }

    const QStringList m_sizeNames = namesOf(CoverSize::presets());
    const QStringList m_expressionNames = namesOf(Emotion::presets());
    std::unique_ptr<QWidget> m_window;
    ScriptedFileDialogs m_dialogs;
    GenerateForm *m_form = nullptr;
};

QUILMORA_TEST(OptionsTest, runScreenTest)

#include "OptionsTest.moc"
