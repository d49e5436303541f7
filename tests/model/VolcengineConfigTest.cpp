#include "model/VolcengineConfig.h"

#include <QTest>
#include <QUrl>

using namespace Qt::StringLiterals;
using namespace quilmora;

class VolcengineConfigTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDefaultAddressIsTheProvidersEndpoint();
    void theDefaultModelIsTheGivenOne();
    void theFieldsAreAddressKeyModelAndCanBeChanged();
};

void VolcengineConfigTest::theDefaultAddressIsTheProvidersEndpoint()
{
    QCOMPARE(VolcengineConfig::defaultURL(),
             u"https://ark.cn-beijing.volces.com/api/v3/images/generations"_s);
    QCOMPARE(VolcengineConfig::defaultURL().size(), 59);
    const QUrl url{VolcengineConfig::defaultURL(), QUrl::StrictMode};
    QCOMPARE(url.scheme(), u"https"_s);
    QCOMPARE(url.path(), u"/api/v3/images/generations"_s);
    // It is put into a statement without doubling of quotes.
    QVERIFY(!VolcengineConfig::defaultURL().contains(u'\''));
}

void VolcengineConfigTest::theDefaultModelIsTheGivenOne()
{
    QCOMPARE(VolcengineConfig::defaultModelID(), u"doubao-seedream-4-0-250828"_s);
    QVERIFY(!VolcengineConfig::defaultModelID().contains(u'\''));
}

void VolcengineConfigTest::theFieldsAreAddressKeyModelAndCanBeChanged()
{
    VolcengineConfig config{u"https://a"_s, u"k"_s, u"m"_s};
    const VolcengineConfig copy = config;
    QCOMPARE(config.apiURL, u"https://a"_s);
    QCOMPARE(config.apiKey, u"k"_s);
    QCOMPARE(config.modelID, u"m"_s);
    config.apiKey.clear();
    QCOMPARE(copy.apiKey, u"k"_s);
}

QTEST_GUILESS_MAIN(VolcengineConfigTest)
#include "VolcengineConfigTest.moc"
