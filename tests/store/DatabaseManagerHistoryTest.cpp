#include "StoreFixture.h"
#include "support/TestProgram.h"

#include <QTest>

#include <limits>

using namespace quilmora;
using namespace quilmora::test;

class DatabaseManagerHistoryTest final : public StoreFixture
{
    Q_OBJECT

private Q_SLOTS:
    void init()
    {
        StoreFixture::init();
        open();
    }

    void textsComeBackAsGiven_data()
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
    }

    void aPromptWithANulIsRefused_data()
    {
        QTest::addColumn<QString>("prompt");
        QTest::addColumn<QByteArray>("quoted");
        QTest::newRow("in the middle") << u"ab\0cd"_s << QByteArray{"'ab"};
        QTest::newRow("at the end") << u"ab\0"_s << QByteArray{"'ab"};
        QTest::newRow("alone") << u"\0"_s << QByteArray{"'"};
        QTest::newRow("after what would end the statement")
            << u"a', '', 0, ''); --\0"_s << QByteArray{"'a'', '''', 0, ''''); --"};
        QTest::newRow("after line breaks") << u"a\nb\0"_s << QByteArray{"'a b"};
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

    void largeIdsAreReadAndDeletedExactly()
    {
        sql("INSERT INTO history VALUES (9007199254740992, '', '', 1.0, '');"
            "INSERT INTO history VALUES (9007199254740993, '', '', 2.0, '');"
            "INSERT INTO history VALUES (-9223372036854775808, '', '', 3.0, '')");
        m_database->deleteHistory(9007199254740993);
        QCOMPARE(ids(), (QList<qint64>{std::numeric_limits<qint64>::min(), 9007199254740992}));
        m_database->deleteHistory(std::numeric_limits<qint64>::min());
        QCOMPARE(ids(), (QList<qint64>{9007199254740992}));
    }

    void deletingRemovesTheRowButNotTheFile()
    {
        const QString cover = samplePictures::write(m_home->path(u"a.png"_s), "x");
        m_database->insertHistory(u"p"_s, cover, u"m"_s);
        m_database->insertHistory(u"q"_s, cover, u"m"_s);
        m_database->deleteHistory(1);
        QCOMPARE(ids(), (QList<qint64>{2}));
        QVERIFY(QFile::exists(cover));
    }

    void deletingAnUnknownIdChangesAndPrintsNothing()
    {
        m_database->insertHistory(u"p"_s, u"~/a.png"_s, u"m"_s);
        const QByteArray output = standardOutputOf([this] {
            for (const qint64 id : {qint64{0}, qint64{2}, qint64{-1}, std::numeric_limits<qint64>::max()}) {
                m_database->deleteHistory(id);
            }
        });
        QCOMPARE(output, QByteArray{});
        QCOMPARE(ids(), (QList<qint64>{1}));
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
};

QUILMORA_TEST(DatabaseManagerHistoryTest, runCoreTest)
#include "DatabaseManagerHistoryTest.moc"
