#include "generation/Client.h"
#include "support/TestProgram.h"

#include <QTemporaryDir>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace {

QByteArray samplePng()
{
    return samplePictures::png(samplePictures::picture({40, 20}));
}

/// What comes of a response with that body.
Outcome outcomeOf(const QByteArray &body, std::chrono::milliseconds limit = 10s)
{
    return Client{limit}.generate(ScriptedHttpServer{ScriptedResponse::whole(body)});
}

} // namespace

/// Responses that name the picture's address instead of carrying it.
class PictureAddressTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void thePictureIsReadWithoutTheKey()
    {
        for (const QByteArray unusable : {"", R"("b64_json":"bm8gcGljdHVyZQ==",)"}) {
            const ScriptedHttpServer pictures{ScriptedResponse::whole(samplePng())};
            const QByteArray address = pictures.url(u"/cover.png"_s).toEncoded() + "?Sig=a%2Fb";
            const QByteArray body =
                addressAnswer(address).insert(addressAnswer({}).indexOf(R"("url")"), unusable);
            QCOMPARE(outcomeOf(body), Outcome::picture({40, 20}));
            const ReceivedRequest request = pictures.requests().constFirst();
            QCOMPARE(request.method(), "GET");
            QCOMPARE(request.path(), "/cover.png?Sig=a%2Fb");
            QCOMPARE(request.headerCount("Authorization"), 0);
            QVERIFY(!request.head.contains("secret-key"));
        }
    }

    void aDownloadThatFailsIsNoErrorOfItsOwn()
    {
        for (const ScriptedResponse &response :
             {ScriptedResponse::whole(samplePng(), "404 Not Found"), ScriptedResponse::whole("<html>"),
              ScriptedResponse::silence()}) {
            const ScriptedHttpServer pictures{response};
            const bool isSilent = response.pieces.isEmpty();
            QCOMPARE(outcomeOf(addressAnswer(pictures.url().toEncoded()), isSilent ? 150ms : 10s),
                     Outcome::unparsable());
            QVERIFY(pictures.headCount() >= 1);
        }
    }

    void aLocalFileIsNotRead()
    {
        const QTemporaryDir folder;
        const QString path = samplePictures::write(folder.filePath(u"cover.png"_s), samplePng());
        for (const QString &prefix : {u"file://"_s, u""_s}) {
            QCOMPARE(outcomeOf(addressAnswer((prefix + path).toUtf8())), Outcome::unparsable());
        }
    }

    void aSlowDownloadHoldsUpNoOtherRequest()
    {
        // The pictures of the first requests are only sent after the last request has had its response.
        constexpr int slowRequests = 8;
        ScriptedHttpServer pictures{ScriptedResponse::whole(samplePng())};
        pictures.holdAnswersUntil(slowRequests + 1);
        const ScriptedHttpServer server{[&pictures](const ReceivedRequest &request) {
            return request.body.contains("slow")
                       ? ScriptedResponse::whole(addressAnswer(pictures.url().toEncoded()))
                       : pictureResponse();
        }};
        Client client;
        for (int count = 0; count < slowRequests; ++count) {
            client.start(server, u"slow"_s);
        }
        QTRY_COMPARE(pictures.requestCount(), slowRequests);
        QCOMPARE(client.generate(server, u"quick"_s), Outcome::picture());
        QCOMPARE(client.outcomes.size(), 1);

        client.start(server, u"slow"_s);
        QTRY_COMPARE(client.outcomes.size(), slowRequests + 2);
        QCOMPARE(client.outcomes.count(Outcome::picture({40, 20})), slowRequests + 1);
    }
};

QUILMORA_TEST(PictureAddressTest, runCoreTest)
#include "PictureAddressTest.moc"
