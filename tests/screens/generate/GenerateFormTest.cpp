#include "screens/generate/GenerateForm.h"

#include "model/CoverInputs.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/GenerateScreen.h"
#include "support/Placement.h"

using namespace quilmora;
using namespace quilmora::test;
using namespace Qt::StringLiterals;

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

/// The form as a user fills it in. AccessibleTreeTest has the names of all its pieces, and FormMeasuresTest
/// looks at the colors of the options.
class GenerateFormTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<GenerateScreen>(); }
    void cleanup() { m_screen.reset(); }

    void aPictureFitsTheCard()
    {
        QCOMPARE(face()->height(), 140);
        // A flat one fills the width at less than the usual height.
        const QList<std::pair<QSize, bool>> sizes{
            {{3000, 150}, true}, {{4000, 1000}, true}, {{40, 2}, true},   {{160, 90}, false},
            {{10, 10}, false},   {{600, 900}, false},  {{1, 1000}, false}};
        for (const auto &[size, isFlat] : sizes) {
            m_screen->pick(face(), size);
            const int ownHeight = face()->width() * size.height() / size.width();
            QCOMPARE(ownHeight > 10 && ownHeight < 140, isFlat);
            QCOMPARE(face()->height(), isFlat ? ownHeight : 140);
            QCOMPARE(isFilled(), isFlat);
            const QList<DrawnPixmap> pixmaps = Drawing{face()}.pixmaps();
            QCOMPARE(pixmaps.size(), 1);
            const QRectF place = pixmaps.constFirst().place;
            QCOMPARE(place.height(), 1.0 * face()->height());
            const double width = std::max(1.0, place.height() * size.width() / size.height());
            QVERIFY(isFlat || std::abs(place.width() - width) <= 1);
            QVERIFY(placement::centredAcross(place, face()->rect()));
            if (place.width() > 20 && place.height() > 20) {
                QCOMPARE(CornerShape{pixmaps.constFirst().leftHalf()}.differenceFromCircle(10), QString{});
            }
            QCOMPARE(placement::gapBelow(face(), m_screen->find(texts::remove)), 8);
            click(m_screen->find(texts::remove));
            QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
            QCOMPARE(face()->height(), 140);
        }
    }

    void theHeightFollowsTheWidth()
    {
        m_screen->pick(face(), {3000, 300});
        const int before = face()->width();
        for (const int width : {1400, 800, 1000}) {
            m_screen->window.resize(width, 1100);
            QTRY_COMPARE(m_screen->view->width(), width);
            QTRY_COMPARE(face()->height(), face()->width() / 10);
            QVERIFY(isFilled());
        }
        QCOMPARE(face()->width(), before);
    }

    void cardsSideBySideBeginAtTheSameHeight()
    {
        QAbstractButton *style = m_screen->stylePicture();
        m_screen->pick(face(), {3000, 150});
        QVERIFY(face()->height() < 140);
        QCOMPARE(style->height(), 140);
        QCOMPARE(placement::inWindow(face()).top(), placement::inWindow(style).top());
        m_screen->pick(style, {3000, 1000});
        QCOMPARE(style->height(), 140);
        QCOMPARE(placement::inWindow(face()).top(), placement::inWindow(style).top());
        // The flattest picture can be clicked.
        m_screen->pick(face(), {10'000, 1});
        QVERIFY2(face()->height() >= 8 && face()->height() < 20,
                 qPrintable(QString::number(face()->height())));
        QCOMPARE(Drawing{face()}.pixmaps().constFirst().place.size(), QSizeF(face()->width(), 1));
        m_screen->panels.answerReference(std::nullopt);
        click(face());
        QCOMPARE(m_screen->panels.referencePanelCount(), 4);
    }

    void theTabKeyFollowsTheForm()
    {
        typeInto(m_screen->titleField(), u"标题"_s);
        const QStringList expected{CoverSize::presets().at(0).name, texts::title,        texts::scene,
                                   Emotion::presets().at(0).name,   texts::facePhoto,    texts::stylePicture,
                                   texts::advancedOptions,          texts::instructions, texts::start};
        QCOMPARE(accessible::focusOrder(&m_screen->window), expected);
    }

    void theButtonNeedsATitleOfMoreThanBlanks()
    {
        const QStringList blank{{}, u"   "_s, u" \t \t"_s, u"\u3000\u3000"_s, u"\u00a0"_s};
        const QStringList titles{u"a"_s, u" \u3000一\t"_s, u"这是一个远远超过十六个汉字的封面标题文本"_s};
        QVERIFY(!m_screen->generateButton()->isEnabled());
        for (const QString &title : titles + blank) {
            typeInto(m_screen->titleField(), title);
            QCOMPARE(m_screen->titleField()->text(), title);
            QVERIFY2(m_screen->generateButton()->isEnabled() == titles.contains(title), qPrintable(title));
            typeInto(m_screen->titleField(), titles.contains(title) ? QString{} : u"x"_s);
            QCOMPARE(m_screen->generateButton()->isEnabled(), !titles.contains(title));
        }
    }

    void typedBlanksOfEveryKindReachTheServiceAlsoFromTheFoldedSection()
    {
        typeInto(m_screen->advancedEditor(), u"\u00a0左\u00a0右\u3000"_s);
        QTest::keyClick(m_screen->advancedEditor(), Qt::Key_Return);
        QTest::keyClick(m_screen->advancedEditor(), Qt::Key_B);
        auto *header = m_screen->find<QAbstractButton>(texts::advancedOptions);
        // Anywhere on the row counts.
        QTest::mouseClick(header, Qt::LeftButton, {}, {header->width() / 2, 3});
        QVERIFY(m_screen->advancedEditor() == nullptr);
        QTest::mouseClick(header, Qt::LeftButton, {}, {header->width() - 2, 20});
        QVERIFY(m_screen->advancedEditor() != nullptr);
        header->setFocus(Qt::TabFocusReason);
        QTest::keyClick(header, Qt::Key_Space);
        QVERIFY(m_screen->advancedEditor() == nullptr);
        m_screen->generate(u" 标\u00a0题 "_s);
        QTRY_COMPARE(m_screen->server.requestCount(), 1);
        const QString prompt = m_screen->sentPrompt();
        QVERIFY2(prompt.contains(u"额外风格指令：\u00a0左\u00a0右\u3000\nb。"_s), qPrintable(prompt));
        QVERIFY2(prompt.contains(u"「 标\u00a0题 」"_s), qPrintable(prompt));
    }

    void oneIsSelected()
    {
        for (const QStringList &names : {m_sizeNames, m_expressionNames}) {
            QStringList heard = accessible::names(&m_screen->window);
            heard.removeIf([&names](const QString &name) { return !names.contains(name); });
            QCOMPARE(heard, names);
            QCOMPARE(selected(names), names.constFirst());
            for (const QString &name : names) {
                const QAccessibleInterface *interface = accessible::interfaceOf(button(name));
                QCOMPARE(interface->role(), QAccessible::RadioButton);
                QVERIFY(interface->state().checkable && interface->state().focusable);
                click(button(name));
                QCOMPARE(selected(names), name);
                click(button(name));
                QCOMPARE(selected(names), name);
            }
            // By the keyboard.
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
    }

    void theCardsShareTheRowEvenlyAndHaveTheirRatios()
    {
        const QWidget *first = button(m_sizeNames.at(0));
        int x = first->x();
        for (const CoverSize &size : CoverSize::presets()) {
            QWidget *card = button(size.name);
            // No pixels.
            QCOMPARE(Drawing{card}.strings().join(QString{}), size.name + size.ratio);
            QCOMPARE(accessible::interfaceOf(card)->text(QAccessible::Description), size.ratio);
            QVERIFY(std::abs(card->width() - first->width()) <= 1);
            QCOMPARE(card->pos(), QPoint(x, first->y()));
            x += card->width() + 12;
        }
        // A click anywhere on one selects it.
        for (const QPoint place : {QPoint{2, 40}, QPoint{60, 3}, QPoint{60, 40}}) {
            click(button(m_sizeNames.at(0)));
            QTest::mouseClick(button(m_sizeNames.at(2)), Qt::LeftButton, {}, place);
            QCOMPARE(selected(m_sizeNames), m_sizeNames.at(2));
        }
    }

    void theOwnTextIsKeptWhileAnotherExpressionIsSelected()
    {
        const QString text = u"  眨眼 & <b>笑</b> "_s;
        QVERIFY(m_screen->customExpression() == nullptr);
        click(button(m_expressionNames.constLast()));
        QCOMPARE(m_screen->customExpression()->placeholderText(), texts::customExpression);
        const QStringList order = accessible::focusOrder(&m_screen->window);
        QCOMPARE(order.mid(order.indexOf(m_expressionNames.constLast()), 2),
                 (QStringList{m_expressionNames.constLast(), texts::customExpression}));
        typeInto(m_screen->customExpression(), text);
        click(button(m_expressionNames.at(3)));
        QVERIFY(m_screen->customExpression() == nullptr);
        QCOMPARE(inputs().customEmotion, text);
        click(button(m_expressionNames.constLast()));
        QCOMPARE(m_screen->customExpression()->text(), text);
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
        m_screen->window.resize(420, 1100);
        QTRY_VERIFY(chip(last)->y() >= firstRow + rowHeight);
        for (qsizetype index = 0; index <= last; ++index) {
            QVERIFY(chip(index)->geometry().right() <= chip(index)->parentWidget()->width());
            QCOMPARE(chip(index)->size(), chip(index)->sizeHint());
            QCOMPARE((chip(index)->y() - firstRow) % rowHeight, 0);
        }
    }

private:
    QAbstractButton *face() { return m_screen->facePhoto(); }

    /// Whether the face's only picture takes all of its width and height.
    bool isFilled()
    {
        const QList<DrawnPixmap> pixmaps = Drawing{face()}.pixmaps();
        return pixmaps.size() == 1 && pixmaps.constFirst().place == QRectF{face()->rect()};
    }

    QAbstractButton *button(const QString &name) { return m_screen->find<QAbstractButton>(name); }
    CoverInputs inputs() { return m_screen->window.findChild<GenerateForm *>()->inputs(); }

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
            names == m_sizeNames ? inputs().selectedSize.name : inputs().selectedEmotion.name;
        return said == QStringList{known} ? known : said.join(u", "_s) + u" but "_s + known;
    }

    const QStringList m_sizeNames = namesOf(CoverSize::presets());
    const QStringList m_expressionNames = namesOf(Emotion::presets());
    std::unique_ptr<GenerateScreen> m_screen;
};

QUILMORA_TEST(GenerateFormTest, runScreenTest)
#include "GenerateFormTest.moc"
