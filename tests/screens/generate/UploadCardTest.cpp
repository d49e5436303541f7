#include "screens/generate/UploadCard.h"

#include "support/AccessibleFinder.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/Texts.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr qsizetype megabyte = 1'048'576;

enum class Picture { fresh, former, none };

/// Makes a file, or what else a panel may give the path of, in a folder.
using Make = std::function<QString(const QDir &folder)>;

Make file(const QByteArray &bytes)
{
    return [bytes](const QDir &folder) {
        return samplePictures::write(folder.filePath(u"b.png"_s), bytes);
    };
}

Make linkTo(const Make &make)
{
    return [make](const QDir &folder) {
        const QString link = folder.filePath(u"link.png"_s);
        return QFile::link(make(folder), link) ? link : QString{};
    };
}

} // namespace

/// What becomes of the files that a user picks.
class UploadCardTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        m_home = std::make_unique<TemporaryHome>();
        m_panels = std::make_unique<ScriptedFileDialogs>();
        m_window = std::make_unique<QWidget>();
        auto *column = new QVBoxLayout{m_window.get()};
        m_card = new UploadCard{texts::facePhoto, u"square.and.arrow.up"_s, *m_panels, m_window.get()};
        column->addWidget(m_card);
        showWindow(*m_window, {480, 320});
    }

    void cleanup() { m_window.reset(); }

    void aPickedPictureIsShownAndCanBeRemoved()
    {
        QVERIFY(m_card->image().isNull());
        QVERIFY(removeButton() == nullptr);
        pick(picture());
        QCOMPARE(m_card->image().convertToFormat(QImage::Format_RGB32), samplePictures::picture({60, 40}));
        QCOMPARE(otherTexts(), QStringList{});
        QCOMPARE(accessible::interfaceOf(removeButton())->text(QAccessible::Description), texts::facePhoto);
        removeButton()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(removeButton(), Qt::Key_Space);
        QVERIFY(m_card->image().isNull());
        QVERIFY(removeButton() == nullptr);
        QVERIFY(face()->hasFocus());
    }

    void aFurtherPick_data()
    {
        QTest::addColumn<Make>("make");
        QTest::addColumn<Picture>("shown");
        QTest::addColumn<QStringList>("message");
        const QStringList large{u"图片过大（15.0M），不能超过 10M"_s};
        const Make fifteen = file(samplePictures::pngOfSize(15 * megabyte));
        const Make missing = [](const QDir &folder) {
            return folder.filePath(u"missing.png"_s);
        };
        const Make small = file(samplePictures::png(samplePictures::picture({30, 20})));
        QTest::newRow("a picture") << small << Picture::fresh << QStringList{};
        QTest::newRow("exactly ten megabytes")
            << file(samplePictures::pngOfSize(10 * megabyte)) << Picture::fresh << QStringList{};
        QTest::newRow("a byte more") << file(samplePictures::pngOfSize(10 * megabyte + 1)) << Picture::former
                                     << QStringList{u"图片过大（10.0M），不能超过 10M"_s};
        QTest::newRow("fifteen megabytes") << fifteen << Picture::former << large;
        QTest::newRow("a link to them") << linkTo(fifteen) << Picture::former << large;
        QTest::newRow("a link to a picture") << linkTo(small) << Picture::fresh << QStringList{};
        QTest::newRow("a link that leads nowhere") << linkTo(missing) << Picture::none << QStringList{};
        const QByteArray png = samplePictures::png(samplePictures::picture({200, 200}));
        const QList<std::pair<const char *, QByteArray>> broken{
            {"0 bytes", {}},
            {"half a PNG", png.first(png.size() / 2)},
            {"the first bytes of a PNG", png.first(20)},
            {"a text", "<svg xmlns='http://www.w3.org/2000/svg'/>"},
        };
        for (const auto &[name, bytes] : broken) {
            QTest::newRow(name) << file(bytes) << Picture::none << QStringList{};
        }
        QTest::newRow("a folder") << Make{&QDir::path} << Picture::none << QStringList{};
        QTest::newRow("missing") << missing << Picture::former
                                 << QStringList{u"读取文件失败：此文件或目录不存在"_s};
    }

    void aFurtherPick()
    {
        QFETCH(const Make, make);
        QFETCH(const Picture, shown);
        QFETCH(const QStringList, message);
        pick(picture(u"照片 1.png"_s));
        const qint64 former = m_card->image().cacheKey();
        const QString path = make(QDir{m_home->path()});
        QVERIFY(!path.isEmpty());
        pick(path);
        QCOMPARE(otherTexts(), message);
        QCOMPARE(m_card->image().isNull(), shown == Picture::none);
        QCOMPARE(m_card->image().cacheKey() == former, shown == Picture::former);
        QCOMPARE(removeButton() == nullptr, shown == Picture::none);
        QCOMPARE(description(), shown == Picture::none     ? texts::upload
                                : shown == Picture::former ? u"已选择 照片 1.png"_s
                                                           : u"已选择 "_s + QFileInfo{path}.fileName());
    }

    void cancellingClearsTheErrorAndKeepsThePicture()
    {
        pick(picture());
        const qint64 former = m_card->image().cacheKey();
        pick(m_home->path(u"missing.png"_s));
        QCOMPARE(otherTexts().size(), 1);
        pick(std::nullopt);
        QCOMPARE(otherTexts(), QStringList{});
        QCOMPARE(m_card->image().cacheKey(), former);
    }

    void removingKeepsTheErrorLine()
    {
        pick(picture());
        pick(m_home->path(u"missing.png"_s));
        const QStringList before = otherTexts();
        click(removeButton());
        QVERIFY(m_card->image().isNull());
        QCOMPARE(otherTexts(), before);
        QCOMPARE(before.size(), 1);
    }

    void aNewPickClearsTheErrorBeforeThePanelOpens()
    {
        pick(m_home->path(u"missing.png"_s));
        QStringList duringPanel{u"the panel did not open"_s};
        m_panels->answerReference(std::nullopt, [&] { duringPanel = otherTexts(); });
        click(face());
        QCOMPARE(duringPanel, QStringList{});
    }

    void aFileThatGoesWhileThePanelIsOpenIsReported()
    {
        const QString path = picture();
        m_panels->answerReference(path, [&] { QVERIFY(QFile::remove(path)); });
        click(face());
        QCOMPARE(otherTexts(), QStringList{u"读取文件失败：此文件或目录不存在"_s});
    }

    void theFaceIsAButtonNamedAfterTheCard()
    {
        QCOMPARE(accessible::interfaceOf(face())->role(), QAccessible::PushButton);
        QCOMPARE(description(), texts::upload);
        pick(picture());
        QCOMPARE(accessible::interfaceOf(face())->text(QAccessible::Name), texts::facePhoto);
        click(removeButton());
        QCOMPARE(description(), texts::upload);
        face()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(face(), Qt::Key_Space);
        QCOMPARE(m_panels->referencePanelCount(), 2);
    }

    void aCardThatGoesWhileThePanelIsOpenLoadsNothing()
    {
        QPointer<UploadCard> watched{m_card};
        m_panels->answerReference(picture(), [&] { delete m_card; });
        // By a posted event, so that the button does not go in the middle of its mouse event.
        QMetaObject::invokeMethod(face(), &QAbstractButton::click, Qt::QueuedConnection);
        QTRY_VERIFY(watched.isNull());
        QCOMPARE(m_panels->referencePanelCount(), 1);
    }

private:
    QAbstractButton *face() { return accessible::find<QAbstractButton>(m_window.get(), texts::facePhoto); }
    QAbstractButton *removeButton()
    {
        return accessible::find<QAbstractButton>(m_window.get(), texts::remove);
    }
    QString description() { return accessible::interfaceOf(face())->text(QAccessible::Description); }

    /// Every visible text beside the card's own.
    QStringList otherTexts()
    {
        QStringList texts = accessible::names(m_window.get());
        texts.removeAll(texts::facePhoto);
        texts.removeAll(texts::remove);
        return texts;
    }

    void pick(const ScriptedFileDialogs::Answer &answer)
    {
        m_panels->answerReference(answer);
        click(face());
    }

    QString picture(const QString &name = u"a.png"_s)
    {
        return samplePictures::writePng(m_home->path(name), samplePictures::picture({60, 40}));
    }

    std::unique_ptr<TemporaryHome> m_home;
    std::unique_ptr<ScriptedFileDialogs> m_panels;
    std::unique_ptr<QWidget> m_window;
    UploadCard *m_card = nullptr;
};

QUILMORA_TEST(UploadCardTest, runScreenTest)

#include "UploadCardTest.moc"
