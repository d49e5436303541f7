#include "generation/FaultRun.h"
#include "platform/ChineseCatalogue.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

namespace
{

Outcome refused()
{
    return Outcome::lost(u"不安全的重定向"_s);
}

ScriptedAnswer goodAnswer(const ReceivedRequest & /*request*/)
{
    return ScriptedAnswer::whole(pictureAnswer());
}

void addStatuses()
{
    QTest::addColumn<int>("status");
    for (const int status : {301, 302, 303, 307, 308}) {
        QTest::addRow("%d", status) << status;
    }
}

} // namespace

/// Redirects that would take the key, or the request with its pictures, away from the host that the user has
/// set. Whether they do is seen on the other host.
class RedirectAwayTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { installChineseCatalogue(*QCoreApplication::instance()); }
    void toAnotherPort_data() { addStatuses(); }
    void toAnotherPort();
    void toAnotherNameOfThisHost_data() { addStatuses(); }
    void toAnotherNameOfThisHost();
    void afterAStepWithinTheOrigin_data() { addStatuses(); }
    void afterAStepWithinTheOrigin();
    void inACircle_data() { addStatuses(); }
    void inACircle();
    void ofAPictureNamedByItsAddress();
};

void RedirectAwayTest::toAnotherPort()
{
    QFETCH(const int, status);
    const ScriptedHttpServer other{goodAnswer};
    const ScriptedHttpServer server{
        faultOnce(ScriptedAnswer::redirect(status, other.url(u"/x"_s).toEncoded()))};
    survive(server, refused());
    QCOMPARE(other.connectionCount(), 0);
}

void RedirectAwayTest::toAnotherNameOfThisHost()
{
    QFETCH(const int, status);
    const ScriptedHttpServer server{[status, isFirst = std::make_shared<std::atomic_bool>(true)](
                                        const ReceivedRequest &request) {
        const QByteArray elsewhere =
            "http://" + request.header("Host").replace("127.0.0.1", "localhost") + "/x";
        return isFirst->exchange(false) ? ScriptedAnswer::redirect(status, elsewhere) : goodAnswer(request);
    }};
    survive(server, refused());
}

void RedirectAwayTest::afterAStepWithinTheOrigin()
{
    QFETCH(const int, status);
    const ScriptedHttpServer other{goodAnswer};
    const ScriptedHttpServer server{
        [status, away = other.url(u"/x"_s).toEncoded()](const ReceivedRequest &request) {
            if (request.body.contains("good")) {
                return goodAnswer(request);
            }
            return ScriptedAnswer::redirect(status, request.path() == "/step" ? away : QByteArray{"/step"});
        }};
    Results results;
    ImageGeneratorService service;
    service.generateImage(u"p"_s, 1, 1, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 1);
    QCOMPARE(results.text(), refused().text);
    QCOMPARE(server.headCount(), 2);
    QCOMPARE(other.connectionCount(), 0);
    service.generateImage(u"good"_s, 1, 1, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 2);
    QVERIFY2(results.isPicture(1), qPrintable(results.text(1)));
}

void RedirectAwayTest::inACircle()
{
    QFETCH(const int, status);
    const ScriptedHttpServer server{[status](const ReceivedRequest &request) {
        return request.body.contains("good") ? goodAnswer(request)
                                             : ScriptedAnswer::redirect(status, request.path());
    }};
    Results results;
    ImageGeneratorService service;
    service.generateImage(u"p"_s, 1, 1, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 1);
    QCOMPARE(results.text(), u"重定向太多"_s);
    QCOMPARE(server.headCount(), 11);
    service.generateImage(u"good"_s, 1, 1, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 2);
    QVERIFY2(results.isPicture(1), qPrintable(results.text(1)));
    QCOMPARE(server.headCount(), 12);
}

void RedirectAwayTest::ofAPictureNamedByItsAddress()
{
    // Here another host is no stranger: it is the picture's, which the key was never meant for.
    const ScriptedHttpServer other{[](const auto &) {
        return ScriptedAnswer::whole(samplePictures::png(samplePictures::picture({32, 24})));
    }};
    const ScriptedHttpServer pictures{[&other](const auto &) {
        return ScriptedAnswer::redirect(302, other.url().toEncoded());
    }};
    const ScriptedHttpServer server{[&pictures](const auto &) {
        return ScriptedAnswer::whole(addressAnswer(pictures.url().toEncoded()));
    }};
    Results results;
    ImageGeneratorService service;
    service.generateImage(u"p"_s, 1, 1, {}, configFor(server), results.collect());
    QTRY_COMPARE(results.all.size(), 1);
    QVERIFY2(results.isPicture(), qPrintable(results.text()));
    for (const ScriptedHttpServer *stranger : {&pictures, &other}) {
        QCOMPARE(stranger->requestCount(), 1);
        QVERIFY(!stranger->requests().constFirst().head.contains("secret-key"));
        QCOMPARE(stranger->requests().constFirst().headerCount("Authorization"), 0);
    }
}

QTEST_GUILESS_MAIN(RedirectAwayTest)
#include "RedirectAwayTest.moc"
