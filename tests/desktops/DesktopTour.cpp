#include "DesktopInput.h"
#include "ProgramOnDesktop.h"
#include "support/TemporaryHome.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// The program comes up on a desktop, is drawn where it says, and takes clicks and keys there.
class DesktopTour final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFieldTakesWhatIsTyped();

private:
    TemporaryHome home;
};

void DesktopTour::aFieldTakesWhatIsTyped()
{
    ProgramOnDesktop program;
    // The window may still be moving as it comes.
    const auto clickedField = [&program] {
        program.locate();
        desktopInput::click(program.centerOf(u"背景场景"_s));
        return program.desktop().hasFocus(u"背景场景"_s);
    };
    QTRY_VERIFY_WITH_TIMEOUT(!desktopInput::pixelsOf(QColor{ProgramOnDesktop::accent}).isEmpty(),
                             desktopLimit);
    QTRY_VERIFY_WITH_TIMEOUT(clickedField(), desktopLimit);
    desktopInput::type(u"A sea"_s);
    QTRY_VERIFY_WITH_TIMEOUT(program.desktop().texts().contains(u"A sea"_s), desktopLimit);
    QCOMPARE(program.end(), QByteArray{});
}

QTEST_GUILESS_MAIN(DesktopTour)
#include "DesktopTour.moc"
