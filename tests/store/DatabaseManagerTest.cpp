#include "StoreFixture.h"
#include "platform/Files.h"
#include "support/TestProgram.h"

#include <limits>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

class DatabaseManagerTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        StoreFixture::init();
        open();
    }

    void aFreshUserGetsDefaultSettings()
    {
        compareConfig(u"https://ark.cn-beijing.volces.com/api/v3/images/generations"_s, {},
                      u"doubao-seedream-4-0-250828"_s);
        QVERIFY(m_database->fetchAllHistory().isEmpty());
        QCOMPARE(sql("SELECT * FROM volc_config"), defaults());
        QVERIFY(!QDir{m_home->path(u"Pictures"_s)}.exists());
    }

    void theTablesAreStoredAsGiven()
    {
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
        m_database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        m_database->insertHistory(u"q"_s, u"~/b.png"_s, QString{});
        m_database.reset();
        const Rows before = everything();
        QCOMPARE(before.size(), 8);
        QCOMPARE(start(), QByteArray{});
        QCOMPARE(everything(), before);
    }

    void aMissingRowReadsAsTheDefaultsAndIsAddedAtTheNextStart()
    {
        m_database->saveConfig(u"https://a"_s, u"key"_s, u"m"_s);
        sql("DELETE FROM volc_config");
        compareConfig(VolcengineConfig::defaultURL(), {}, VolcengineConfig::defaultModelID());
        start();
        QCOMPARE(sql("SELECT * FROM volc_config"), defaults());
    }

    void emptySettingsReadAsTheDefaultsButTheKeyAsEmpty()
    {
        m_database->saveConfig(QString{}, u"my key"_s, u""_s);
        compareConfig(VolcengineConfig::defaultURL(), u"my key"_s, VolcengineConfig::defaultModelID());
        QCOMPARE(sql("SELECT * FROM volc_config"), (Rows{{"1", "", "my key", ""}}));
        m_database->saveConfig(u"https://a"_s, QString{}, u"m"_s);
        compareConfig(u"https://a"_s, {}, u"m"_s);
        QCOMPARE(sql("SELECT *, typeof(api_key) FROM volc_config"),
                 (Rows{{"1", "https://a", "", "m", "text"}}));
    }

    void theSharedInstanceUsesTheApplicationSupportFolder()
    {
        // In a child process, because the instance stays until the end.
        const auto outcome = childProcess::run([] {
            DatabaseManager &database = DatabaseManager::shared();
            database.saveConfig(u"https://shared"_s, QString{}, QString{});
            _exit(&database == &DatabaseManager::shared() ? 0 : 1);
        });
        QCOMPARE(outcome, childProcess::succeeded());
        const QString path = userFolders::applicationSupport() + u"/Quilmora/quilmora.db"_s;
        QVERIFY(path.startsWith(m_home->path()));
        QCOMPARE(databaseFile::value(path, "SELECT api_url FROM volc_config"), QByteArray{"https://shared"});
    }

    void textsComeBackAsGiven_data()
    {
        const DataRows<QString> row{"text"};
        row("empty", u""_s);
        row("an apostrophe", u"It's Quilmora's cover"_s);
        row("nothing but apostrophes", u"'''"_s);
        row("an end of statement", u"x', '', 0, ''); DROP TABLE volc_config; DELETE FROM history; --"_s);
        row("double quotes and backslashes", u"\"a\" \\' \\0 \\n"_s);
        row("what patterns escape", u"100% _ %s ? :a @b $c"_s);
        row("line breaks, tabs and blanks at the ends", u" a\nb\r\nc\td "_s);
        row("a blank, not trimmed", u" "_s);
        row("Chinese", u"震惊！《十分钟》学会「做封面」"_s);
        row("emoji", u"😀👩‍👩‍👧🇨🇳"_s);
        row("what has no width at the start", u"\ufeffa\u200b"_s);
        row("a million characters", QString{1000000, u'长'});
    }

    void textsComeBackAsGiven()
    {
        QFETCH(const QString, text);
        m_database->insertHistory(text, text + u'2', text + u'3');
        const QList<HistoryRecord> records = m_database->fetchAllHistory();
        QCOMPARE(records.size(), 1);
        QVERIFY(records.first().prompt == text);
        QVERIFY(records.first().imagePath == text + u'2');
        QVERIFY(records.first().modelID == text + u'3');
        QVERIFY(databaseFile::value(file(), "SELECT prompt FROM history") == text.toUtf8());

        m_database->saveConfig(text + u'2', text, text + u"\n"_s);
        const VolcengineConfig config = m_database->getConfig();
        QVERIFY(config.apiURL == text + u'2');
        QVERIFY(config.apiKey == text);
        QVERIFY(config.modelID == text + u"\n"_s);
        QVERIFY(databaseFile::value(file(), "SELECT api_key FROM volc_config") == text.toUtf8());
    }

    void aPromptWithANulIsRefused_data()
    {
        const DataRows<QString, QByteArray> row{"prompt", "quoted"};
        row("in the middle", u"ab\0cd"_s, "'ab");
        row("at the end", u"ab\0"_s, "'ab");
        row("alone", u"\0"_s, "'");
        row("after what would end the statement", u"a', '', 0, ''); --\0"_s, "'a'', '''', 0, ''''); --");
        row("after line breaks", u"a\nb\0"_s, "'a b");
    }

    void aPromptWithANulIsRefused()
    {
        QFETCH(const QString, prompt);
        QFETCH(const QByteArray, quoted);
        const QByteArray output =
            standardOutputOf([&] { m_database->insertHistory(prompt, u"~/a.png"_s, u"m"_s); });
        QVERIFY(m_database->fetchAllHistory().isEmpty());
        QCOMPARE(output, "SQL 错误: unrecognized token: \"" + quoted + "\"\n");
    }

    void aCoverIsStampedWithThePresentMoment()
    {
        const Timestamp before = now();
        m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        const Timestamp after = now();
        const Timestamp stamp = m_database->fetchAllHistory().constFirst().createdAt;
        QVERIFY(before <= stamp && stamp <= after);
        // The exact number is in the file, to the last bit.
        const QByteArray exact = QByteArray::number(secondsSince1970(stamp), 'g', 17);
        QCOMPARE(sql("SELECT typeof(created_at), created_at = " + exact + " FROM history"),
                 (Rows{{"real", "1"}}));
    }

    void theNewestComesFirstWithItsExactMoment()
    {
        sql("INSERT INTO history VALUES (1, 'b', '', 1700000000.123456, '');"
            "INSERT INTO history VALUES (2, 'd', '', 1700000000.75, '');"
            "INSERT INTO history VALUES (3, 'a', '', -5, '');"
            "INSERT INTO history VALUES (4, 'c', '', 1700000000.5, '')");
        QCOMPARE(ids(), (QList<qint64>{2, 4, 1, 3}));
        m_database->insertHistory(u"e"_s, QString{}, QString{});
        QCOMPARE(ids(), (QList<qint64>{5, 2, 4, 1, 3}));
        const QList<HistoryRecord> records = m_database->fetchAllHistory();
        QVERIFY(secondsSince1970(records.at(3).createdAt) == 1700000000.123456);
        QVERIFY(secondsSince1970(records.at(4).createdAt) == -5.0);
    }

    void idsAreNeverUsedAgain()
    {
        for (int i = 0; i < 3; ++i) {
            m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        }
        m_database->deleteHistory(3);
        m_database->deleteHistory(2);
        m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        QCOMPARE(ids(), (QList<qint64>{4, 1}));
        open();
        m_database->deleteHistory(4);
        m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        QCOMPARE(ids(), (QList<qint64>{5, 1}));
    }

    void onlyTheRowOfTheIdIsDeletedAndNoFile()
    {
        constexpr qint64 least = std::numeric_limits<qint64>::min();
        const QString cover = addCover(u"a.png"_s);
        sql("INSERT INTO history VALUES (9007199254740992, '', '', 1.0, '');"
            "INSERT INTO history VALUES (9007199254740993, '', '" +
            cover.toUtf8() + "', 2.0, ''), (-9223372036854775808, '', '', 3.0, '')");
        const QByteArray output = standardOutputOf([this] {
            for (const qint64 id : {qint64{0}, qint64{2}, qint64{-1}, std::numeric_limits<qint64>::max()}) {
                m_database->deleteHistory(id);
            }
        });
        QCOMPARE(output, QByteArray{});
        QCOMPARE(ids(), (QList<qint64>{least, 9007199254740993, 9007199254740992}));
        m_database->deleteHistory(9007199254740993);
        QCOMPARE(ids(), (QList<qint64>{least, 9007199254740992}));
        QVERIFY(QFile::exists(cover));
        m_database->deleteHistory(least);
        QCOMPARE(ids(), (QList<qint64>{9007199254740992}));
    }

private:
    QList<qint64> ids()
    {
        QList<qint64> found;
        const QList<HistoryRecord> records = m_database->fetchAllHistory();
        for (const HistoryRecord &record : records) {
            found.append(record.id);
        }
        return found;
    }

    void compareConfig(const QString &url, const QString &key, const QString &model)
    {
        const VolcengineConfig config = m_database->getConfig();
        QCOMPARE(config.apiURL, url);
        QCOMPARE(config.apiKey, key);
        QCOMPARE(config.modelID, model);
    }

    /// The row of settings that a fresh user gets.
    static Rows defaults()
    {
        return {{"1", "https://ark.cn-beijing.volces.com/api/v3/images/generations", "",
                 "doubao-seedream-4-0-250828"}};
    }
};

QUILMORA_TEST(DatabaseManagerTest, runCoreTest)
#include "DatabaseManagerTest.moc"
