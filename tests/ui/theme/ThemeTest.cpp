#include "ui/theme/Theme.h"

#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "ui/style/FieldFrame.h"

#include <QGradient>
#include <QPainter>

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using screenCapture::srgb;

namespace {

/// Opaque.
QColor hex(QRgb color)
{
    return QColor{color};
}

QColor grey(int level, double opacity)
{
    return QColor{level, level, level, qRound(opacity * 255)};
}

/// Relative luminance, as accessibility guidelines define it.
double luminance(const QColor &color)
{
    const auto linear = [](double value) {
        return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) + 0.0722 * linear(color.blueF());
}

/// From 1 for the same color to 21 for black and white.
double contrast(const QColor &first, const QColor &second)
{
    const auto [darker, lighter] = std::minmax({luminance(first), luminance(second)});
    return (lighter + 0.05) / (darker + 0.05);
}

} // namespace

/// The colors themselves, role by role.
class ThemeTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup()
    {
        Theme::current().setScheme(ColorScheme::light);
        Theme::current().setContrast(Contrast::normal);
    }

    void everyRoleHasItsColorInBothSchemes_data()
    {
        QTest::addColumn<ColorRole>("role");
        QTest::addColumn<QColor>("light");
        QTest::addColumn<QColor>("dark");
        const auto row = [](const char *name, ColorRole role, const QColor &light, const QColor &dark) {
            QTest::newRow(name) << role << light << dark;
        };
        const auto fixed = [row](const char *name, ColorRole role, const QColor &color) {
            row(name, role, color, color);
        };
        row("window background", ColorRole::windowBackground, hex(0xECECEC), hex(0x323232));
        row("button background", ColorRole::buttonBackground, hex(0xFFFFFF), hex(0x5A5A5A));
        row("control background", ColorRole::controlBackground, hex(0xFFFFFF), hex(0x1E1E1E));
        row("text background", ColorRole::textBackground, hex(0xFFFFFF), hex(0x1E1E1E));
        row("menu background", ColorRole::menuBackground, hex(0xF6F6F6), hex(0x3A3A3A));
        row("accent", ColorRole::accent, hex(0x007AFF), hex(0x0A84FF));
        row("primary text", ColorRole::primaryText, grey(0, 0.85), grey(255, 0.85));
        row("secondary text", ColorRole::secondaryText, grey(0, 0.58), grey(255, 0.55));
        row("tertiary text", ColorRole::tertiaryText, grey(0, 0.26), grey(255, 0.25));
        row("separator", ColorRole::separator, grey(0, 0.10), grey(255, 0.10));
        row("grey", ColorRole::grey, hex(0x8E8E93), hex(0x98989D));
        row("red", ColorRole::red, hex(0xFF3B30), hex(0xFF453A));
        row("green", ColorRole::green, hex(0x28CD41), hex(0x32D74B));
        row("red text", ColorRole::redText, hex(0xD70015), hex(0xFF6961));
        row("green text", ColorRole::greenText, hex(0x007D1B), hex(0x30DB5B));
        row("control border", ColorRole::controlBorder, grey(0, 0.15), grey(255, 0.16));
        row("control pressed", ColorRole::controlPressed, grey(0, 0.08), grey(255, 0.12));
        row("scrim", ColorRole::scrim, grey(0, 0.20), grey(0, 0.40));
        row("hover fill", ColorRole::hoverFill, QColor{0x8E, 0x8E, 0x93, 38}, QColor{0x98, 0x98, 0x9D, 38});
        row("option border", ColorRole::optionBorder, QColor{0x8E, 0x8E, 0x93, 64},
            QColor{0x98, 0x98, 0x9D, 64});
        fixed("on accent", ColorRole::onAccent, hex(0xFFFFFF));
        fixed("selected fill", ColorRole::selectedFill, srgb(1.0, 0.78, 0.2));
        fixed("selected border", ColorRole::selectedBorder, srgb(0.95, 0.7, 0.1));
        fixed("selected primary text", ColorRole::selectedPrimaryText, srgb(0.2, 0.2, 0.1));
        fixed("selected secondary text", ColorRole::selectedSecondaryText, srgb(0.3, 0.25, 0.05));
        fixed("selected chip text", ColorRole::selectedChipText, srgb(0.1, 0.1, 0.1));
        fixed("step", ColorRole::step, srgb(0.18, 0.72, 0.45));
        fixed("picture shadow", ColorRole::pictureShadow, srgb(0, 0, 0, 0.1));
        fixed("sheet shadow", ColorRole::sheetShadow, srgb(0, 0, 0, 0.35));
        fixed("gradient button shadow", ColorRole::gradientButtonShadow, srgb(0.45, 0.35, 0.95, 0.25));
    }

    void everyRoleHasItsColorInBothSchemes()
    {
        QFETCH(const ColorRole, role);
        QFETCH(const QColor, light);
        QFETCH(const QColor, dark);
        QCOMPARE(QColor::fromRgba(themeColor(role).rgba()), light);
        Theme::current().setScheme(ColorScheme::dark);
        QCOMPARE(QColor::fromRgba(themeColor(role).rgba()), dark);
    }

    void thePaletteOfQtFollows()
    {
#ifdef Q_OS_MACOS
        QSKIP("The system's own palette is used here.");
#endif
        for (const auto scheme : {ColorScheme::dark, ColorScheme::light}) {
            Theme::current().setScheme(scheme);
            const QPalette palette = QApplication::palette();
            QCOMPARE(palette.color(QPalette::Window), themeColor(ColorRole::windowBackground));
            QCOMPARE(palette.color(QPalette::Base), themeColor(ColorRole::textBackground));
            QCOMPARE(palette.color(QPalette::Text), themeColor(ColorRole::primaryText));
            QCOMPARE(palette.color(QPalette::Disabled, QPalette::ButtonText),
                     themeColor(ColorRole::tertiaryText));
            QCOMPARE(palette.color(QPalette::PlaceholderText), themeColor(ColorRole::tertiaryText));
            QCOMPARE(palette.color(QPalette::Highlight), themeColor(ColorRole::accent));
        }
    }

    void theGradientRunsFromLeftToRight()
    {
        const QLinearGradient gradient = Theme::accentGradient({10, 20, 300, 40});
        QCOMPARE(gradient.start(), QPointF(10, 20));
        QCOMPARE(gradient.finalStop(), QPointF(310, 20));
        const QGradientStops stops = gradient.stops();
        QCOMPARE(stops.size(), 3);
        const QList<QColor> expected{srgb(0.1, 0.8, 0.85), srgb(0.45, 0.35, 0.95), srgb(0.95, 0.3, 0.75)};
        for (int i = 0; i < 3; ++i) {
            QCOMPARE(stops.at(i).first, i / 2.0);
            QCOMPARE(QColor::fromRgba(stops.at(i).second.rgba()), expected.at(i));
        }
    }

    void textsStandOutFromTheirBackgrounds_data()
    {
        QTest::addColumn<ColorRole>("text");
        QTest::addColumn<QList<ColorRole>>("grounds");
        const QList<ColorRole> grounds{ColorRole::windowBackground, ColorRole::controlBackground,
                                       ColorRole::textBackground, ColorRole::menuBackground};
        QTest::newRow("primary text") << ColorRole::primaryText << grounds;
        QTest::newRow("secondary text") << ColorRole::secondaryText << grounds;
        QTest::newRow("button's title")
            << ColorRole::primaryText << QList<ColorRole>{ColorRole::buttonBackground};
        const QList<ColorRole> selected{ColorRole::selectedFill};
        QTest::newRow("selected") << ColorRole::selectedPrimaryText << selected;
        QTest::newRow("selected, secondary") << ColorRole::selectedSecondaryText << selected;
        QTest::newRow("selected chip") << ColorRole::selectedChipText << selected;
        const QList<ColorRole> plain{ColorRole::windowBackground, ColorRole::controlBackground};
        QTest::newRow("red text") << ColorRole::redText << plain;
        QTest::newRow("green text") << ColorRole::greenText << plain;
        const QList<ColorRole> backdrop{ColorRole::previewBackdrop};
        QTest::newRow("preview") << ColorRole::onBackdrop << backdrop;
        QTest::newRow("preview, secondary") << ColorRole::onBackdropSecondary << backdrop;
    }

    void textsStandOutFromTheirBackgrounds()
    {
        QFETCH(const ColorRole, text);
        QFETCH(const QList<ColorRole>, grounds);
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            Theme::current().setScheme(scheme);
            for (const ColorRole role : grounds) {
                const QColor ground =
                    screenCapture::over(themeColor(role), themeColor(ColorRole::windowBackground));
                const double ratio = contrast(screenCapture::over(themeColor(text), ground), ground);
                QVERIFY2(ratio >= 4.5, qPrintable(QString::number(ratio)));
            }
        }
    }

    void atHighContrastTheyStandOutMore_data()
    {
        QTest::addColumn<ColorRole>("role");
        QTest::addColumn<double>("least");
        QTest::newRow("primary text") << ColorRole::primaryText << 12.0;
        QTest::newRow("secondary text") << ColorRole::secondaryText << 7.0;
        for (const ColorRole role : {ColorRole::tertiaryText, ColorRole::red, ColorRole::green,
                                     ColorRole::redText, ColorRole::greenText, ColorRole::grey}) {
            QTest::addRow("text or symbol, role %d", static_cast<int>(role)) << role << 4.5;
        }
        for (const ColorRole role :
             {ColorRole::controlBorder, ColorRole::optionBorder, ColorRole::selectedBorder,
              ColorRole::tileBorder, ColorRole::separator}) {
            QTest::addRow("line, role %d", static_cast<int>(role)) << role << 3.0;
        }
    }

    void atHighContrastTheyStandOutMore()
    {
        QFETCH(const ColorRole, role);
        QFETCH(const double, least);
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            Theme::current().setScheme(scheme);
            for (const ColorRole ground : {ColorRole::windowBackground, ColorRole::controlBackground}) {
                const auto ratio = [&] {
                    return contrast(screenCapture::over(themeColor(role), themeColor(ground)),
                                    themeColor(ground));
                };
                Theme::current().setContrast(Contrast::normal);
                const double usual = ratio();
                Theme::current().setContrast(Contrast::high);
                QVERIFY2(ratio() >= least && ratio() >= usual, qPrintable(QString::number(ratio())));
            }
        }
    }

    void atHighContrastBordersAreThicker()
    {
        const auto borderPixels = [] {
            QImage image{100, 40, QImage::Format_ARGB32};
            image.fill(themeColor(ColorRole::windowBackground));
            QPainter painter{&image};
            drawFieldFrame(painter, image.rect(), false);
            const QRgb inside = image.pixel(50, 20);
            int top = 0;
            while (image.pixel(50, top) != inside) {
                ++top;
            }
            return top;
        };
        QCOMPARE(borderPixels(), 1);
        Theme::current().setContrast(Contrast::high);
        QCOMPARE(borderPixels(), 2);
    }
};

QUILMORA_TEST(ThemeTest, runScreenTest)

#include "ThemeTest.moc"
