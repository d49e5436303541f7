#include "ProgramOnDesktop.h"
#include "platform/Files.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/SamplePictures.h"
#include "support/TemporaryHome.h"
#include "support/TestProgram.h"

#include <QDir>
#include <QFile>

#include <optional>

using namespace quilmora;
using namespace quilmora::test;

/// With the file dialog of a desktop, a file that exists is replaced after exactly one question.
class OverwriteDesktopTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(QDir{}.mkpath(m_home.path(u"Pictures"_s)));
        DatabaseManager database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()};
        const auto path =
            ImageStorageService{coversFolder::path()}.saveImage(samplePictures::picture({640, 480}));
        database.insertHistory(u"A cover"_s, path.value(), u"model"_s);

        m_program.emplace();
        QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().act(u"已生成列表"_s), desktopLimit);
        QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().act(u"A cover"_s), desktopLimit);
    }

    void cleanupTestCase()
    {
        m_program.reset();
        // Qt keeps preferences of file dialogs, whoever shows them.
        QVERIFY(!QFile::exists(m_home.path(u".config/QtProject.conf"_s)));
    }

    void init()
    {
        samplePictures::write(m_home.path(u"Pictures/mine.png"_s), "former");
        QTRY_VERIFY_WITH_TIMEOUT(m_program->desktop().act(u"保存图片"_s), desktopLimit);
    }

    void aNameWithoutEndingIsAskedAboutByTheProgram()
    {
        QVERIFY(enter(u"mine"_s, &Test::programAsks));
        QCOMPARE(content(), "former");
        QVERIFY(m_program->desktop().act(u"替换"_s));
        QTRY_VERIFY_WITH_TIMEOUT(isReplaced(), desktopLimit);
    }

    void aRefusalKeepsFileAndName()
    {
        QVERIFY(enter(u"mine"_s, &Test::programAsks));
        QVERIFY(m_program->desktop().act(u"取消"_s));
        QVERIFY(pressUntil(&Test::takesName, u"Return"_s, &Test::dialogAsks));
        QCOMPARE(content(), "former");
        QVERIFY(pressUntil(&Test::dialogAsks, u"Escape"_s, &Test::takesName));
        QVERIFY(pressUntil(&Test::takesName, u"Escape"_s, &Test::isClosed));
        QCOMPARE(content(), "former");
    }

    void aWholeNameIsAskedAboutByTheDialogAlone()
    {
        QVERIFY(enter(u"mine.png"_s, &Test::dialogAsks));
        QCOMPARE(content(), "former");
        QVERIFY(pressUntil(&Test::dialogAsks, u"Return"_s, &Test::isReplaced));
    }

private:
    using Test = OverwriteDesktopTest;
    using Condition = bool (Test::*)();

    /// Types the name into the dialog, if there is one, and presses the key where that is possible, until the
    /// condition holds; once more where it had no effect, since a window that has just opened may miss keys.
    bool pressUntil(Condition isReady, const QString &key, Condition holds, const QString &name = {})
    {
        constexpr int patience = 3'000; // milliseconds
        const auto isDone = [&] {
            if ((this->*holds)()) {
                return true;
            }
            if (!(this->*isReady)()) {
                return false;
            }
            if (!name.isEmpty()) {
                desktopInput::press(u"ctrl+a"_s);
                desktopInput::type(name);
            }
            desktopInput::press(key);
            return QTest::qWaitFor([&] { return (this->*holds)(); }, patience);
        };
        return QTest::qWaitFor(isDone, desktopLimit);
    }

    bool enter(const QString &name, Condition holds)
    {
        return pressUntil(&Test::takesName, u"Return"_s, holds, name);
    }

    /// Whether the dialog is open and its name field has the focus, as the focus ring of GTK shows.
    bool takesName()
    {
        constexpr QColor focusRing{0x35, 0x84, 0xE4};
        constexpr int leastWidth = 300;
        return desktopInput::activeTitle() == m_dialogTitle &&
               desktopInput::pixelsOf(focusRing).width() > leastWidth;
    }

    bool programAsks() { return m_program->desktop().isShowing(m_programQuestion); }

    /// Whether the dialog's own question is open, which has no title.
    bool dialogAsks()
    {
        const QString title = desktopInput::activeTitle();
        return title.isEmpty() && !title.isNull() && !programAsks();
    }

    bool isClosed() { return desktopInput::activeTitle() == u"Quilmora"_s; }
    bool isReplaced() { return content().startsWith("\x89PNG"); }

    QByteArray content() const
    {
        QFile file{m_home.path(u"Pictures/mine.png"_s)};
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
    }

    const QString m_programQuestion = u"“mine.png”已存在。要替换它吗？"_s;
    const QString m_dialogTitle = u"保存封面图片"_s;
    const TemporaryHome m_home;
    std::optional<ProgramOnDesktop> m_program;
};

QUILMORA_TEST(OverwriteDesktopTest, runCoreTest)
#include "OverwriteDesktopTest.moc"
