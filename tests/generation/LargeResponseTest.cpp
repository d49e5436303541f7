#include "generation/Client.h"
#include "generation/HttpSession.h"
#include "support/FailureNote.h"

#include <QLibraryInfo>
#include <QRandomGenerator>
#include <QVersionNumber>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr qint64 megabyte = 1'000'000;

/// More than any memory that a response may take.
constexpr qint64 floodSize = 2000 * megabyte;

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

QByteArray headers(const QByteArray &more) { return "HTTP/1.1 200 OK\r\n" + more + "\r\n"; }

ScriptedResponse chunkedFlood(qint64 size)
{
    ScriptedResponse response = ScriptedResponse::flood(size, headers("Transfer-Encoding: chunked\r\n"));
    const QByteArray chunk = QByteArray::number(megabyte, 16) + "\r\n" + QByteArray(megabyte, 'x') + "\r\n";
    for (auto piece = response.pieces.begin() + 1; piece != response.pieces.end(); ++piece) {
        piece->bytes = chunk;
    }
    return response;
}

Outcome tooLarge() { return Outcome::lost(u"下载的数据太大，无法保存"_s); }

/// Qt itself refuses what decompresses to more than forty times its size. Earlier versions give no reason.
Outcome refusedByQt()
{
    return Outcome::lost(QLibraryInfo::version() < QVersionNumber{6, 5}
                             ? u"解压失败"_s
                             : u"解压失败：解压后的数据超出安全限制"_s);
}

} // namespace

/// Responses from none to far too much.
class LargeResponseTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bodies_data()
    {
        const DataRows<QByteArray, Outcome> row{"body", "outcome"};
        const Outcome picture = Outcome::picture({64, 64});
        row("0 bytes", {}, Outcome::shown({}));
        row("1 byte", "{", Outcome::shown(u"{"_s));
        row("1 byte that is no text", "\xff", Outcome::shown(u"无法解析响应"_s));
        row("a NUL", QByteArray{"\0", 1}, Outcome::shown(QString{QChar::Null}));
        row("30 MB, a picture", pictureAnswerOf(30 * megabyte), picture);
        row("the largest, a picture", pictureAnswerOf(responseSizeLimit::maximumBytes), picture);
    }

    void bodies()
    {
        QFETCH(const QByteArray, body);
        QFETCH(const Outcome, outcome);
        const ScriptedHttpServer server{faultOnce(ScriptedResponse::whole(body))};
        survive(server, outcome);
    }

    void headersOfAMegabyte()
    {
        const QByteArray body = pictureAnswer();
        const QByteArray length = "Content-Length: " + QByteArray::number(body.size()) + "\r\n";
        // In one line, in many lines, and in one folded line.
        for (const QByteArray &more :
             {QByteArray{"X-Long: " + QByteArray(megabyte, 'x') + "\r\n"},
              QByteArray{"X-Many: 0123456789\r\n"}.repeated(megabyte / 20),
              QByteArray{"X-Folded: x\r\n" + QByteArray{" 0123456789\r\n"}.repeated(80'000)}}) {
            const FailureNote note{more.first(20)};
            const ScriptedHttpServer server{faultOnce({{{headers(more + length) + body}}})};
            survive(server, Outcome::picture());
        }
    }

    void tooManyBytes_data()
    {
        const DataRows<ScriptedResponse> row{"response"};
        const qint64 size = 300 * megabyte;
        const QByteArray length = "Content-Length: 300000000\r\n";
        row("of that length", ScriptedResponse::flood(size, headers(length)));
        row("with an error status", ScriptedResponse::flood(size, "HTTP/1.1 500 Oops\r\n" + length + "\r\n"));
        row("of unknown length", ScriptedResponse::flood(size, headers({})));
        row("in chunks", chunkedFlood(size));
        row("a flood of unknown length", ScriptedResponse::flood(floodSize, headers({})));
        row("a flood in chunks", chunkedFlood(floodSize));
    }

    void tooManyBytes()
    {
        QFETCH(const ScriptedResponse, response);
        const ScriptedHttpServer server{faultOnce(response)};
        survive(server, tooLarge());
        // What comes before the connection has ended is more than the bound, and not much more.
        QVERIFY2(server.sentBytes() < floodSize / 2, qPrintable(QString::number(server.sentBytes())));
    }

    void theBoundHoldsForPicturesNamedByTheirAddress()
    {
        const ScriptedHttpServer pictures{ScriptedResponse::flood(floodSize, headers({}))};
        const ScriptedHttpServer server{
            faultOnce(ScriptedResponse::whole(addressAnswer(pictures.url().toEncoded())))};
        survive(server, Outcome::unparsable());
        QVERIFY2(pictures.sentBytes() < floodSize / 2, qPrintable(QString::number(pictures.sentBytes())));
    }

    void aBodyThatDecompressesToTooMuch_data()
    {
        const DataRows<QByteArray, qsizetype, Outcome> row{"coding", "repetitions", "outcome"};
        for (const QByteArray &coding : offeredCodings()) {
            row(coding + ", little by little", coding, 20, tooLarge());
            row(coding + ", at once", coding, 10'000, refusedByQt());
        }
    }

    void aBodyThatDecompressesToTooMuch()
    {
        QFETCH(const QByteArray, coding);
        QFETCH(const qsizetype, repetitions);
        QFETCH(const Outcome, outcome);
        QByteArray body;
        QRandomGenerator random{1};
        QList<quint32> noise(250);
        while (body.size() <= responseSizeLimit::maximumBytes) {
            random.fillRange(noise.data(), noise.size());
            const QByteArray block{reinterpret_cast<const char *>(noise.constData()), noise.size() * 4};
            body += block.repeated(repetitions);
        }
        const ScriptedHttpServer server{faultOnce(ScriptedResponse::encoded(body, coding))};
        survive(server, outcome);
    }
};

QUILMORA_TEST(LargeResponseTest, runChineseTest)
#include "LargeResponseTest.moc"
