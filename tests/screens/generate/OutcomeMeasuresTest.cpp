#include "screens/generate/LoadingSection.h"
#include "support/CornerShape.h"
#include "support/Drawing.h"
#include "support/GenerateScreen.h"
#include "support/Placement.h"
#include "support/ScreenCapture.h"
#include "support/ShadowProfile.h"
#include "ui/widgets/TextLabel.h"

#include <QAbstractEventDispatcher>

#include <cmath>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

/// The numbers of what the generate screen shows in place of the form, read from what is drawn.
class OutcomeMeasuresTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void loadingSection()
    {
        GenerateScreen screen{GenerateScreen::neverRespond()};
        screen.generate();
        const QList<QWidget *> titles = accessible::allNamed(&screen.window, texts::generating);
        QCOMPARE(titles.size(), 2);
        QWidget *spinner = titles.constFirst();
        QWidget *title = titles.constLast();
        QWidget *hint = screen.find(texts::generatingHint);
        QWidget *section = title->parentWidget();
        const Drawing drawn{section};
        QCOMPARE(drawn.lookOf(texts::generating), Drawing::look(16, QFont::Medium, ColorRole::primaryText));
        QCOMPARE(drawn.lookOf(texts::generatingHint),
                 Drawing::look(12, QFont::Normal, ColorRole::primaryText));
        QCOMPARE(placement::gapBelow(spinner, title), 18);
        QCOMPARE(placement::gapBelow(title, hint), 18);
        for (const QWidget *item : {spinner, title, hint}) {
            QVERIFY(placement::centredAcross(placement::inWindow(item), placement::inWindow(section)));
        }
        QVERIFY(std::abs(spinner->y() - (section->height() - hint->geometry().bottom() - 1)) <= 1);
        // No less high where the screen is low.
        QVERIFY(section->minimumHeight() >= 400 || section->minimumSizeHint().height() >= 400);
        QCOMPARE(section->width(), screen.view->viewport()->width() - 2 * 32);
    }

    void resultTextsAndPlaces()
    {
        GenerateScreen screen{GenerateScreen::respondWithPicture({1600, 900})};
        QVERIFY(screen.succeeds());
        QWidget *title = screen.find<TextLabel>(texts::succeeded);
        QWidget *picture = screen.find(texts::generatedCover);
        QWidget *back = screen.find(texts::back);
        QWidget *save = screen.find(texts::savePicture);
        QWidget *section = title->parentWidget();
        QCOMPARE(Drawing{section}.lookOf(texts::succeeded),
                 Drawing::look(16, QFont::DemiBold, ColorRole::greenText));
        QCOMPARE(title->y(), 30);
        QCOMPARE(placement::gapBelow(title, picture), 18);
        QCOMPARE(placement::gapBelow(picture, back), 18);
        QCOMPARE(placement::gapBeside(back, save), 14);
        QCOMPARE(back->y(), save->y());
        QVERIFY(section->height() - save->geometry().bottom() - 1 >= 30);
        QCOMPARE(placement::inWindow(section).width(), screen.window.width() - 2 * 32);
        for (const QRect &item : {placement::inWindow(title), placement::inWindow(picture),
                                  placement::inWindow(back).united(placement::inWindow(save))}) {
            QVERIFY(placement::centredAcross(item, placement::inWindow(section)));
        }
    }

    void resultPicture()
    {
        const QList<std::pair<QSize, QSize>> sizes{
            {{320, 180}, {600, 338}}, {{180, 320}, {281, 500}}, {{1200, 1200}, {500, 500}}};
        for (const auto &[picture, shown] : sizes) {
            GenerateScreen screen{GenerateScreen::respondWithPicture(picture)};
            QVERIFY(screen.succeeds());
            QWidget *view = screen.find(texts::generatedCover);
            const Drawing own{view};
            QCOMPARE(own.pixmaps().size(), 1);
            QCOMPARE(CornerShape{own.pixmaps().constFirst().leftHalf()}.differenceFromCircle(10), QString{});
            const QRectF place = own.pixmaps().constFirst().place.translated(view->pos());
            QVERIFY2(std::abs(place.width() - shown.width()) <= 1 &&
                         std::abs(place.height() - shown.height()) <= 1,
                     qPrintable(u"%1 x %2"_s.arg(place.width()).arg(place.height())));
            QVERIFY(placement::centredAcross(place, view->parentWidget()->rect()));
            QCOMPARE(shadowDifference(Drawing{view->parentWidget()}, place, {srgb(0, 0, 0, 0.1), 10, {0, 4}}),
                     QString{});
        }
    }

    void theSpinnerTurnsWhileItIsShown()
    {
        QWidget window;
        ProgressSpinner spinner{32, u"忙"_s, &window};
        const auto timerRuns = [&spinner] {
            return !QAbstractEventDispatcher::instance()->registeredTimers(&spinner).isEmpty();
        };
        QVERIFY(!timerRuns());
        showWindow(window, {200, 200});
        const QImage first = screenCapture::capture(&spinner);
        QTRY_VERIFY(screenCapture::capture(&spinner) != first);
        QCOMPARE(spinner.sizeHint(), QSize(32, 32));
        for (QWidget *hidden : {static_cast<QWidget *>(&spinner), &window}) {
            QVERIFY(timerRuns());
            hidden->hide();
            QVERIFY(!timerRuns());
            hidden->show();
        }
        QVERIFY(timerRuns());
    }

    void gradientButtons()
    {
        GenerateScreen screen;
        QVERIFY(screen.succeeds());
        const QList<std::pair<QString, QString>> buttons{{texts::back, u"arrow.counterclockwise"_s},
                                                         {texts::savePicture, u"square.and.arrow.down"_s}};
        for (const auto &[title, icon] : buttons) {
            QWidget *button = screen.find(title);
            const Drawing drawn{button};
            QCOMPARE(drawn.lookOf(title), Drawing::look(14, QFont::DemiBold, Qt::white));
            const QRectF symbol = drawn.symbol(icon, 14, QFont::DemiBold, Qt::white);
            QVERIFY(!symbol.isNull());
            const QRectF text = drawn.placeOf(title);
            QCOMPARE(qRound(text.left() - symbol.right()), 6);
            // As high as the higher of the two.
            QCOMPARE(placement::padding(button->rect(), symbol.united(text)), u"22, 11, 22, 11"_s);
            QCOMPARE(CornerShape{button}.differenceFromContinuous(button->height() / 2.0), QString{});
            QCOMPARE(shadowDifference(Drawing{button->parentWidget()}, button->geometry(),
                                      {srgb(0.45, 0.35, 0.95, 0.25), 6, {0, 3}}, true),
                     QString{});
            QCOMPARE(screenCapture::differenceFromAccentGradient(screenCapture::capture(button), 3),
                     QString{});
        }
    }

    void errorTextsAndPlaces()
    {
        GenerateScreen screen{GenerateScreen::respondWithError()};
        QVERIFY(screen.fails());
        QWidget *title = screen.find<TextLabel>(texts::failed);
        QWidget *message = screen.find<QPlainTextEdit>(texts::errorMessage);
        QWidget *back = screen.find(texts::back);
        QWidget *section = title->parentWidget();
        const Drawing drawn{section};
        QCOMPARE(drawn.lookOf(texts::failed), Drawing::look(16, QFont::DemiBold, ColorRole::redText));
        QCOMPARE(drawn.lookOf(u"[Busy] 稍后"_s), Drawing::look(13, QFont::Normal, ColorRole::primaryText));
        QCOMPARE(drawn.lookOf(texts::back), Drawing::look(14, QFont::Medium, ColorRole::primaryText));
        const QRectF warning =
            drawn.symbol(u"exclamationmark.triangle.fill"_s, 40, QFont::Normal, ColorRole::red);
        QCOMPARE(qRound(warning.top()), 30);
        QCOMPARE(qRound(title->y() - warning.bottom()), 16);
        QCOMPARE(placement::gapBelow(title, message), 16);
        QCOMPARE(placement::gapBelow(message, back), 16);
        QVERIFY(section->height() - back->geometry().bottom() - 1 >= 30);
        const QRectF arrow =
            drawn.symbol(u"arrow.counterclockwise"_s, 14, QFont::Medium, ColorRole::primaryText);
        QCOMPARE(qRound(drawn.placeOf(texts::back).left() - arrow.right()), 6);
        for (const QRectF &item : {warning, QRectF{title->geometry()}, QRectF{back->geometry()}}) {
            QVERIFY(placement::centredAcross(item, section->rect()));
        }
        QVERIFY(message->x() > 0 && message->geometry().right() < section->width() - 1);
        QVERIFY(std::abs(drawn.placeOf(u"[Busy] 稍后"_s).center().x() - section->width() / 2.0) <= 1);
    }
};

QUILMORA_TEST(OutcomeMeasuresTest, runScreenTest)
#include "OutcomeMeasuresTest.moc"
