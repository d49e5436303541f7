#include "support/TestProgram.h"

#include <QCryptographicHash>
#include <QDir>
#include <QHash>
#include <QImage>
#include <QProcess>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

using namespace quilmora::test;

namespace {

constexpr int longest = 280'000;
constexpr QSize usualSize{1100, 1080};

/// Every state that there must be a picture of.
const QStringList &states()
{
    static const QStringList all =
        u"form-empty form-filled form-custom form-folded form-upload-error loading result-landscape "
        "result-portrait error-short error-service error-long history-empty history-one history-many "
        "history-missing preview-landscape preview-portrait preview-missing settings validation alert help "
        "toast menu-field menu-editor menu-message"_s.split(u' ');
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
    void initTestCase()
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

    void thereIsAPictureOfEveryState()
    {
        QStringList expected;
        for (const QString &state : states()) {
            expected.append(state + u"-light.png"_s);
        }
        QCOMPARE(pictures(), sorted(expected));
    }

    void everyPictureShowsAWholeWindowAndNoTwoLookAlike()
    {
        QHash<QByteArray, QString> seen;
        for (const QString &name : pictures()) {
            const QImage picture = QImage{m_folder.filePath(name)}.convertToFormat(QImage::Format_RGB32);
            QVERIFY2(picture.size() == usualSize, qUtf8Printable(name));
            const QByteArray pixels{reinterpret_cast<const char *>(picture.constBits()),
                                    picture.sizeInBytes()};
            const QByteArray sum = QCryptographicHash::hash(pixels, QCryptographicHash::Sha256);
            QVERIFY2(!seen.contains(sum), qUtf8Printable(name + u" = "_s + seen.value(sum)));
            seen.insert(sum, name);
        }
    }

    void theIndexNamesExactlyThePicturesThatThereAre()
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

    void whatIsLeftOfAnEarlierGalleryGoes() { QVERIFY(!m_folder.exists(u"of-old.png"_s)); }

private:
    QStringList pictures() const { return m_folder.entryList({u"*.png"_s}, QDir::Files, QDir::Name); }

    QTemporaryDir m_temporary;
    QDir m_folder;
};

QUILMORA_TEST(GalleryTest, runCoreTest)
#include "GalleryTest.moc"
