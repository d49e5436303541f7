#include "screens/common/Sheet.h"

#include "screens/common/Scrim.h"
#include "screens/common/Theme.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <cstdlib>
#include <memory>

using namespace quilmora;
using namespace quilmora::test;

/// What a sheet changes of the window that it lies over.
class SheetTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { window.reset(); }
    void theWindowIsDarkenedWithTheSheetsShadow_data();
    void theWindowIsDarkenedWithTheSheetsShadow();
    void theEdgeIsAHairline();
    void theScrimGoesWithTheSheet();

private:
    Sheet *open()
    {
        auto *sheet = new Sheet{window.get()};
        sheet->setFixedSize(300, 200);
        sheet->open();
        return sheet;
    }

    std::unique_ptr<QWidget> window;
};

void SheetTest::init()
{
    Theme::current().setScheme(ColorScheme::light);
    window = std::make_unique<QWidget>();
    showWindow(*window, {1000, 700});
}

void SheetTest::theWindowIsDarkenedWithTheSheetsShadow_data()
{
    QTest::addColumn<double>("devicePixelRatio");
    QTest::newRow("one pixel for each point") << 1.0;
    QTest::newRow("two") << 2.0;
}

void SheetTest::theWindowIsDarkenedWithTheSheetsShadow()
{
    QFETCH(const double, devicePixelRatio);
    const QRect place{window->mapFromGlobal(open()->pos()), QSize{300, 200}};
    const QImage picture = screenCapture::capture(window->findChild<Scrim *>(), devicePixelRatio);
    const auto darkness = [&picture](QPoint at) {
        return screenCapture::colorAt(picture, at).alpha();
    };
    const int scrim = themeColor(ColorRole::scrim).alpha();
    QVERIFY(std::abs(darkness({5, 5}) - scrim) <= 1);
    const QPoint below{place.center().x(), place.bottom() + 1};
    const QPoint above{place.center().x(), place.top() - 1};
    // Darkest below, as of a light from above, and gone where the blur ends.
    QVERIFY(darkness(below + QPoint(0, 2)) > darkness(above - QPoint(0, 2)));
    QVERIFY(darkness(above - QPoint(0, 2)) > scrim + 5);
    QVERIFY(darkness(below + QPoint(0, 20)) < darkness(below + QPoint(0, 2)));
    QVERIFY(std::abs(darkness(below + QPoint(0, 50)) - scrim) <= 1);
}

void SheetTest::theEdgeIsAHairline()
{
    const QImage picture = screenCapture::capture(open(), 2.0);
    const auto at = [&picture](double y) {
        return screenCapture::colorAt(picture, {150, y});
    };
    QVERIFY(screenCapture::isClose(at(20), themeColor(ColorRole::windowBackground)));
    QVERIFY(at(0.25).lightness() < at(20).lightness() - 20);
    QVERIFY(screenCapture::isClose(at(1.25), at(20)));
}

void SheetTest::theScrimGoesWithTheSheet()
{
    Sheet *sheet = open();
    const Scrim *scrim = window->findChild<Scrim *>();
    QVERIFY(scrim->isVisible());
    QCOMPARE(scrim->geometry(), window->rect());
    sheet->close();
    QVERIFY(!scrim->isVisible());
    QTRY_VERIFY(window->findChild<Scrim *>() == nullptr);
}

int main(int argc, char *argv[])
{
    return runScreenTest<SheetTest>(argc, argv);
}

#include "SheetTest.moc"
