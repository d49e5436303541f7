#include "screens/generate/UploadCard.h"

#include "support/AccessibleFinder.h"
#include "support/Drawing.h"
#include "support/SamplePictures.h"
#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/Texts.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QLineEdit>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using Make = std::function<QString(const QDir &folder)>;

namespace {

constexpr qsizetype megabyte = 1'048'576;

enum class Picture { fresh, former, none };

/// Makes a file, or what else a panel may give the path of, in a folder.
using Make = std::function<QString(const QDir &folder)>;

Make made(const QByteArray &bytes)
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
        // What the focus would go to by itself.
        auto *next = new QLineEdit{m_window.get()};
        next->show();
        QVERIFY(m_card->image().isNull());
        QVERIFY(removeButton() == nullptr);
        QCOMPARE(accessible::interfaceOf(face())->role(), QAccessible::PushButton);
        QCOMPARE(description(), texts::upload);
        pick(picture());
        QCOMPARE(m_card->image().convertToFormat(QImage::Format_RGB32), samplePictures::picture({60, 40}));
        QCOMPARE(otherTexts(), QStringList{});
        QCOMPARE(accessible::interfaceOf(face())->text(QAccessible::Name), texts::facePhoto);
        QCOMPARE(accessible::interfaceOf(removeButton())->text(QAccessible::Description), texts::facePhoto);
        removeButton()->setFocus(Qt::TabFocusReason);
        QTest::keyClick(removeButton(), Qt::Key_Space);
        QVERIFY(m_card->image().isNull());
        QVERIFY(removeButton() == nullptr);
        QCOMPARE(description(), texts::upload);
        QVERIFY(face()->hasFocus());
        QTest::keyClick(face(), Qt::Key_Space);
        QCOMPARE(m_panels->referencePanelCount(), 2);
    }

    void aFurtherPick_data()
    {
        QTest::addColumn<Make>("make");
        QTest::addColumn<Picture>("shown");
        QTest::addColumn<QStringList>("message");
        const QStringList large{u"图片过大（15.0M），不能超过 10M"_s};
        const Make fifteen = made(samplePictures::pngOfSize(15 * megabyte));
        const Make missing = [](const QDir &folder) {
            return folder.filePath(u"missing.png"_s);
        };
        const Make small = made(samplePictures::png(samplePictures::picture({30, 20})));
        QTest::newRow("a picture") << small << Picture::fresh << QStringList{};
        QTest::newRow("exactly ten megabytes")
            << made(samplePictures::pngOfSize(10 * megabyte)) << Picture::fresh << QStringList{};
        QTest::newRow("a byte more") << made(samplePictures::pngOfSize(10 * megabyte + 1)) << Picture::former
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
            QTest::newRow(name) << made(bytes) << Picture::none << QStringList{};
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

    void theErrorStaysUntilTheNextPanelOpens()
    {
        pick(picture());
        pick(m_home->path(u"missing.png"_s));
        const QStringList error = otherTexts();
        QCOMPARE(error.size(), 1);
        const qint64 former = m_card->image().cacheKey();
        QStringList duringPanel{u"the panel did not open"_s};
        m_panels->answerReference(std::nullopt, [&] { duringPanel = otherTexts(); });
        click(face());
        QCOMPARE(duringPanel, QStringList{});
        // Cancelling keeps the picture and brings no error back.
        QCOMPARE(otherTexts(), QStringList{});
        QCOMPARE(m_card->image().cacheKey(), former);
        // Removing the picture keeps the error.
        pick(m_home->path(u"missing.png"_s));
        click(removeButton());
        QVERIFY(m_card->image().isNull());
        QCOMPARE(otherTexts(), error);
    }

    void aFileThatGoesWhileThePanelIsOpenIsReported()
    {
        const QString path = picture();
        m_panels->answerReference(path, [&] { QVERIFY(QFile::remove(path)); });
        click(face());
        QCOMPARE(otherTexts(), QStringList{u"读取文件失败：此文件或目录不存在"_s});
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

    void everyKindOfPictureIsTaken()
    {
        const QImage plain = samplePictures::picture({60, 40});
        const QByteArray png = samplePictures::png(plain);
        const QByteArray jpeg = samplePictures::jpeg(plain);
        const auto check = [this](const QString &name, const QByteArray &bytes, QSize size = {60, 40}) {
            pick(file(name, bytes));
            QVERIFY2(m_card->image().size() == size, qPrintable(name));
            // Painting it must do, too.
            QVERIFY(!screenCapture::capture(face(), 2.0).isNull());
            click(removeButton());
        };
        check(u"a.png"_s, png);
        check(u"a.jpg"_s, jpeg);
        check(u"jpeg-named.png"_s, jpeg);
        check(u"png-named.jpeg"_s, png);
        check(u"no-suffix"_s, png);
        for (const auto format : {QImage::Format_RGBA64, QImage::Format_Indexed8, QImage::Format_Grayscale8,
                                  QImage::Format_Mono}) {
            check(u"format-%1.png"_s.arg(format), samplePictures::png(plain.convertToFormat(format)));
        }
        check(u"cmyk.jpg"_s, samplePictures::cmykJpeg(), {8, 8});
        check(u"animated.gif"_s, samplePictures::animatedGif(), {2, 2});
        for (const QSize side : {QSize{1, 1}, QSize{5000, 2}}) {
            check(u"%1.png"_s.arg(side.width()), samplePictures::png(samplePictures::picture(side)), side);
        }
    }

    void aPhotoStandsUprightAndAnAnimationIsItsFirstPicture()
    {
        pick(file(u"phone.jpg"_s, samplePictures::sidewaysJpeg(samplePictures::picture({80, 40}))));
        QCOMPARE(m_card->image().size(), QSize(40, 80));
        // The mark of the top left corner has come to the top right one.
        QVERIFY(screenCapture::isClose(m_card->image().pixelColor(37, 3), Qt::red, 40));
        pick(file(u"moving.gif"_s, samplePictures::animatedGif()));
        QCOMPARE(m_card->image().pixelColor(0, 0), QColor(Qt::red));
    }

    void everyPathIsRead()
    {
        int height = 40;
        for (const QString &name : {u"图片/我的照片.png"_s, u" my  photo .png"_s, u"it's \"mine\".png"_s,
                                    u"自拍🤳🏽.png"_s, u"100%20#1?.png"_s, u".photo"_s}) {
            // Each of another size, so that the former is none of them.
            pick(file(name, samplePictures::png(samplePictures::picture({60, ++height}))));
            QVERIFY2(m_card->image().size() == QSize(60, height), qPrintable(name));
        }
    }

    void theFileIsReadOnceHoweverOftenTheCardIsPainted()
    {
        const QString path = picture();
        pick(path);
        const QImage before = screenCapture::capture(face());
        // Nor is it scaled anew.
        const auto scaled = [this] {
            return Drawing{face()}.pixmaps().constFirst().pixmap.cacheKey();
        };
        QCOMPARE(scaled(), scaled());
        samplePictures::writePng(path, samplePictures::picture({60, 40}, Qt::blue));
        QCOMPARE(screenCapture::capture(face()), before);
        QVERIFY(QFile::remove(path));
        m_window->resize(520, 330);
        QVERIFY(!m_card->image().isNull());
        QTRY_COMPARE(face()->width(), m_card->width());
        QVERIFY(screenCapture::countOf(screenCapture::capture(face()), Qt::red, {}, 30) > 100);
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

    QString file(const QString &name, const QByteArray &bytes) const
    {
        return samplePictures::write(m_home->path(name), bytes);
    }

    QString picture(const QString &name = u"a.png"_s) const
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
