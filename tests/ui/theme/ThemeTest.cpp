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
QColor hex(QRgb color) { return QColor{color}; }

QColor grey(int level, double opacity) { return QColor{level, level, level, qRound(opacity * 255)}; }

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

    void everyRoleHasItsColorInBothSchemes()
    {
        struct Colors {
            ColorRole role;
            QColor light;
            QColor dark;
        };
        const auto fixed = [](ColorRole role, const QColor &color) {
            return Colors{role, color, color};
        };
        const QList<Colors> all{
            {ColorRole::windowBackground, hex(0xECECEC), hex(0x323232)},
            {ColorRole::buttonBackground, hex(0xFFFFFF), hex(0x5A5A5A)},
            {ColorRole::controlBackground, hex(0xFFFFFF), hex(0x1E1E1E)},
            {ColorRole::textBackground, hex(0xFFFFFF), hex(0x1E1E1E)},
            {ColorRole::menuBackground, hex(0xF6F6F6), hex(0x3A3A3A)},
            {ColorRole::accent, hex(0x007AFF), hex(0x0A84FF)},
            {ColorRole::primaryText, grey(0, 0.85), grey(255, 0.85)},
            {ColorRole::secondaryText, grey(0, 0.58), grey(255, 0.55)},
            {ColorRole::tertiaryText, grey(0, 0.26), grey(255, 0.25)},
            {ColorRole::separator, grey(0, 0.10), grey(255, 0.10)},
            {ColorRole::grey, hex(0x8E8E93), hex(0x98989D)},
            {ColorRole::red, hex(0xFF3B30), hex(0xFF453A)},
            {ColorRole::green, hex(0x28CD41), hex(0x32D74B)},
            {ColorRole::redText, hex(0xD70015), hex(0xFF6961)},
            {ColorRole::greenText, hex(0x007D1B), hex(0x30DB5B)},
            {ColorRole::controlBorder, grey(0, 0.15), grey(255, 0.16)},
            {ColorRole::controlPressed, grey(0, 0.08), grey(255, 0.12)},
            {ColorRole::scrim, grey(0, 0.20), grey(0, 0.40)},
            {ColorRole::hoverFill, QColor{0x8E, 0x8E, 0x93, 38}, QColor{0x98, 0x98, 0x9D, 38}},
            {ColorRole::optionBorder, QColor{0x8E, 0x8E, 0x93, 64}, QColor{0x98, 0x98, 0x9D, 64}},
            fixed(ColorRole::onAccent, hex(0xFFFFFF)),
            fixed(ColorRole::selectedFill, srgb(1.0, 0.78, 0.2)),
            fixed(ColorRole::selectedBorder, srgb(0.95, 0.7, 0.1)),
            fixed(ColorRole::selectedPrimaryText, srgb(0.2, 0.2, 0.1)),
            fixed(ColorRole::selectedSecondaryText, srgb(0.3, 0.25, 0.05)),
            fixed(ColorRole::selectedChipText, srgb(0.1, 0.1, 0.1)),
            fixed(ColorRole::step, srgb(0.18, 0.72, 0.45)),
            fixed(ColorRole::pictureShadow, srgb(0, 0, 0, 0.1)),
            fixed(ColorRole::sheetShadow, srgb(0, 0, 0, 0.35)),
            fixed(ColorRole::gradientButtonShadow, srgb(0.45, 0.35, 0.95, 0.25)),
        };
        for (const auto &[role, light, dark] : all) {
            for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
                Theme::current().setScheme(scheme);
                const QColor color = QColor::fromRgba(themeColor(role).rgba());
                QVERIFY2(
                    color == (scheme == ColorScheme::light ? light : dark),
                    qPrintable(u"role %1: %2"_s.arg(static_cast<int>(role)).arg(screenCapture::text(color))));
            }
        }
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

    void textsStandOutFromTheirBackgrounds()
    {
        const QList<ColorRole> plain{ColorRole::windowBackground, ColorRole::controlBackground};
        const QList<ColorRole> all = plain + QList{ColorRole::textBackground, ColorRole::menuBackground};
        const QList<ColorRole> selected{ColorRole::selectedFill};
        const QList<ColorRole> backdrop{ColorRole::previewBackdrop};
        const QList<std::pair<ColorRole, QList<ColorRole>>> texts{
            {ColorRole::primaryText, all + QList{ColorRole::buttonBackground}},
            {ColorRole::secondaryText, all},
            {ColorRole::selectedPrimaryText, selected},
            {ColorRole::selectedSecondaryText, selected},
            {ColorRole::selectedChipText, selected},
            {ColorRole::redText, plain},
            {ColorRole::greenText, plain},
            {ColorRole::onBackdrop, backdrop},
            {ColorRole::onBackdropSecondary, backdrop},
        };
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            Theme::current().setScheme(scheme);
            for (const auto &[text, grounds] : texts) {
                for (const ColorRole role : grounds) {
                    const QColor ground =
                        screenCapture::over(themeColor(role), themeColor(ColorRole::windowBackground));
                    const double ratio = contrast(screenCapture::over(themeColor(text), ground), ground);
                    QVERIFY2(ratio >= 4.5, qPrintable(u"role %1 on %2: %3"_s.arg(static_cast<int>(text))
                                                          .arg(static_cast<int>(role))
                                                          .arg(ratio)));
                }
            }
        }
    }

    void atHighContrastTheyStandOutMore()
    {
        // Texts and symbols, then lines.
        const QList<std::pair<ColorRole, double>> leastOf{
            {ColorRole::primaryText, 12}, {ColorRole::secondaryText, 7},  {ColorRole::tertiaryText, 4.5},
            {ColorRole::red, 4.5},        {ColorRole::green, 4.5},        {ColorRole::redText, 4.5},
            {ColorRole::greenText, 4.5},  {ColorRole::grey, 4.5},         {ColorRole::controlBorder, 3},
            {ColorRole::optionBorder, 3}, {ColorRole::selectedBorder, 3}, {ColorRole::tileBorder, 3},
            {ColorRole::separator, 3},
        };
        for (const auto scheme : {ColorScheme::light, ColorScheme::dark}) {
            Theme::current().setScheme(scheme);
            for (const auto &[role, least] : leastOf) {
                for (const ColorRole ground : {ColorRole::windowBackground, ColorRole::controlBackground}) {
                    const auto ratioAt = [&, role = role](Contrast level) {
                        Theme::current().setContrast(level);
                        return contrast(screenCapture::over(themeColor(role), themeColor(ground)),
                                        themeColor(ground));
                    };
                    const double usual = ratioAt(Contrast::normal);
                    const double high = ratioAt(Contrast::high);
                    QVERIFY2(high >= least && high >= usual,
                             qPrintable(u"role %1: %2"_s.arg(static_cast<int>(role)).arg(high)));
                }
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
