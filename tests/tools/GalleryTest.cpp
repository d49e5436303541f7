#include "support/TestProgram.h"

#include <QCryptographicHash>
#include <QDir>
#include <QHash>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr int longest = 280'000;
constexpr QSize usualSize{1100, 1080};

/// Every state that there must be a picture of.
const QStringList &states()
{
    static const QStringList all{
        u"form-empty"_s,
        u"form-filled"_s,
        u"form-custom"_s,
        u"form-folded"_s,
        u"form-upload-error"_s,
        u"loading"_s,
        u"result-landscape"_s,
        u"result-portrait"_s,
        u"error-short"_s,
        u"error-service"_s,
        u"error-long"_s,
        u"history-empty"_s,
        u"history-one"_s,
        u"history-many"_s,
        u"history-missing"_s,
        u"preview-landscape"_s,
        u"preview-portrait"_s,
        u"preview-missing"_s,
        u"settings"_s,
        u"validation"_s,
        u"alert"_s,
        u"help"_s,
        u"toast"_s,
        u"menu-field"_s,
        u"menu-editor"_s,
        u"menu-message"_s,
    };
    return all;
}

QStringList sorted(QStringList list)
{
    list.sort();
    return list;
}

} // namespace

/// The gallery program as ./gallery starts it, but with the light pictures in one size only.
class GalleryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void thereIsAPictureOfEveryState();
    void everyPictureShowsAWholeWindow();
    void noTwoStatesLookAlike();
    void theIndexNamesExactlyThePicturesThatThereAre();
    void whatIsLeftOfAnEarlierGalleryGoes();

private:
    QStringList pictures() const { return m_folder.entryList({u"*.png"_s}, QDir::Files, QDir::Name); }

    QTemporaryDir m_temporary;
    QDir m_folder;
};

void GalleryTest::initTestCase()
{
    QVERIFY(m_temporary.isValid());
    m_folder = QDir{m_temporary.filePath(u"gallery"_s)};
    QVERIFY(m_folder.mkpath(u"."_s));
    QFile leftover{m_folder.filePath(u"of-old.png"_s)};
    QVERIFY(leftover.open(QIODevice::WriteOnly));
    leftover.close();

    QProcess program;
    program.setProcessChannelMode(QProcess::MergedChannels);
    program.start(QStringLiteral(GALLERY_PROGRAM), {u"--quick"_s, m_folder.path()});
    QVERIFY(program.waitForFinished(longest));
    QVERIFY2(program.exitStatus() == QProcess::NormalExit && program.exitCode() == 0,
             program.readAll().constData());
}

void GalleryTest::thereIsAPictureOfEveryState()
{
    QStringList expected;
    for (const QString &state : states()) {
        expected.append(state + u"-light.png"_s);
    }
    QCOMPARE(pictures(), sorted(expected));
}

void GalleryTest::everyPictureShowsAWholeWindow()
{
    for (const QString &name : pictures()) {
        const QImage picture{m_folder.filePath(name)};
        QVERIFY2(picture.size() == usualSize, qUtf8Printable(name));
    }
}

void GalleryTest::noTwoStatesLookAlike()
{
    QHash<QByteArray, QString> seen;
    for (const QString &name : pictures()) {
        const QImage picture = QImage{m_folder.filePath(name)}.convertToFormat(QImage::Format_RGB32);
        const QByteArray pixels{reinterpret_cast<const char *>(picture.constBits()), picture.sizeInBytes()};
        const QByteArray sum = QCryptographicHash::hash(pixels, QCryptographicHash::Sha256);
        QVERIFY2(!seen.contains(sum), qUtf8Printable(name + u" = "_s + seen.value(sum)));
        seen.insert(sum, name);
    }
}

void GalleryTest::theIndexNamesExactlyThePicturesThatThereAre()
{
    QFile index{m_folder.filePath(u"index.html"_s)};
    QVERIFY(index.open(QIODevice::ReadOnly));
    const QString html = QString::fromUtf8(index.readAll());
    static const QRegularExpression file{u"[a-z0-9@-]+\\.png"_s};
    QSet<QString> named;
    for (auto match = file.globalMatch(html); match.hasNext();) {
        named.insert(match.next().captured());
    }
    QCOMPARE(sorted(named.values()), pictures());
    for (const QString &state : states()) {
        QVERIFY2(html.contains(u"id=\"%1\""_s.arg(state)), qUtf8Printable(state));
    }
}

void GalleryTest::whatIsLeftOfAnEarlierGalleryGoes()
{
    QVERIFY(!m_folder.exists(u"of-old.png"_s));
}

QUILMORA_TEST(GalleryTest, quilmora::test::runCoreTest)
#include "GalleryTest.moc"
