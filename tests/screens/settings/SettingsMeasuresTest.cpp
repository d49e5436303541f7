#include "screens/common/Theme.h"
#include "screens/settings/SettingsView.h"
#include "store/DatabaseManager.h"
#include "support/AccessibleFinder.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The numbers of the settings screen, read from what is drawn.
class SettingsMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void title();
    void cardHeader();
    void cardShape();
    void fieldGroups_data();
    void fieldGroups();
    void validationError();
    void saveButton();

private:
    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return accessible::find<Widget>(window.get(), name);
    }
    QWidget *card() { return find(u"火山引擎图片生成"_s)->parentWidget(); }
    Drawing drawing() { return Drawing{view->widget()}; }

    const TemporaryHome home;
    DatabaseManager database{home.path(u"data"_s), home.path(u"covers"_s)};
    std::unique_ptr<QWidget> window;
    SettingsView *view = nullptr;
};

void SettingsMeasuresTest::init()
{
    window = std::make_unique<QWidget>();
    auto *column = new QVBoxLayout{window.get()};
    column->setContentsMargins(0, 0, 0, 0);
    view = new SettingsView{database, window.get()};
    column->addWidget(view);
    showWindow(*window, {1000, 643});
}

void SettingsMeasuresTest::title()
{
    QCOMPARE(drawing().lookOf(u"功能设置"_s),
             Drawing::look(22, QFont::Bold, themeColor(ColorRole::primaryText)));
    const QWidget *label = find(u"功能设置"_s);
    QCOMPARE(placement::inWindow(label).left(), placement::inWindow(card()).left());
    // Below the title lie 4 more than below the card.
    QCOMPARE(placement::gapBelow(label, card()), placement::gapBelow(card(), find(u"保存设置"_s)) + 4);
    // As far below the title as the history has its covers, which lie 24 + 16 and the height of the title
    // below.
    QCOMPARE(placement::inWindow(label).top(), 24);
    QCOMPARE(placement::gapBelow(label, card()), 16);
}

void SettingsMeasuresTest::cardHeader()
{
    const Drawing drawn = drawing();
    QCOMPARE(drawn.lookOf(u"火山引擎图片生成"_s),
             Drawing::look(16, QFont::DemiBold, themeColor(ColorRole::primaryText)));
    QCOMPARE(drawn.lookOf(u"调用接口：POST /api/v3/images/generations"_s),
             Drawing::look(11, QFont::Normal, themeColor(ColorRole::secondaryText)));
    QVERIFY(placement::gapBelow(find(u"火山引擎图片生成"_s),
                                find(u"调用接口：POST /api/v3/images/generations"_s)) >= 0);
}

void SettingsMeasuresTest::cardShape()
{
    QCOMPARE(CornerShape{card()}.differenceFromCircle(12), QString{});
    QCOMPARE(screenCapture::colorAt(screenCapture::capture(card()), {10, 100}), QColor{Qt::white});
    QCOMPARE(placement::padding(card()->rect(), card()->childrenRect()), u"20, 20, 20, 20"_s);
    // As wide as the page without its margins, which are the same on both sides.
    const QRect place = placement::inWindow(card());
    QCOMPARE(place.left(), 1000 - place.right() - 1);
    window->resize(1400, 643);
    QTRY_COMPARE(card()->width(), place.width() + 400);
}

void SettingsMeasuresTest::fieldGroups_data()
{
    QTest::addColumn<QString>("label");
    QTest::addColumn<QString>("hint");
    QTest::newRow("url") << u"API URL"_s
                         << u"默认：https://ark.cn-beijing.volces.com/api/v3/images/generations"_s;
    QTest::newRow("key") << u"API Key"_s << u"请在火山方舟控制台「获取 API Key」页面创建长效 Key"_s;
    QTest::newRow("model") << u"Model ID"_s
                           << u"如：doubao-seedream-4-0-250828、doubao-seedream-3-0-t2i-250415 等"_s;
}

void SettingsMeasuresTest::fieldGroups()
{
    QFETCH(const QString, label);
    QFETCH(const QString, hint);
    auto *field = find<QLineEdit>(label);
    const QColor primary = themeColor(ColorRole::primaryText);
    const Drawing before{field->parentWidget()};
    QCOMPARE(before.lookOf(label), Drawing::look(13, QFont::Medium, primary));
    QCOMPARE(before.lookOf(hint), Drawing::look(11, QFont::Normal, themeColor(ColorRole::secondaryText)));
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
             Drawing::look(12, QFont::Normal, themeColor(ColorRole::tertiaryText)));
}

void SettingsMeasuresTest::validationError()
{
    typeInto(find<QLineEdit>(u"API URL"_s), {});
    click(find(u"保存设置"_s));
    const QString message = u"请填写 API URL"_s;
    QCOMPARE(drawing().lookOf(message), Drawing::look(13, QFont::Normal, themeColor(ColorRole::redText)));
    QTRY_VERIFY(placement::gapBelow(card(), find(message)) > 0);
    QTRY_VERIFY(placement::gapBelow(find(message), find(u"保存设置"_s)) > 0);
}

void SettingsMeasuresTest::saveButton()
{
    QWidget *button = find(u"保存设置"_s);
    const Drawing drawn{button};
    QCOMPARE(drawn.lookOf(u"保存设置"_s), Drawing::look(14, QFont::DemiBold, Qt::white));
    const QRectF symbol = drawn.symbol(u"checkmark.circle.fill"_s, 14, QFont::DemiBold, Qt::white);
    QVERIFY(!symbol.isNull());
    const QRectF text = drawn.placeOf(u"保存设置"_s);
    QCOMPARE(qRound(text.left() - symbol.right()), 6);
    QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"16, 6, 16, 6"_s);
    QCOMPARE(screenCapture::colorAt(screenCapture::capture(button), {8, button->height() / 2.0}),
             themeColor(ColorRole::accent));
    QCOMPARE(placement::inWindow(button).left(), placement::inWindow(card()).left());
}

int main(int argc, char *argv[])
{
    return runScreenTest<SettingsMeasuresTest>(argc, argv);
}

#include "SettingsMeasuresTest.moc"
