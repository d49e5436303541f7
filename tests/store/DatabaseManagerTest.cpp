#include "StoreFixture.h"
#include "platform/UserFolders.h"
#include "support/TestProgram.h"

#include <QTest>

#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

/// What the store makes of its file at the start.
class DatabaseManagerTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void aFreshUserGetsDefaultSettings()
    {
        open();
        const VolcengineConfig config = m_database->getConfig();
        QCOMPARE(config.apiURL, u"https://ark.cn-beijing.volces.com/api/v3/images/generations"_s);
        QCOMPARE(config.apiKey, QString{});
        QCOMPARE(config.modelID, u"doubao-seedream-4-0-250828"_s);
        QVERIFY(m_database->fetchAllHistory().isEmpty());
        QCOMPARE(sql("SELECT * FROM volc_config"),
                 (Rows{{"1", "https://ark.cn-beijing.volces.com/api/v3/images/generations", "",
                        "doubao-seedream-4-0-250828"}}));
    }

    void theTablesAreStoredAsGiven()
    {
        start();
        const Rows expected{{"table", "history",
                             "CREATE TABLE history (\n"
                             "    id INTEGER PRIMARY KEY AUTOINCREMENT,\n"
                             "    prompt TEXT NOT NULL,\n"
                             "    image_path TEXT NOT NULL,\n"
                             "    created_at REAL NOT NULL,\n"
                             "    model_id TEXT NOT NULL DEFAULT ''\n"
                             ")"},
                            {"table", "sqlite_sequence", "CREATE TABLE sqlite_sequence(name,seq)"},
                            {"table", "volc_config",
                             "CREATE TABLE volc_config (\n"
                             "    id INTEGER PRIMARY KEY CHECK (id = 1),\n"
                             "    api_url TEXT NOT NULL DEFAULT '',\n"
                             "    api_key TEXT NOT NULL DEFAULT '',\n"
                             "    model_id TEXT NOT NULL DEFAULT ''\n"
                             ")"}};
        QCOMPARE(sql("SELECT type, name, sql FROM sqlite_master ORDER BY name"), expected);
    }

    void aSecondStartChangesNothing()
    {
        open();
        m_database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        m_database->insertHistory(u"q"_s, u"~/b.png"_s, QString{});
        m_database.reset();
        const Rows before = everything();
        QCOMPARE(before.size(), 8);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(everything(), before);
    }

    void aMissingSettingsRowIsAddedAtStart()
    {
        start();
        sql("DELETE FROM volc_config");
        start();
        const Rows expected{
            {"1", VolcengineConfig::defaultURL().toUtf8(), "", VolcengineConfig::defaultModelID().toUtf8()}};
        QCOMPARE(sql("SELECT * FROM volc_config"), expected);
    }

    void theSharedInstanceUsesTheApplicationSupportFolder()
    {
        // In a child process, because the instance stays until the end.
        const auto outcome = childProcess::run([] {
            DatabaseManager &database = DatabaseManager::shared();
            database.saveConfig(u"https://shared"_s, QString{}, QString{});
            _exit(&database == &DatabaseManager::shared() ? 0 : 1);
        });
        QCOMPARE(outcome.exitCode, 0);
        QCOMPARE(outcome.standardOutput, QByteArray{});
        const QString path = userFolders::applicationSupport() + u"/Quilmora/quilmora.db"_s;
        QVERIFY(path.startsWith(m_home->path()));
        QCOMPARE(databaseFile::value(path, "SELECT api_url FROM volc_config"), QByteArray{"https://shared"});
    }
};

QUILMORA_TEST(DatabaseManagerTest, runCoreTest)
#include "DatabaseManagerTest.moc"
