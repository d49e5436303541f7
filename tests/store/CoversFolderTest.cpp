#include "store/CoversFolder.h"

#include "platform/UserFolders.h"
#include "support/TemporaryHome.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class CoversFolderTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFolderLiesInThePicturesFolder();
    void theStoredPathIsFixedTextAndTheName_data();
    void theStoredPathIsFixedTextAndTheName();
    void theStoredPathNamesTheFileInTheFolder();
};

void CoversFolderTest::theFolderLiesInThePicturesFolder()
{
    const TemporaryHome home;
    QCOMPARE(coversFolder::path(), home.path(u"Pictures/Quilmora/coverimg"_s));
}

void CoversFolderTest::theStoredPathIsFixedTextAndTheName_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("a cover") << u"cover_20250302_140327_4821.png"_s;
    QTest::newRow("hidden") << u".png"_s;
    QTest::newRow("quotes, Chinese, emoji") << u"'封面' \"😀\".PNG"_s;
}

void CoversFolderTest::theStoredPathIsFixedTextAndTheName()
{
    QFETCH(const QString, name);
    const TemporaryHome home;
    QCOMPARE(coversFolder::storedPath(name), u"~/Pictures/Quilmora/coverimg/"_s + name);
}

void CoversFolderTest::theStoredPathNamesTheFileInTheFolder()
{
    const TemporaryHome home;
    QCOMPARE(userFolders::expandTilde(coversFolder::storedPath(u"a.png"_s)),
             coversFolder::path() + u"/a.png"_s);
}

QTEST_GUILESS_MAIN(CoversFolderTest)
#include "CoversFolderTest.moc"
