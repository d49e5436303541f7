#include "generation/AnswerBound.h"
#include "generation/FaultRun.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QRandomGenerator>
#include <QVersionNumber>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

constexpr qint64 megabyte = 1'000'000;

/// Behind its end a picture file may carry anything.
QByteArray pictureAnswerOf(qsizetype size)
{
    QByteArray picture = samplePictures::png(samplePictures::picture({64, 64}));
    const QByteArray before = R"({"data":[{"b64_json":")";
    const QByteArray behind = R"("}]})";
    const qsizetype encoded = (size - before.size() - behind.size()) / 4 * 4;
    picture += QByteArray(encoded / 4 * 3 - picture.size(), 'x');
    return before + picture.toBase64() + behind;
}

QByteArray headers(const QByteArray &more)
{
    return "HTTP/1.1 200 OK\r\n" + more + "\r\n";
}

/// More than any memory that an answer may take.
constexpr qint64 floodSize = 2000 * megabyte;

ScriptedAnswer chunkedFlood(qint64 size)
{
    ScriptedAnswer answer = ScriptedAnswer::flood(size, headers("Transfer-Encoding: chunked\r\n"));
    const QByteArray chunk = QByteArray::number(megabyte, 16) + "\r\n" + QByteArray(megabyte, 'x') + "\r\n";
    for (auto piece = answer.pieces.begin() + 1; piece != answer.pieces.end(); ++piece) {
        piece->bytes = chunk;
    }
    return answer;
}

Outcome tooLarge()
{
    return Outcome::lost(u"下载的数据太大，无法保存"_s);
}

/// Earlier versions of Qt give no reason.
QString refusalOfABomb()
{
    return QLibraryInfo::version() < QVersionNumber{6, 5} ? u"解压失败"_s
                                                          : u"解压失败：解压后的数据超出安全限制"_s;
}

} // namespace

/// Answers from none to far too much.
class LargeAnswerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void bodies_data();
    void bodies();
    void headersOfAMegabyte_data();
    void headersOfAMegabyte();
    void threeHundredMegabytes_data();
    void threeHundredMegabytes();
    void aFloodIsNotTakenToItsEnd_data();
    void aFloodIsNotTakenToItsEnd();
    void theBoundHoldsForPicturesNamedByTheirAddress();
    void aBodyThatUnpacksToTooMuchIsNotTaken_data();
    void aBodyThatUnpacksToTooMuchIsNotTaken();
};

void LargeAnswerTest::bodies_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<Outcome>("outcome");
    QTest::newRow("0 bytes") << QByteArray{} << Outcome::told({});
    QTest::newRow("1 byte") << QByteArray{"{"} << Outcome::told(u"{"_s);
    QTest::newRow("1 byte that is no text") << QByteArray{"\xff"} << Outcome::told(u"无法解析响应"_s);
    QTest::newRow("a NUL") << QByteArray{"\0", 1} << Outcome::told(QString{QChar::Null});
    QTest::newRow("30 MB, a picture") << pictureAnswerOf(30 * megabyte) << Outcome::picture();
    QTest::newRow("the largest, a picture")
        << pictureAnswerOf(answerBound::maximumBytes) << Outcome::picture();
}

void LargeAnswerTest::bodies()
{
    QFETCH(const QByteArray, body);
    QFETCH(const Outcome, outcome);
    const ScriptedHttpServer server{faultOnce(ScriptedAnswer::whole(body))};
    survive(server, outcome);
}

void LargeAnswerTest::headersOfAMegabyte_data()
{
    QTest::addColumn<QByteArray>("more");
    QTest::newRow("in one line") << "X-Long: " + QByteArray(megabyte, 'x') + "\r\n";
    QTest::newRow("in many lines") << QByteArray{"X-Many: 0123456789\r\n"}.repeated(megabyte / 20);
    QTest::newRow("in one folded line") << "X-Folded: x\r\n" + QByteArray{" 0123456789\r\n"}.repeated(80'000);
}

void LargeAnswerTest::headersOfAMegabyte()
{
    QFETCH(const QByteArray, more);
    const QByteArray body = pictureAnswer();
    const QByteArray length = "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
    const ScriptedHttpServer server{faultOnce({{{headers(more + length) + body}}})};
    survive(server, Outcome::picture());
}

void LargeAnswerTest::threeHundredMegabytes_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    const qint64 size = 300 * megabyte;
    const QByteArray length = "Content-Length: 300000000\r\n";
    QTest::newRow("of that length") << ScriptedAnswer::flood(size, headers(length));
    QTest::newRow("with an error status")
        << ScriptedAnswer::flood(size, "HTTP/1.1 500 Oops\r\n" + length + "\r\n");
    QTest::newRow("of unknown length") << ScriptedAnswer::flood(size, headers({}));
    QTest::newRow("in chunks") << chunkedFlood(size);
}

void LargeAnswerTest::threeHundredMegabytes()
{
    QFETCH(const ScriptedAnswer, answer);
    const ScriptedHttpServer server{faultOnce(answer)};
    survive(server, tooLarge());
}

void LargeAnswerTest::aFloodIsNotTakenToItsEnd_data()
{
    QTest::addColumn<ScriptedAnswer>("answer");
    QTest::newRow("of unknown length") << ScriptedAnswer::flood(floodSize, headers({}));
    QTest::newRow("in chunks") << chunkedFlood(floodSize);
}

void LargeAnswerTest::aFloodIsNotTakenToItsEnd()
{
    QFETCH(const ScriptedAnswer, answer);
    const ScriptedHttpServer server{faultOnce(answer)};
    survive(server, tooLarge());
    // What comes before the connection has ended is more than the bound, and not much more.
    QVERIFY2(server.sentBytes() < floodSize / 2, qPrintable(QString::number(server.sentBytes())));
}

void LargeAnswerTest::theBoundHoldsForPicturesNamedByTheirAddress()
{
    const ScriptedHttpServer pictures{[](const auto &) {
        return ScriptedAnswer::flood(floodSize, headers({}));
    }};
    const ScriptedHttpServer server{
        faultOnce(ScriptedAnswer::whole(addressAnswer(pictures.url().toEncoded())))};
    survive(server, Outcome::told(u"无法解析图片数据"_s));
    QVERIFY2(pictures.sentBytes() < floodSize / 2, qPrintable(QString::number(pictures.sentBytes())));
}

void LargeAnswerTest::aBodyThatUnpacksToTooMuchIsNotTaken_data()
{
    QTest::addColumn<QByteArray>("coding");
    QTest::addColumn<qsizetype>("repetitions");
    QTest::addColumn<Outcome>("outcome");
    // Qt itself refuses what decompresses to more than forty times its size.
    const Outcome refused = Outcome::lost(refusalOfABomb());
    for (const QByteArray &coding : offeredCodings()) {
        QTest::addRow("%s, little by little", coding.constData()) << coding << qsizetype{20} << tooLarge();
        QTest::addRow("%s, at once", coding.constData()) << coding << qsizetype{10'000} << refused;
    }
}

void LargeAnswerTest::aBodyThatUnpacksToTooMuchIsNotTaken()
{
    QFETCH(const QByteArray, coding);
    QFETCH(const qsizetype, repetitions);
    QFETCH(const Outcome, outcome);
    QByteArray body;
    QRandomGenerator random{1};
    QList<quint32> noise(250);
    while (body.size() <= answerBound::maximumBytes) {
        random.fillRange(noise.data(), noise.size());
        const QByteArray block{reinterpret_cast<const char *>(noise.constData()), noise.size() * 4};
        body += block.repeated(repetitions);
    }
    const ScriptedHttpServer server{faultOnce(ScriptedAnswer::encoded(body, coding))};
    survive(server, outcome);
}

QTEST_GUILESS_MAIN(LargeAnswerTest)
#include "LargeAnswerTest.moc"
