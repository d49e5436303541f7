#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace quilmora;
using namespace quilmora::test;

class DatabaseManagerSettingsTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        StoreFixture::init();
        open();
        m_database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    }

    void settingsComeBackAsGiven_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("plain") << u"https://example.org/v3"_s;
        QTest::newRow("an apostrophe") << u"it's"_s;
        QTest::newRow("nothing but apostrophes") << u"'''"_s;
        QTest::newRow("an end of statement") << u"'); DROP TABLE volc_config; --"_s;
        QTest::newRow("double quotes and backslashes") << u"\"a\" \\' \\n"_s;
        QTest::newRow("what patterns escape") << u"100% _ %s ? :a @b $c"_s;
        QTest::newRow("line breaks and tabs") << u"a\nb\r\nc\td"_s;
        QTest::newRow("a blank, not trimmed") << u" "_s;
        QTest::newRow("Chinese") << u"密钥：『引号』"_s;
        QTest::newRow("emoji") << u"😀👩‍👩‍👧"_s;
        QTest::newRow("a million characters") << QString{1000000, u'键'};
    }

    void settingsComeBackAsGiven()
    {
        QFETCH(const QString, text);
        m_database->saveConfig(text, text + u"2\n"_s, text + u"\t"_s);
        const VolcengineConfig config = m_database->getConfig();
        QVERIFY(config.apiURL == text);
        QVERIFY(config.apiKey == text + u"2\n"_s);
        QVERIFY(config.modelID == text + u"\t"_s);
        QVERIFY(databaseFile::value(file(), "SELECT api_url FROM volc_config") == text.toUtf8());
    }

    void anEmptyAddressAndModelReadAsTheDefaultsBesideTheSavedKey()
    {
        m_database->saveConfig(QString{}, u"my key"_s, u""_s);
        const VolcengineConfig config = m_database->getConfig();
        QCOMPARE(config.apiURL, VolcengineConfig::defaultURL());
        QCOMPARE(config.apiKey, u"my key"_s);
        QCOMPARE(config.modelID, VolcengineConfig::defaultModelID());
        QCOMPARE(sql("SELECT * FROM volc_config"), (Rows{{"1", "", "my key", ""}}));
    }

    void aClearedKeyStaysCleared()
    {
        m_database->saveConfig(u"https://a"_s, QString{}, u"m"_s);
        QCOMPARE(m_database->getConfig().apiKey, QString{});
        QCOMPARE(sql("SELECT *, typeof(api_key) FROM volc_config"),
                 (Rows{{"1", "https://a", "", "m", "text"}}));
    }

    void aMissingRowReadsAsTheDefaults()
    {
        sql("DELETE FROM volc_config");
        const VolcengineConfig config = m_database->getConfig();
        QCOMPARE(config.apiURL, VolcengineConfig::defaultURL());
        QCOMPARE(config.apiKey, QString{});
        QCOMPARE(config.modelID, VolcengineConfig::defaultModelID());
    }
};

QUILMORA_TEST(DatabaseManagerSettingsTest, runCoreTest)
#include "DatabaseManagerSettingsTest.moc"
