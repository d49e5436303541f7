#include "GenerateScreen.h"
#include "screens/common/PictureView.h"
#include "screens/common/TextLabel.h"
#include "screens/common/Theme.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ShadowFall.h"

#include <QPlainTextEdit>

#include <algorithm>
#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

/// The numbers of what the generate screen shows in place of the form, read from what is drawn.
class OutcomeMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadingSection();
    void resultTextsAndPlaces();
    void resultPicture();
    void gradientButtonContents_data();
    void gradientButtonContents();
    void gradientButtonShape();
    void gradientButtonShadow();
    void errorTextsAndPlaces();
    void errorMessageIsCentred();

private:
    static std::unique_ptr<GenerateScreen> withResult(QSize picture = {1600, 900});
    static std::unique_ptr<GenerateScreen> withError();
};

std::unique_ptr<GenerateScreen> OutcomeMeasuresTest::withResult(QSize picture)
{
    auto screen = std::make_unique<GenerateScreen>(GenerateScreen::answerWithPicture(picture));
    screen->generate(u"标题"_s);
    return QTest::qWaitFor([&] { return screen->shows(u"生成成功"_s); }) ? std::move(screen) : nullptr;
}

std::unique_ptr<GenerateScreen> OutcomeMeasuresTest::withError()
{
    auto screen = std::make_unique<GenerateScreen>(
        GenerateScreen::answerWithText(R"({"error":{"code":"Busy","message":"稍后"}})"));
    screen->generate(u"标题"_s);
    return QTest::qWaitFor([&] { return screen->shows(u"生成失败"_s); }) ? std::move(screen) : nullptr;
}

void OutcomeMeasuresTest::loadingSection()
{
    GenerateScreen screen{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    screen.generate(u"标题"_s);
    const QList<QWidget *> titles = accessible::allNamed(&screen.window, u"正在生成封面..."_s);
    QCOMPARE(titles.size(), 2);
    QWidget *spinner = titles.constFirst();
    QWidget *title = titles.constLast();
    QWidget *hint = screen.find(u"请稍候，火山引擎正在生成中"_s);
    QWidget *section = title->parentWidget();
    const QColor primary = themeColor(ColorRole::primaryText);
    const Drawing drawn{section};
    QCOMPARE(drawn.lookOf(u"正在生成封面..."_s), Drawing::look(16, QFont::Medium, primary));
    QCOMPARE(drawn.lookOf(u"请稍候，火山引擎正在生成中"_s), Drawing::look(12, QFont::Normal, primary));
    QCOMPARE(placement::gapBelow(spinner, title), 18);
    QCOMPARE(placement::gapBelow(title, hint), 18);
    for (const QWidget *item : {spinner, title, hint}) {
        QVERIFY(placement::centredAcross(placement::inWindow(item), placement::inWindow(section)));
    }
    QVERIFY(std::abs(spinner->y() - (section->height() - hint->geometry().bottom() - 1)) <= 1);
    // No less high where the screen is low.
    QVERIFY(section->minimumHeight() >= 400 || section->minimumSizeHint().height() >= 400);
}

void OutcomeMeasuresTest::resultTextsAndPlaces()
{
    const auto screen = withResult();
    QVERIFY(screen != nullptr);
    QWidget *title = screen->find<TextLabel>(u"生成成功"_s);
    QWidget *picture = screen->find(u"生成的封面"_s);
    QWidget *back = screen->find(u"返回表单"_s);
    QWidget *save = screen->find(u"保存图片"_s);
    QWidget *section = title->parentWidget();
    QCOMPARE(Drawing{section}.lookOf(u"生成成功"_s),
             Drawing::look(16, QFont::DemiBold, themeColor(ColorRole::greenText)));
    QCOMPARE(title->y(), 30);
    QCOMPARE(placement::gapBelow(title, picture), 18);
    QCOMPARE(placement::gapBelow(picture, back), 18);
    QCOMPARE(placement::gapBeside(back, save), 14);
    QCOMPARE(back->y(), save->y());
    QVERIFY(section->height() - save->geometry().bottom() - 1 >= 30);
    QCOMPARE(placement::inWindow(section).width(), screen->window.width() - 2 * 32);
    for (const QRect &item : {placement::inWindow(title), placement::inWindow(picture),
                              placement::inWindow(back).united(placement::inWindow(save))}) {
        QVERIFY(placement::centredAcross(item, placement::inWindow(section)));
    }
}

void OutcomeMeasuresTest::resultPicture()
{
    const auto screen = withResult();
    QVERIFY(screen != nullptr);
    auto *picture = screen->find(u"生成的封面"_s);
    const Drawing own{picture};
    QCOMPARE(own.pixmaps().size(), 1);
    const QImage pixels = own.pixmaps().constFirst().pixmap.toImage();
    QCOMPARE(CornerShape{pixels.copy(0, 0, pixels.width() / 2, pixels.height())}.differenceFromCircle(10),
             QString{});
    const QRectF place = own.pixmaps().constFirst().place.translated(picture->pos());
    QCOMPARE(place.width(), 600.0);
    QCOMPARE(shadowDifference(Drawing{picture->parentWidget()}, place, {srgb(0, 0, 0, 0.1), 10, {0, 4}}),
             QString{});
}

void OutcomeMeasuresTest::gradientButtonContents_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("icon");
    QTest::newRow("back") << u"返回表单"_s << u"arrow.counterclockwise"_s;
    QTest::newRow("save") << u"保存图片"_s << u"square.and.arrow.down"_s;
}

void OutcomeMeasuresTest::gradientButtonContents()
{
    QFETCH(const QString, title);
    QFETCH(const QString, icon);
    const auto screen = withResult();
    QVERIFY(screen != nullptr);
    QWidget *button = screen->find(title);
    const Drawing drawn{button};
    QCOMPARE(drawn.lookOf(title), Drawing::look(14, QFont::DemiBold, Qt::white));
    const QRectF symbol = drawn.symbol(icon, 14, QFont::DemiBold, Qt::white);
    QVERIFY(!symbol.isNull());
    const QRectF text = drawn.placeOf(title);
    QCOMPARE(qRound(text.left() - symbol.right()), 6);
    // As high as the higher of the two.
    const QRectF content = symbol.united(text);
    QCOMPARE(placement::padding(button->rect(), content), u"22, 11, 22, 11"_s);
}

void OutcomeMeasuresTest::gradientButtonShape()
{
    const auto screen = withResult();
    QVERIFY(screen != nullptr);
    QWidget *button = screen->find(u"返回表单"_s);
    QCOMPARE(CornerShape{button}.differenceFromContinuous(button->height() / 2.0), QString{});
    const QImage face = screenCapture::capture(button);
    const QList<QColor> stops{srgb(0.1, 0.8, 0.85), srgb(0.275, 0.575, 0.9), srgb(0.45, 0.35, 0.95),
                              srgb(0.7, 0.325, 0.85), srgb(0.95, 0.3, 0.75)};
    for (int quarter = 0; quarter <= 4; ++quarter) {
        // The outermost columns are cut by the round ends.
        const double x = std::clamp(button->width() * quarter / 4.0, 1.0, button->width() - 2.0);
        const double y = quarter == 0 || quarter == 4 ? button->height() / 2.0 : 5;
        const QColor seen = screenCapture::colorAt(face, {x, y});
        QVERIFY2(screenCapture::isClose(seen, stops.at(quarter), 3), qPrintable(screenCapture::text(seen)));
    }
}

void OutcomeMeasuresTest::gradientButtonShadow()
{
    const auto screen = withResult();
    QVERIFY(screen != nullptr);
    for (const QString &title : {u"返回表单"_s, u"保存图片"_s}) {
        QWidget *button = screen->find(title);
        QCOMPARE(shadowDifference(Drawing{button->parentWidget()}, button->geometry(),
                                  {srgb(0.45, 0.35, 0.95, 0.25), 6, {0, 3}}, true),
                 QString{});
    }
}

void OutcomeMeasuresTest::errorTextsAndPlaces()
{
    const auto screen = withError();
    QVERIFY(screen != nullptr);
    QWidget *title = screen->find<TextLabel>(u"生成失败"_s);
    QWidget *message = screen->find<QPlainTextEdit>(u"错误信息"_s);
    QWidget *back = screen->find(u"返回表单"_s);
    QWidget *section = title->parentWidget();
    const QColor red = themeColor(ColorRole::red);
    const QColor primary = themeColor(ColorRole::primaryText);
    const Drawing drawn{section};
    QCOMPARE(drawn.lookOf(u"生成失败"_s), Drawing::look(16, QFont::DemiBold, themeColor(ColorRole::redText)));
    QCOMPARE(drawn.lookOf(u"[Busy] 稍后"_s), Drawing::look(13, QFont::Normal, primary));
    QCOMPARE(drawn.lookOf(u"返回表单"_s), Drawing::look(14, QFont::Medium, primary));
    const QRectF warning = drawn.symbol(u"exclamationmark.triangle.fill"_s, 40, QFont::Normal, red);
    QCOMPARE(qRound(warning.top()), 30);
    QCOMPARE(qRound(title->y() - warning.bottom()), 16);
    QCOMPARE(placement::gapBelow(title, message), 16);
    QCOMPARE(placement::gapBelow(message, back), 16);
    QVERIFY(section->height() - back->geometry().bottom() - 1 >= 30);
    const QRectF arrow = drawn.symbol(u"arrow.counterclockwise"_s, 14, QFont::Medium, primary);
    QCOMPARE(qRound(drawn.placeOf(u"返回表单"_s).left() - arrow.right()), 6);
    for (const QRectF &item : {warning, QRectF{title->geometry()}, QRectF{back->geometry()}}) {
        QVERIFY(placement::centredAcross(item, section->rect()));
    }
}

void OutcomeMeasuresTest::errorMessageIsCentred()
{
    const auto screen = withError();
    QVERIFY(screen != nullptr);
    QWidget *message = screen->find<QPlainTextEdit>(u"错误信息"_s);
    QWidget *section = message->parentWidget();
    QVERIFY(message->x() > 0 && message->geometry().right() < section->width() - 1);
    const QRectF text = Drawing{section}.placeOf(u"[Busy] 稍后"_s);
    QVERIFY2(std::abs(text.center().x() - section->width() / 2.0) <= 1,
             qPrintable(QString::number(text.x())));
}

int main(int argc, char *argv[])
{
    return runScreenTest<OutcomeMeasuresTest>(argc, argv);
}

#include "OutcomeMeasuresTest.moc"
