#include "generation/Client.h"
#include "platform/ChineseTranslations.h"
#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QTcpServer>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace {

QString closedPort()
{
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    return QString::number(server.serverPort());
}

} // namespace

/// Addresses at which there is no service, and a network that goes away and comes back under one service that
/// lives on.
class UnreachableServiceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseTranslations(*QCoreApplication::instance()); }

    void addresses_data()
    {
        QTest::addColumn<QString>("text");
        const auto row = [](const QString &url, const QString &text = {}) {
            QTest::newRow(qUtf8Printable(url)) << text;
        };
        row(u"http://127.0.0.1:CLOSED"_s, u"连接被拒绝"_s);
        row(u"https://127.0.0.1:CLOSED"_s, u"连接被拒绝"_s);
        row(u"http://quilmora.invalid/"_s, u"没有找到"_s);
        for (const QString &url : {u"/api/v3/images/generations"_s, u"gopher://127.0.0.1/"_s,
                                   u"ark.example.org/api/v3/images/generations"_s, u"x"_s}) {
            row(url, u"协议"_s);
        }
        for (const QString &url : {u"http:///x"_s, u"http://"_s, u"https:///api"_s, u"ftp://127.0.0.1/x"_s,
                                   u"ftp://"_s, u"file:///etc/hostname"_s, u"data:application/json,x"_s,
                                   u"qrc:/translations/qtbase_zh_CN.qm"_s}) {
            row(url);
        }
    }

    void addresses()
    {
        QFETCH(const QString, text);
        QString url = QString::fromUtf8(QTest::currentDataTag());
        url.replace(u"CLOSED"_s, closedPort());
        Client client;
        client.start({url, u"secret-key"_s, u"m"_s});
        QCOMPARE(client.outcomes.size(), 0);
        QTRY_COMPARE_WITH_TIMEOUT(client.outcomes.size(), 1, 20'000);
        const Outcome outcome = client.outcomes.constFirst();
        QCOMPARE(outcome.kind, Outcome::Kind::transportError);
        QVERIFY2(outcome.text.contains(text), qPrintable(outcome.text));
        // The host and the scheme may be named.
        QString words = outcome.text;
        words.remove(u"quilmora.invalid"_s).remove(QUrl{url}.scheme());
        QVERIFY2(isChinese(words), qPrintable(outcome.text));
        QCOMPARE(client.threads.constFirst(), QThread::currentThread());
    }

    void aServerThatIsGoneAndBack()
    {
        auto server = std::make_unique<ScriptedHttpServer>(pictureResponse());
        const VolcengineConfig config = configFor(*server);
        const auto port = static_cast<quint16>(server->url().port());
        Client client;
        QCOMPARE(client.generate(config), Outcome::picture());

        server.reset();
        for (int count = 0; count < 3; ++count) {
            QCOMPARE(client.generate(config), Outcome::lost(u"连接被拒绝"_s));
        }

        server = std::make_unique<ScriptedHttpServer>([](const auto &) { return pictureResponse(); }, port);
        QCOMPARE(client.generate(config), Outcome::picture());
        QCOMPARE(server->headCount(), 1);
    }

    void aServerThatGoesDuringARequest()
    {
        auto server = std::make_unique<ScriptedHttpServer>(ScriptedResponse::silence());
        const VolcengineConfig config = configFor(*server);
        const auto port = static_cast<quint16>(server->url().port());
        Client client;
        client.start(config);
        QTRY_COMPARE(server->requestCount(), 1);
        server.reset();
        QTRY_COMPARE(client.outcomes, QList<Outcome>{Outcome::closed()});

        server = std::make_unique<ScriptedHttpServer>([](const auto &) { return pictureResponse(); }, port);
        QCOMPARE(client.generate(config), Outcome::picture());
        // The lost one has not come along.
        QCOMPARE(server->headCount(), 1);
    }

    void aNameThatIsUnknownAndThenRight()
    {
        const ScriptedHttpServer server{pictureResponse()};
        Client client;
        VolcengineConfig wrong = configFor(server);
        wrong.apiURL.replace(u"127.0.0.1"_s, u"quilmora.invalid"_s);
        QCOMPARE(client.generate(wrong), Outcome::lost(u"主机 quilmora.invalid 没有找到"_s));
        QCOMPARE(client.generate(server), Outcome::picture());
        QCOMPARE(server.headCount(), 1);
    }

    void manyFaultsInARow()
    {
        const QList<ScriptedResponse> responses{ScriptedResponse::reset(), ScriptedResponse::cut("{", 100),
                                                ScriptedResponse::whole("Bad Gateway", "502 Bad Gateway"),
                                                pictureResponse()};
        const ScriptedHttpServer server{[responses, count = 0](const auto &) mutable {
            return responses.at(count++ % responses.size());
        }};
        Client client;
        for (int count = 1; count <= 100; ++count) {
            QCOMPARE(client.generate(server) == Outcome::picture(), count % 4 == 0);
            QCOMPARE(server.headCount(), count);
            QCOMPARE(client.outcomes.size(), count);
        }
    }
};

QUILMORA_TEST(UnreachableServiceTest, runCoreTest)
#include "UnreachableServiceTest.moc"
