#include "awkward/BuildTexts.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

/// What a publisher hands to the build comes out to the character.
class BuildTextsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anAddressKeepsQuotesBackslashesAndOtherLetters();
    void aWebsiteKeepsEveryCharacterOfItsQuery();
};

void BuildTextsTest::anAddressKeepsQuotesBackslashesAndOtherLetters()
{
    QCOMPARE(buildTexts::supportEmail.toString(), u"\"a\\nb\" <小@quilmora.example>"_s);
}

void BuildTextsTest::aWebsiteKeepsEveryCharacterOfItsQuery()
{
    QCOMPARE(buildTexts::website.toString(), u"https://quilmora.example/?a=1&b=\"2\";c=%20#d${e}@f@)\""_s);
}

QTEST_GUILESS_MAIN(BuildTextsTest)

#include "BuildTextsTest.moc"
