#include "app/TopNavigationBar.h"
#include "screens/generate/DisclosureHeader.h"
#include "screens/generate/FormOptions.h"
#include "screens/generate/GenerateButton.h"
#include "screens/generate/UploadCard.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/Texts.h"
#include "ui/widgets/ActionButton.h"
#include "ui/widgets/PaintedButton.h"

#include <QLineEdit>
#include <QPainter>
#include <QVBoxLayout>
#include <QWindow>

#include <functional>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

using Make = std::function<PaintedButton *(QWidget *)>;

Make action(ActionButton::Kind kind)
{
    return [kind](QWidget *parent) {
        return new ActionButton{
            u"xmark.circle"_s, texts::remove, {kind, 13, QFont::Normal, 6, {12, 6}}, parent};
    };
}

Make upload(const QImage &picture)
{
    return [picture](QWidget *parent) {
        auto *face = new UploadButton{texts::facePhoto, u"square.and.arrow.up"_s, parent};
        face->setImage(picture, u"photo.png"_s);
        return face;
    };
}

template <typename Option, typename Value>
Make option(const Value &value, bool checked)
{
    return [value, checked](QWidget *parent) {
        auto *button = new Option{value, parent};
        button->setChecked(checked);
        return button;
    };
}

} // namespace

/// How every button that takes the keyboard focus shows it.
class FocusRingTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_window = std::make_unique<QWidget>();
        auto *column = new QVBoxLayout{m_window.get()};
        m_other = new QLineEdit{m_window.get()};
        column->addWidget(m_other);
        column->addStretch();
        showWindow(*m_window, {500, 400});
    }

    void cleanup() { m_window.reset(); }
    void theFocusShowsInARing_data()
    {
        QTest::addColumn<Make>("build");
        QTest::newRow("bordered") << action(ActionButton::Kind::bordered);
        QTest::newRow("prominent") << action(ActionButton::Kind::prominent);
        QTest::newRow("plain") << action(ActionButton::Kind::plain);
        QTest::newRow("gradient") << Make{[](QWidget *parent) {
            return new GradientButton{u"arrow.counterclockwise"_s, texts::back, 0.25, parent};
        }};
        QTest::newRow("disclosure") << Make{[](QWidget *parent) {
            return new DisclosureHeader{u"gearshape"_s, texts::advancedOptions, true, parent};
        }};
        QTest::newRow("generate") << Make{[](QWidget *parent) {
            return new GenerateButton{parent};
        }};
        QTest::newRow("upload, empty") << upload({});
        QTest::newRow("upload, narrow picture") << upload(samplePictures::picture({60, 80}));
        QTest::newRow("upload, wide picture") << upload(samplePictures::picture({800, 140}));
        for (const bool checked : {true, false}) {
            const char *state = checked ? "checked" : "not checked";
            QTest::addRow("size card, %s", state) << option<SizeCard>(CoverSize::presets().first(), checked);
            QTest::addRow("expression chip, %s", state) << option<EmotionChip>(u"震惊"_s, checked);
            QTest::addRow("tab, %s", state)
                << option<NavTabButton>(NavigationTab{NavigationTab::settings}, checked);
        }
    }

    void theFocusShowsInARing()
    {
        QFETCH(const Make, build);
        PaintedButton *button = build(m_window.get());
        m_window->layout()->addWidget(button);
        // Hovering looks otherwise.
        QTest::mouseMove(m_window->windowHandle(), {1, 1});
        QVERIFY(QTest::qWaitFor([button] { return button->isVisible(); }));
        QCoreApplication::processEvents();
        checkTheEdge(button);
        for (const int ratio : {1, 2}) {
            checkTheWidth(button, ratio);
        }
        checkFocusFromTheProgram(button);
        checkAClick(button);
    }

    void aWindowThatComesBackShowsTheFocusAsTheUserWorks()
    {
        auto *button = new GenerateButton{m_window.get()};
        m_window->layout()->addWidget(button);
        QCoreApplication::processEvents();
        QWidget second;
        for (const bool byKeyboard : {false, true}) {
            click(button);
            QVERIFY(!button->showsFocus());
            showWindow(second, {100, 100});
            if (byKeyboard) {
                QTest::keyClick(&second, Qt::Key_A);
            } else {
                click(&second);
            }
            second.hide();
            m_window->activateWindow();
            QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
            QTRY_VERIFY(button->hasFocus());
            QCOMPARE(button->showsFocus(), byKeyboard);
            m_other->setFocus();
        }
    }

private:
    void checkTheEdge(PaintedButton *button)
    {
        m_other->setFocus();
        const QImage without = screenCapture::capture(button);
        // There any second drawing of the same outline shows a little.
        const QRect outer = without.rect().adjusted(1, 1, -1, -1);
        const QRect inner = without.rect().adjusted(4, 4, -4, -4);
        for (const auto reason : {Qt::TabFocusReason, Qt::BacktabFocusReason}) {
            button->setFocus(reason);
            QVERIFY(button->showsFocus());
            const QImage with = screenCapture::capture(button);
            const int inside = screenCapture::countDifferent(without, with, inner);
            const int atTheEdge = screenCapture::countDifferent(without, with, outer) - inside;
            QVERIFY2(atTheEdge > button->width() && inside < atTheEdge / 2,
                     qPrintable(u"%1 at the edge, %2 inside"_s.arg(atTheEdge).arg(inside)));
            m_other->setFocus();
            QVERIFY(!button->showsFocus());
            QCOMPARE(screenCapture::capture(button), without);
        }
    }

    /// Two whole device-independent pixels.
    void checkTheWidth(PaintedButton *button, int ratio)
    {
        const auto onWhite = [&] {
            const QImage seen = screenCapture::capture(button, ratio);
            QImage picture{seen.size(), QImage::Format_RGB32};
            picture.fill(Qt::white);
            QPainter{&picture}.drawImage(picture.rect(), seen);
            return picture;
        };
        m_other->setFocus();
        const QImage without = onWhite();
        button->setFocus(Qt::TabFocusReason);
        const QImage with = onWhite();
        const int middle = with.width() / 2;
        const int width = 2 * ratio;
        const QColor ring = with.pixelColor(middle, width - 1);
        QVERIFY(!screenCapture::isClose(ring, without.pixelColor(middle, width - 1), 24));
        for (int y = 0; y < width; ++y) {
            // The border and what it lies on shine through a little.
            const QColor there = with.pixelColor(middle, y);
            QVERIFY2(screenCapture::isClose(there, ring, 24),
                     qPrintable(u"%1: %2"_s.arg(y).arg(screenCapture::text(there))));
        }
        QVERIFY(screenCapture::isClose(with.pixelColor(middle, width), without.pixelColor(middle, width), 8));
    }

    /// It shows after a key only.
    void checkFocusFromTheProgram(PaintedButton *button)
    {
        const QList<std::pair<Qt::Key, bool>> keys{
            {Qt::Key_unknown, false}, {Qt::Key_Alt, false}, {Qt::Key_A, true}};
        for (const auto &[key, shows] : keys) {
            click(m_other);
            if (key != Qt::Key_unknown) {
                QTest::keyClick(m_other, key);
            }
            button->setFocus(Qt::OtherFocusReason);
            QVERIFY(button->hasFocus());
            QCOMPARE(button->showsFocus(), shows);
        }
        // A menu leaves it as it was, whatever was pressed there.
        for (const bool shows : {true, false}) {
            click(m_other);
            button->setFocus(shows ? Qt::TabFocusReason : Qt::OtherFocusReason);
            m_other->setFocus(Qt::PopupFocusReason);
            if (shows) {
                click(m_other);
            } else {
                QTest::keyClick(m_other, Qt::Key_Escape);
            }
            button->setFocus(Qt::PopupFocusReason);
            QCOMPARE(button->showsFocus(), shows);
        }
    }

    /// It leaves no ring.
    void checkAClick(PaintedButton *button)
    {
        button->setCheckable(false);
        // As the tabs and options are when they are not checked.
        button->setFocusPolicy(Qt::StrongFocus);
        m_other->setFocus();
        QTest::keyClick(m_other, Qt::Key_A);
        QTest::mousePress(button, Qt::LeftButton);
        QVERIFY(button->hasFocus());
        QVERIFY(!button->showsFocus());
        QTest::mouseRelease(button, Qt::LeftButton);
        button->clearFocus();
        const QImage without = screenCapture::capture(button);
        button->setFocus(Qt::MouseFocusReason);
        QCOMPARE(screenCapture::capture(button), without);
    }

    std::unique_ptr<QWidget> m_window;
    QLineEdit *m_other = nullptr;
};

QUILMORA_TEST(FocusRingTest, runScreenTest)
#include "FocusRingTest.moc"
