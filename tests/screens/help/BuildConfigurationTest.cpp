#include "awkward/BuildConfiguration.h"

#include "support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

/// What a publisher hands to the build comes out to the character.
class BuildConfigurationTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anAddressKeepsQuotesBackslashesAndOtherLetters()
    {
        QCOMPARE(buildConfiguration::supportEmail.toString(), u"\"a\\nb\" <小@quilmora.example>"_s);
    }

    void aWebsiteKeepsEveryCharacterOfItsQuery()
    {
        QCOMPARE(buildConfiguration::website.toString(),
                 u"https://quilmora.example/?a=1&b=\"2\";c=%20#d${e}@f@)\""_s);
    }
};

QUILMORA_TEST(BuildConfigurationTest, quilmora::test::runCoreTest)

#include "BuildConfigurationTest.moc"
