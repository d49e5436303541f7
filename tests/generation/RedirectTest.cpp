#include "generation/Client.h"

#include <algorithm>

using namespace quilmora;
using namespace quilmora::test;

namespace {

constexpr std::array statuses{301, 302, 303, 307, 308};

void addStatuses()
{
    QTest::addColumn<int>("status");
    for (const int status : statuses) {
        QTest::addRow("%d", status) << status;
    }
}

bool repeatsTheBody(int status) { return status >= 307; }

/// Redirects with `status` from the first path to the one that `steps` names for it, until there is none.
/// Requests for a "good" picture get it at once.
ScriptedHttpServer::Script redirecting(int status, const QHash<QByteArray, QByteArray> &steps)
{
    return [=](const ReceivedRequest &request) {
        const QByteArray next = request.body.contains("good") ? QByteArray{} : steps.value(request.path());
        return next.isEmpty() ? pictureResponse() : ScriptedResponse::redirect(status, next);
    };
}

const QByteArray firstPath = "/api/v3/images/generations";

} // namespace

/// Redirects: those within the origin are followed. Those that would take the key, or the request with its
/// pictures, away from the host that the user has set, are not, which is seen on the other host.
class RedirectTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withinTheOriginIsFollowed_data() { addStatuses(); }
    void withinTheOriginIsFollowed()
    {
        QFETCH(const int, status);
        const ScriptedHttpServer server{redirecting(status, {{firstPath, "/new/path?x=1"}})};
        QCOMPARE(Client{}.generate(server), Outcome::picture());

        const QList<ReceivedRequest> requests = server.requests();
        QCOMPARE(requests.size(), 2);
        QCOMPARE(server.headCount(), 2);
        QCOMPARE(requests[1].path(), "/new/path?x=1");
        QCOMPARE(requests[1].header("Authorization"), "Bearer secret-key");
        QCOMPARE(requests[1].method(), repeatsTheBody(status) ? "POST" : "GET");
        QCOMPARE(requests[1].body, repeatsTheBody(status) ? requests[0].body : QByteArray{});
        QCOMPARE(requests[1].headerCount("Content-Type"), repeatsTheBody(status) ? 1 : 0);
    }

    void toAnotherOriginSendsNothing_data()
    {
        const DataRows<int, QByteArray> row{"status", "location"};
        for (const int status : statuses) {
            row(QByteArray::number(status) + ", another port", status, "http://127.0.0.1:OTHER/x");
            row(QByteArray::number(status) + ", another name of this host", status, "//localhost:PORT/x");
            for (const char *location : {"https://127.0.0.1/x", "file:///etc/hostname",
                                         "data:application/json,x", "ftp://127.0.0.1/x", "//localhost/x"}) {
                row(QByteArray::number(status) + ", " + location, status, QByteArray{location});
            }
        }
    }
    void toAnotherOriginSendsNothing()
    {
        QFETCH(const int, status);
        QFETCH(QByteArray, location);
        const ScriptedHttpServer other{pictureResponse()};
        location.replace("OTHER", QByteArray::number(other.url().port()));
        const ScriptedHttpServer server{[=](const ReceivedRequest &request) {
            const QByteArray port = request.header("Host").split(':').constLast();
            return redirecting(status, {{firstPath, QByteArray{location}.replace("PORT", port)}})(request);
        }};
        survive(server, Outcome::lost(u"不安全的重定向"_s));
        QCOMPARE(other.connectionCount(), 0);
    }

    void toAnotherOriginAfterAStepWithinIt_data() { addStatuses(); }
    void toAnotherOriginAfterAStepWithinIt()
    {
        QFETCH(const int, status);
        const ScriptedHttpServer other{pictureResponse()};
        const ScriptedHttpServer server{
            redirecting(status, {{firstPath, "/step"}, {"/step", other.url(u"/x"_s).toEncoded()}})};
        Client client;
        QCOMPARE(client.generate(server), Outcome::lost(u"不安全的重定向"_s));
        QCOMPARE(server.headCount(), 2);
        QCOMPARE(other.connectionCount(), 0);
        QCOMPARE(client.generate(server, u"good"_s), Outcome::picture());
    }

    void inACircleEnds_data() { addStatuses(); }
    void inACircleEnds()
    {
        QFETCH(const int, status);
        const ScriptedHttpServer server{redirecting(status, {{firstPath, firstPath}})};
        Client client;
        QCOMPARE(client.generate(server), Outcome::lost(u"重定向太多"_s));
        QCOMPARE(server.headCount(), 11);
        QCOMPARE(client.generate(server, u"good"_s), Outcome::picture());
        QCOMPARE(server.headCount(), 12);
    }

    void withoutAnAddressIsAResponse_data()
    {
        const DataRows<QByteArray, QByteArray> row{"status", "location"};
        for (const QByteArray status : {"300", "301", "302", "303", "304", "307", "308"}) {
            row(status + ", none", status, {});
            row(status + ", an empty one", status, "Location: \r\n");
            row(status + ", no address", QByteArray{status}, "Location: http://[oops\r\n");
        }
    }
    void withoutAnAddressIsAResponse()
    {
        QFETCH(const QByteArray, status);
        QFETCH(const QByteArray, location);
        const QByteArray body = R"({"error":{"code":"Moved","message":"m"}})";
        const QByteArray head = "HTTP/1.1 " + status + " Moved\r\n" + location;
        const QByteArray size = QByteArray::number(body.size());
        const QByteArray chunk = QByteArray::number(body.size(), 16) + "\r\n" + body + "\r\n0\r\n\r\n";
        for (const QByteArray &rest :
             {QByteArray{"Content-Length: " + size + "\r\n\r\n" + body},
              QByteArray{"Transfer-Encoding: chunked\r\n\r\n" + chunk}, QByteArray{"\r\n" + body}}) {
            const ScriptedHttpServer server{ScriptedResponse{{{head + rest}}}};
            // A response of 304 has no body, whatever follows.
            QCOMPARE(Client{}.generate(server), Outcome::shown(status == "304" ? QString{} : u"[Moved] m"_s));
            QCOMPARE(server.headCount(), 1);
        }
    }

    void truncatedIsALostConnection_data()
    {
        QTest::addColumn<QByteArray>("response");
        for (const char *status : {"302", "307", "308"}) {
            QTest::addRow("%s, with a length", status)
                << "HTTP/1.1 " + QByteArray{status} + " Moved\r\nContent-Length: 100\r\n\r\n{}";
        }
        QTest::newRow("302, in chunks")
            << QByteArray{"HTTP/1.1 302 Moved\r\nTransfer-Encoding: chunked\r\n\r\n64\r\n{}"};
    }
    void truncatedIsALostConnection()
    {
        QFETCH(const QByteArray, response);
        const ScriptedHttpServer server{ScriptedResponse{{{response}}}};
        QCOMPARE(Client{}.generate(server), Outcome::closed());
        QCOMPARE(server.headCount(), 1);
    }

    void aLostConnectionBehindOneIsNotTriedAgain_data() { addStatuses(); }
    void aLostConnectionBehindOneIsNotTriedAgain()
    {
        QFETCH(const int, status);
        const ScriptedHttpServer server{[status](const ReceivedRequest &request) {
            return request.path() == "/lost" ? ScriptedResponse::hangUp()
                                             : ScriptedResponse::redirect(status, "/lost");
        }};
        QCOMPARE(Client{}.generate(server), Outcome::closed());
        const QList<ReceivedRequest> requests = server.requests();
        const auto isLostPost = [](const ReceivedRequest &request) {
            return request.method() == "POST" && request.path() == "/lost";
        };
        QCOMPARE(std::count_if(requests.begin(), requests.end(), isLostPost), repeatsTheBody(status) ? 1 : 0);
    }

    void aTruncatedOnePostsNowhereTwice()
    {
        const ScriptedHttpServer server{[](const ReceivedRequest &request) {
            return request.path() == "/x" ? ScriptedResponse::hangUp()
                                          : ScriptedResponse{{{"HTTP/1.1 307 Moved\r\nLocation: /x\r\n"
                                                               "Content-Length: 100\r\n\r\nhalf"}}};
        }};
        QCOMPARE(Client{}.generate(server), Outcome::closed());
        const QList<ReceivedRequest> requests = server.requests();
        QVERIFY(requests.size() == 1 || (requests.size() == 2 && requests[1].path() == "/x"));
        QCOMPARE(server.headCount(), requests.size());
    }
};

QUILMORA_TEST(RedirectTest, runChineseTest)
#include "RedirectTest.moc"
