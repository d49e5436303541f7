#include "ProgramOnDesktop.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

using namespace quilmora;
using namespace quilmora::test;

/// The program comes up on a desktop, is drawn where it says, and takes clicks and keys there.
class WindowDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFieldTakesWhatIsTyped()
    {
        ProgramOnDesktop program;
        program.locate();
        desktopInput::type(u"A sea"_s);
        QTRY_VERIFY_WITH_TIMEOUT(program.desktop().texts().contains(u"A sea"_s), desktopLimit);
        QCOMPARE(program.end(), QByteArray{});
    }

private:
    TemporaryHome m_home;
};

QUILMORA_TEST(WindowDesktopTest, runCoreTest)
#include "WindowDesktopTest.moc"
