#include "store/DatabaseManager.h"
#include "support/DatabaseFile.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <limits>
#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class DatabaseManagerHistoryTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void textsComeBackAsGiven_data();
    void textsComeBackAsGiven();
    void aPromptWithANulIsRefusedWhole_data();
    void aPromptWithANulIsRefusedWhole();
    void aCoverIsStampedWithThePresentMoment();
    void theNewestComesFirst();
    void momentsComeBackExactly();
    void idsAreNeverUsedAgain();
    void largeIdsAreReadAndDeletedExactly();
    void deletingTakesTheRowAndLeavesTheFile();
    void deletingAnUnknownIdChangesAndPrintsNothing();
    void theHistoryOutlivesTheProgram();

private:
    QString file() const { return folder->filePath(u"quilmora.db"_s); }
    QList<qint64> ids() const
    {
        QList<qint64> found;
        const QList<HistoryRecord> records = database->fetchAllHistory();
        for (const HistoryRecord &record : records) {
            found.append(record.id);
        }
        return found;
    }

    std::unique_ptr<QTemporaryDir> folder;
    std::unique_ptr<DatabaseManager> database;
};

void DatabaseManagerHistoryTest::init()
{
    folder = std::make_unique<QTemporaryDir>();
    database = std::make_unique<DatabaseManager>(folder->path(), folder->filePath(u"covers"_s));
}

void DatabaseManagerHistoryTest::cleanup()
{
    database.reset();
    folder.reset();
}

void DatabaseManagerHistoryTest::textsComeBackAsGiven_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("empty") << u""_s;
    QTest::newRow("an apostrophe") << u"It's Quilmora's cover"_s;
    QTest::newRow("an apostrophe at each end") << u"'quoted'"_s;
    QTest::newRow("an end of statement") << u"x', '', 0, ''); DELETE FROM history; --"_s;
    QTest::newRow("double quotes and backslashes") << u"\"a\" \\' \\0"_s;
    QTest::newRow("line breaks and blanks at the ends") << u" a\nb\r\n "_s;
    QTest::newRow("Chinese") << u"震惊！《十分钟》学会「做封面」"_s;
    QTest::newRow("emoji") << u"😀👩‍👩‍👧🇨🇳"_s;
    QTest::newRow("what has no width at the start") << u"\ufeffa\u200b"_s;
    QTest::newRow("a million characters") << QString{1000000, u'长'};
}

void DatabaseManagerHistoryTest::textsComeBackAsGiven()
{
    QFETCH(const QString, text);
    database->insertHistory(text, text + u'2', text + u'3');
    const QList<HistoryRecord> records = database->fetchAllHistory();
    QCOMPARE(records.size(), 1);
    QVERIFY(records.first().prompt == text);
    QVERIFY(records.first().imagePath == text + u'2');
    QVERIFY(records.first().modelID == text + u'3');
    QVERIFY(databaseFile::value(file(), "SELECT prompt FROM history") == text.toUtf8());
}

void DatabaseManagerHistoryTest::aPromptWithANulIsRefusedWhole_data()
{
    QTest::addColumn<QString>("prompt");
    QTest::addColumn<QByteArray>("line");
    QTest::newRow("in the middle") << u"ab\0cd"_s << QByteArray{"SQL 错误: unrecognized token: \"'ab\"\n"};
    QTest::newRow("at the end") << u"ab\0"_s << QByteArray{"SQL 错误: unrecognized token: \"'ab\"\n"};
    QTest::newRow("alone") << u"\0"_s << QByteArray{"SQL 错误: unrecognized token: \"'\"\n"};
    QTest::newRow("after what would end the statement")
        << u"a', '', 0, ''); --\0"_s
        << QByteArray{"SQL 错误: unrecognized token: \"'a'', '''', 0, ''''); --\"\n"};
    QTest::newRow("after line breaks")
        << u"a\nb\0"_s << QByteArray{"SQL 错误: unrecognized token: \"'a b\"\n"};
}

void DatabaseManagerHistoryTest::aPromptWithANulIsRefusedWhole()
{
    QFETCH(const QString, prompt);
    QFETCH(const QByteArray, line);
    const QByteArray output =
        standardOutputOf([&] { database->insertHistory(prompt, u"~/a.png"_s, u"m"_s); });
    QVERIFY(database->fetchAllHistory().isEmpty());
    QCOMPARE(output, line);
}

void DatabaseManagerHistoryTest::aCoverIsStampedWithThePresentMoment()
{
    const PointInTime before = now();
    database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    const PointInTime after = now();
    const PointInTime stamp = database->fetchAllHistory().constFirst().createdAt;
    QVERIFY(before <= stamp && stamp <= after);
    QCOMPARE(databaseFile::value(file(), "SELECT typeof(created_at) FROM history"), QByteArray{"real"});
    // The exact number is in the file, to the last bit.
    const QByteArray exact = QByteArray::number(secondsSince1970(stamp), 'g', 17);
    QCOMPARE(databaseFile::value(file(), "SELECT count(*) FROM history WHERE created_at = " + exact),
             QByteArray{"1"});
}

void DatabaseManagerHistoryTest::theNewestComesFirst()
{
    databaseFile::run(file(), "INSERT INTO history VALUES (1, 'b', '', 1700000000.25, '');"
                              "INSERT INTO history VALUES (2, 'd', '', 1700000000.75, '');"
                              "INSERT INTO history VALUES (3, 'a', '', -5.0, '');"
                              "INSERT INTO history VALUES (4, 'c', '', 1700000000.5, '')");
    QCOMPARE(ids(), (QList<qint64>{2, 4, 1, 3}));
    database->insertHistory(u"e"_s, QString{}, QString{});
    QCOMPARE(ids(), (QList<qint64>{5, 2, 4, 1, 3}));
}

void DatabaseManagerHistoryTest::momentsComeBackExactly()
{
    databaseFile::run(file(), "INSERT INTO history VALUES (1, '', '', 1700000000.123456, '');"
                              "INSERT INTO history VALUES (2, '', '', 1700000000, '')");
    const QList<HistoryRecord> records = database->fetchAllHistory();
    QVERIFY(secondsSince1970(records.at(0).createdAt) == 1700000000.123456);
    QVERIFY(secondsSince1970(records.at(1).createdAt) == 1700000000.0);
}

void DatabaseManagerHistoryTest::idsAreNeverUsedAgain()
{
    for (int i = 0; i < 3; ++i) {
        database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    }
    database->deleteHistory(3);
    database->deleteHistory(2);
    database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    QCOMPARE(ids(), (QList<qint64>{4, 1}));
    database.reset();
    database = std::make_unique<DatabaseManager>(folder->path(), folder->filePath(u"covers"_s));
    database->deleteHistory(4);
    database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    QCOMPARE(ids(), (QList<qint64>{5, 1}));
}

void DatabaseManagerHistoryTest::largeIdsAreReadAndDeletedExactly()
{
    databaseFile::run(file(), "INSERT INTO history VALUES (9007199254740992, '', '', 1.0, '');"
                              "INSERT INTO history VALUES (9007199254740993, '', '', 2.0, '');"
                              "INSERT INTO history VALUES (-9223372036854775808, '', '', 3.0, '')");
    database->deleteHistory(9007199254740993);
    QCOMPARE(ids(), (QList<qint64>{std::numeric_limits<qint64>::min(), 9007199254740992}));
    database->deleteHistory(std::numeric_limits<qint64>::min());
    QCOMPARE(ids(), (QList<qint64>{9007199254740992}));
}

void DatabaseManagerHistoryTest::deletingTakesTheRowAndLeavesTheFile()
{
    const QString cover = samplePictures::write(folder->filePath(u"a.png"_s),
                                                samplePictures::png(samplePictures::picture({8, 8})));
    database->insertHistory(u"p"_s, cover, u"m"_s);
    database->insertHistory(u"q"_s, cover, u"m"_s);
    database->deleteHistory(1);
    QCOMPARE(ids(), (QList<qint64>{2}));
    QVERIFY(QFile::exists(cover));
}

void DatabaseManagerHistoryTest::deletingAnUnknownIdChangesAndPrintsNothing()
{
    database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
    const QByteArray output = standardOutputOf([this] {
        for (const qint64 id : {qint64{0}, qint64{2}, qint64{-1}, std::numeric_limits<qint64>::max()}) {
            database->deleteHistory(id);
        }
    });
    QCOMPARE(output, QByteArray{});
    QCOMPARE(ids(), (QList<qint64>{1}));
}

void DatabaseManagerHistoryTest::theHistoryOutlivesTheProgram()
{
    database->insertHistory(u"提示词"_s, u"~/a.png"_s, u"m"_s);
    const HistoryRecord before = database->fetchAllHistory().constFirst();
    database.reset();
    database = std::make_unique<DatabaseManager>(folder->path(), folder->filePath(u"covers"_s));
    const QList<HistoryRecord> records = database->fetchAllHistory();
    QCOMPARE(records.size(), 1);
    QCOMPARE(records.first().id, before.id);
    QCOMPARE(records.first().prompt, before.prompt);
    QVERIFY(records.first().createdAt == before.createdAt);
}

QTEST_GUILESS_MAIN(DatabaseManagerHistoryTest)
#include "DatabaseManagerHistoryTest.moc"
