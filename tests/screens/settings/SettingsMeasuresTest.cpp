#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/SettingsScreen.h"

#include <QLabel>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The numbers of the settings screen, read from what is drawn.
class SettingsMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_screen = std::make_unique<SettingsScreen>(); }
    void cleanup() { m_screen.reset(); }

    void title()
    {
        QCOMPARE(drawing().lookOf(u"功能设置"_s), Drawing::look(22, QFont::Bold, ColorRole::primaryText));
        const QWidget *label = find(u"功能设置"_s);
        QCOMPARE(placement::inWindow(label).left(), placement::inWindow(card()).left());
        // Below the title lie 4 more than below the card.
        QCOMPARE(placement::gapBelow(label, card()),
                 placement::gapBelow(card(), find(texts::saveSettings)) + 4);
        // As far below the title as the history has its covers, which lie 24 + 16 and the height of the title
        // below.
        QCOMPARE(placement::inWindow(label).top(), 24);
        QCOMPARE(placement::gapBelow(label, card()), 16);
    }

    void cardHeader()
    {
        const QString interface = u"调用接口：POST /api/v3/images/generations"_s;
        const Drawing drawn = drawing();
        QCOMPARE(drawn.lookOf(texts::settingsHeading),
                 Drawing::look(16, QFont::DemiBold, ColorRole::primaryText));
        QCOMPARE(drawn.lookOf(interface), Drawing::look(11, QFont::Normal, ColorRole::secondaryText));
        QVERIFY(placement::gapBelow(find(texts::settingsHeading), find(interface)) >= 0);
    }

    void cardShape()
    {
        QCOMPARE(CornerShape{card()}.differenceFromCircle(12), QString{});
        QCOMPARE(screenCapture::colorAt(screenCapture::capture(card()), {10, 100}), QColor{Qt::white});
        QCOMPARE(placement::padding(card()->rect(), card()->childrenRect()), u"20, 20, 20, 20"_s);
        // As wide as the page without its margins, which are the same on both sides.
        const QRect place = placement::inWindow(card());
        QCOMPARE(place.left(), 1000 - place.right() - 1);
        m_screen->window.resize(1400, 643);
        QTRY_COMPARE(card()->width(), place.width() + 400);
    }

    void fieldGroups_data()
    {
        QTest::addColumn<QString>("label");
        QTest::addColumn<QString>("hint");
        QTest::newRow("url") << texts::apiURL
                             << u"默认：https://ark.cn-beijing.volces.com/api/v3/images/generations"_s;
        QTest::newRow("key") << texts::apiKey << u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s;
        QTest::newRow("model") << texts::modelID
                               << u"如：doubao-seedream-4-0-250828、doubao-seedream-3-0-t2i-250415 等"_s;
    }

    void fieldGroups()
    {
        QFETCH(const QString, label);
        QFETCH(const QString, hint);
        auto *field = find<QLineEdit>(label);
        const QColor primary = themeColor(ColorRole::primaryText);
        const Drawing before{field->parentWidget()};
        QCOMPARE(before.lookOf(label), Drawing::look(13, QFont::Medium, primary));
        QCOMPARE(before.lookOf(hint), Drawing::look(11, QFont::Normal, ColorRole::secondaryText));
        const QWidget *title = find<QLabel>(label);
        QCOMPARE(placement::gapBelow(title, field), 6);
        QCOMPARE(placement::gapBelow(field, find(hint)), 6);
        QCOMPARE(placement::inWindow(title).left(), placement::inWindow(field).left());
        QCOMPARE(field->width(), card()->width() - 2 * 20);
        typeInto(field, u"x"_s);
        const Drawing typed{field};
        const QString shown = field->displayText();
        QCOMPARE(typed.lookOf(shown), Drawing::look(12, QFont::Normal, primary));
        typeInto(field, {});
        field->clearFocus();
        QCOMPARE(Drawing{field}.lookOf(field->placeholderText()),
                 Drawing::look(12, QFont::Normal, ColorRole::tertiaryText));
    }

    void validationError()
    {
        typeInto(find<QLineEdit>(texts::apiURL), {});
        click(find(texts::saveSettings));
        const QString message = u"请填写 API URL"_s;
        QCOMPARE(drawing().lookOf(message), Drawing::look(13, QFont::Normal, ColorRole::redText));
        QTRY_VERIFY(placement::gapBelow(card(), find(message)) > 0);
        QTRY_VERIFY(placement::gapBelow(find(message), find(texts::saveSettings)) > 0);
    }

    void saveButton()
    {
        QWidget *button = find(texts::saveSettings);
        const Drawing drawn{button};
        QCOMPARE(drawn.lookOf(texts::saveSettings), Drawing::look(14, QFont::DemiBold, Qt::white));
        const QRectF symbol = drawn.symbol(u"checkmark.circle.fill"_s, 14, QFont::DemiBold, Qt::white);
        QVERIFY(!symbol.isNull());
        const QRectF text = drawn.placeOf(texts::saveSettings);
        QCOMPARE(qRound(text.left() - symbol.right()), 6);
        QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"16, 6, 16, 6"_s);
        QCOMPARE(screenCapture::colorAt(screenCapture::capture(button), {8, button->height() / 2.0}),
                 themeColor(ColorRole::accent));
        QCOMPARE(placement::inWindow(button).left(), placement::inWindow(card()).left());
    }

private:
    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return m_screen->find<Widget>(name);
    }
    QWidget *card() { return find(texts::settingsHeading)->parentWidget(); }
    Drawing drawing() { return Drawing{m_screen->view->widget()}; }

    std::unique_ptr<SettingsScreen> m_screen;
};

QUILMORA_TEST(SettingsMeasuresTest, runScreenTest)

#include "SettingsMeasuresTest.moc"
