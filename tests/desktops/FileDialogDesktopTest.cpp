#include "ProgramOnDesktop.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <optional>
#include <tuple>

using namespace quilmora;
using namespace quilmora::test;

/// The file dialog of Qt, used by keyboard alone while a screen reader runs.
class FileDialogDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { m_program.emplace(); }

    void cleanupTestCase() { m_program.reset(); }

    void theKeyboardWorksAfterANameWasTyped()
    {
        const QString photo = samplePictures::write(m_home.path(u"photo.png"_s),
                                                    samplePictures::png(samplePictures::picture({640, 640})));
        // A window that still moves would take the click with the other card.
        m_program->locate();
        desktopInput::click(m_program->centerOf(u"人脸形象（必填）"_s));
        QTRY_COMPARE_WITH_TIMEOUT(desktopInput::activeTitle(), u"选择图片"_s, desktopLimit);
        desktopInput::type(photo);
        // A list of completions would come a moment later, with the name alone.
        std::ignore =
            QTest::qWaitFor([this] { return m_program->desktop().isShowing(u"photo.png"_s); }, 3000);
        desktopInput::press(u"Return"_s);
        QTRY_COMPARE_WITH_TIMEOUT(desktopInput::activeTitle(), u"Quilmora"_s, desktopLimit);
        QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().isShowing(u"移除"_s), desktopLimit);
        QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().hasFocus(u"人脸形象（必填）"_s), desktopLimit);
        // To the button that removes the picture, and to the next card.
        desktopInput::press(u"Tab"_s);
        desktopInput::press(u"Tab"_s);
        QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().hasFocus(u"风格参考（上传示例封面，非必填）"_s),
                                 desktopLimit);
    }

private:
    const TemporaryHome m_home;
    std::optional<ProgramOnDesktop> m_program;
};

QUILMORA_TEST(FileDialogDesktopTest, runCoreTest)
#include "FileDialogDesktopTest.moc"
