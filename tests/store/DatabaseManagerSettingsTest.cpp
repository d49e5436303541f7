#include "store/DatabaseManager.h"
#include "support/DatabaseFile.h"
#include "support/StandardOutput.h"

#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class DatabaseManagerSettingsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void settingsComeBackAsGiven_data();
    void settingsComeBackAsGiven();
    void anEmptyAddressAndModelReadAsTheDefaultsBesideTheSavedKey();
    void aClearedKeyStaysCleared();
    void blanksAreNeitherTrimmedNorTakenForNothing();
    void thereIsOneRowHoweverOftenItIsSaved();
    void settingsOutliveTheProgram();
    void aMissingRowReadsAsTheDefaults();
    void aKeyWithANulIsRefusedWhole();

private:
    QString file() const { return folder->filePath(u"quilmora.db"_s); }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<DatabaseManager> database;
};

void DatabaseManagerSettingsTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    database = std::make_unique<DatabaseManager>(folder->path(), folder->filePath(u"covers"_s));
}

void DatabaseManagerSettingsTest::cleanup()
{
    database.reset();
    folder.reset();
}

void DatabaseManagerSettingsTest::settingsComeBackAsGiven_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("plain") << u"https://example.org/v3"_s;
    QTest::newRow("an apostrophe") << u"it's"_s;
    QTest::newRow("nothing but apostrophes") << u"'''"_s;
    QTest::newRow("an end of statement") << u"'); DROP TABLE volc_config; --"_s;
    QTest::newRow("double quotes and backslashes") << u"\"a\" \\' \\n"_s;
    QTest::newRow("what patterns escape") << u"100% _ %s ? :a @b $c"_s;
    QTest::newRow("line breaks and tabs") << u"a\nb\r\nc\td"_s;
    QTest::newRow("Chinese") << u"密钥：『引号』"_s;
    QTest::newRow("emoji") << u"😀👩‍👩‍👧"_s;
    QTest::newRow("a million characters") << QString{1000000, u'键'};
}

void DatabaseManagerSettingsTest::settingsComeBackAsGiven()
{
    QFETCH(const QString, text);
    database->saveConfig(text, text + u'2', text + u'3');
    const VolcengineConfig config = database->getConfig();
    QVERIFY(config.apiURL == text);
    QVERIFY(config.apiKey == text + u'2');
    QVERIFY(config.modelID == text + u'3');
    QVERIFY(databaseFile::value(file(), "SELECT api_url FROM volc_config") == text.toUtf8());
}

void DatabaseManagerSettingsTest::anEmptyAddressAndModelReadAsTheDefaultsBesideTheSavedKey()
{
    database->saveConfig(QString{}, u"my key"_s, u""_s);
    const VolcengineConfig config = database->getConfig();
    QCOMPARE(config.apiURL, VolcengineConfig::defaultURL());
    QCOMPARE(config.apiKey, u"my key"_s);
    QCOMPARE(config.modelID, VolcengineConfig::defaultModelID());
    const QList<databaseFile::Row> stored{{"1", "", "my key", ""}};
    QCOMPARE(databaseFile::run(file(), "SELECT * FROM volc_config"), stored);
}

void DatabaseManagerSettingsTest::aClearedKeyStaysCleared()
{
    database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    database->saveConfig(u"https://a"_s, QString{}, u"m"_s);
    QCOMPARE(database->getConfig().apiKey, QString{});
    QCOMPARE(databaseFile::value(file(), "SELECT typeof(api_key) FROM volc_config"), QByteArray{"text"});
}

void DatabaseManagerSettingsTest::blanksAreNeitherTrimmedNorTakenForNothing()
{
    database->saveConfig(u" "_s, u" key\n"_s, u"\t"_s);
    const VolcengineConfig config = database->getConfig();
    QCOMPARE(config.apiURL, u" "_s);
    QCOMPARE(config.apiKey, u" key\n"_s);
    QCOMPARE(config.modelID, u"\t"_s);
}

void DatabaseManagerSettingsTest::thereIsOneRowHoweverOftenItIsSaved()
{
    for (const QString &key : {u"a"_s, u"b"_s, u"c"_s}) {
        database->saveConfig(u"https://a"_s, key, u"m"_s);
    }
    const QList<databaseFile::Row> stored{{"1", "https://a", "c", "m"}};
    QCOMPARE(databaseFile::run(file(), "SELECT * FROM volc_config"), stored);
}

void DatabaseManagerSettingsTest::settingsOutliveTheProgram()
{
    database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    database.reset();
    database = std::make_unique<DatabaseManager>(folder->path(), folder->filePath(u"covers"_s));
    QCOMPARE(database->getConfig().apiURL, u"https://a"_s);
    QCOMPARE(database->getConfig().apiKey, u"key"_s);
    QCOMPARE(database->getConfig().modelID, u"m"_s);
}

void DatabaseManagerSettingsTest::aMissingRowReadsAsTheDefaults()
{
    database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    databaseFile::run(file(), "DELETE FROM volc_config");
    const VolcengineConfig config = database->getConfig();
    QCOMPARE(config.apiURL, VolcengineConfig::defaultURL());
    QCOMPARE(config.apiKey, QString{});
    QCOMPARE(config.modelID, VolcengineConfig::defaultModelID());
}

void DatabaseManagerSettingsTest::aKeyWithANulIsRefusedWhole()
{
    database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
    const QByteArray output =
        standardOutputOf([this] { database->saveConfig(u"https://b"_s, u"ab\0cd"_s, u"n"_s); });
    // The line does not quote what stands before the NUL.
    QCOMPARE(output, QByteArray{"SQL 错误: unrecognized token: \"'\"\n"});
    const QList<databaseFile::Row> stored{{"1", "https://a", "key", "m"}};
    QCOMPARE(databaseFile::run(file(), "SELECT * FROM volc_config"), stored);
}

QTEST_GUILESS_MAIN(DatabaseManagerSettingsTest)
#include "DatabaseManagerSettingsTest.moc"
