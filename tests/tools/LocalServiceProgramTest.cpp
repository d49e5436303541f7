#include "support/TestProgram.h"
#include "tools/ServiceClient.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTest>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace quilmora::test;

namespace {

constexpr int longest = 30'000;

/// The service as a process of its own.
class Program final
{
public:
    explicit Program(const QStringList &arguments)
    {
        m_process.start(QString::fromUtf8(SERVICE_PROGRAM), arguments);
    }
    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY_MOVE(Program)

    /// The address it says it listens on; empty when it says something else.
    QUrl endpoint()
    {
        while (!m_process.canReadLine() && m_process.waitForReadyRead(longest)) {
        }
        static const QRegularExpression pattern{
            u"\\Alistening on (http://127\\.0\\.0\\.1:[0-9]+/api/v3/images/generations)\n\\z"_s};
        const QRegularExpressionMatch match = pattern.match(QString::fromUtf8(m_process.readLine()));
        return QUrl{match.captured(1)};
    }
    void signal(int number) { ::kill(static_cast<pid_t>(m_process.processId()), number); }
    /// How it ended, or -1 when it crashed or goes on.
    int exitCode()
    {
        const bool ended = m_process.state() == QProcess::NotRunning || m_process.waitForFinished(longest);
        return ended && m_process.exitStatus() == QProcess::NormalExit ? m_process.exitCode() : -1;
    }
    QByteArray output() { return m_process.readAllStandardOutput(); }

private:
    QProcess m_process;
};

} // namespace

class LocalServiceProgramTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itAnswersAndCounts();
    void itTakesKeyAndModels();
    void itEndsOnSignals();
    void aWaitingRequestDoesNotHoldTheEndUp();
    void badArgumentsAreRefused();
    void aTakenPortIsReported();
};

void LocalServiceProgramTest::itAnswersAndCounts()
{
    Program program{{u"--delay"_s, u"0"_s}};
    const QUrl endpoint = program.endpoint();
    QVERIFY(endpoint.port() > 0);
    ServiceClient client{endpoint};
    const ServiceReply reply = client.post(ServiceClient::goodBody());
    QCOMPARE(reply.status, 200);
    QCOMPARE(QImage::fromData(reply.picture()).size(), QSize(1280, 720));
    const QJsonObject counts = client.get(endpoint.resolved(QUrl{u"/stats"_s})).json();
    QCOMPARE(counts.value(u"answered"_s).toInt(), 1);
}

void LocalServiceProgramTest::itTakesKeyAndModels()
{
    Program program{{u"--delay=0"_s, u"--key"_s, u"k 1"_s, u"--model"_s, u"one"_s, u"--model"_s, u"two"_s}};
    ServiceClient client{program.endpoint()};
    QCOMPARE(client.post(ServiceClient::goodBody()).status, 401);
    client.key = "Bearer k 1";
    QJsonObject body = ServiceClient::goodBody();
    QCOMPARE(client.post(body).status, 404);
    for (const QString &model : {u"one"_s, u"two"_s}) {
        body.insert(u"model"_s, model);
        QCOMPARE(client.post(body).status, 200);
    }
}

void LocalServiceProgramTest::itEndsOnSignals()
{
    for (const int number : {SIGTERM, SIGINT}) {
        Program program{{}};
        QVERIFY(!program.endpoint().isEmpty());
        program.signal(number);
        QCOMPARE(program.exitCode(), 0);
        QCOMPARE(program.output(), QByteArray{});
    }
}

void LocalServiceProgramTest::aWaitingRequestDoesNotHoldTheEndUp()
{
    Program program{{u"--delay"_s, u"3600000"_s}};
    const QUrl endpoint = program.endpoint();
    ServiceClient client{endpoint};
    const auto reply = client.postLater(ServiceClient::goodBody());
    const QUrl stats = endpoint.resolved(QUrl{u"/stats"_s});
    QTRY_COMPARE(client.get(stats).json().value(u"under_way"_s).toInt(), 1);
    program.signal(SIGTERM);
    QCOMPARE(program.exitCode(), 0);
}

void LocalServiceProgramTest::badArgumentsAreRefused()
{
    for (const QString &argument : {u"--port=x"_s, u"--port=65536"_s, u"--delay=-1"_s, u"more"_s}) {
        Program program{{argument}};
        QCOMPARE(program.exitCode(), 2);
        QCOMPARE(program.output(), QByteArray{});
    }
}

void LocalServiceProgramTest::aTakenPortIsReported()
{
    Program first{{}};
    const QString port = QString::number(first.endpoint().port());
    Program second{{u"--port"_s, port}};
    QCOMPARE(second.exitCode(), 1);
}

QUILMORA_TEST(LocalServiceProgramTest, runGuiTest)

#include "LocalServiceProgramTest.moc"
