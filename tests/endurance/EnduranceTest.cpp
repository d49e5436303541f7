#include "Holdings.h"
#include "gallery/Stage.h"
#include "support/SamplePictures.h"
#include "support/ScreenTest.h"
#include "support/ScriptedAnswer.h"
#include "support/ScriptedHttpServer.h"

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// More than caches that have filled and lists that have grown to their size, less than one widget a round.
constexpr qint64 mostHeapGrowth = 300'000;

int rounds(int usual)
{
    const int wanted = qEnvironmentVariableIntValue("QUILMORA_ROUNDS");
    return wanted > 0 ? wanted : usual;
}

} // namespace

/// The window used for a long time holds no more at the end than soon after its start.
class EnduranceTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void changingTabsHoldsNothingBack();
    void makingCoversHoldsNothingBack();

private:
    /// Repeats `round` and compares what is held after some rounds with what is held after all.
    static void repeat(int count, const std::function<void()> &round);
};

void EnduranceTest::repeat(int count, const std::function<void()> &round)
{
    constexpr int warmUp = 30;
    const auto settle = [] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    };
    for (int i = 0; i < warmUp; ++i) {
        round();
    }
    settle();
    const Holdings before = Holdings::now();
    for (int i = 0; i < count; ++i) {
        round();
    }
    settle();
    // A connection's thread ends soon after it.
    QTRY_VERIFY(Holdings::now().threads <= before.threads);
    QTRY_VERIFY(Holdings::now().descriptors <= before.descriptors);
    const qint64 growth = Holdings::now().heapBytes - before.heapBytes;
    qInfo() << count << "rounds, heap grown by" << growth << "bytes," << before.descriptors << "descriptors,"
            << before.threads << "threads";
    QVERIFY(growth < mostHeapGrowth);
}

void EnduranceTest::changingTabsHoldsNothingBack()
{
    gallery::Stage stage;
    stage.open();
    repeat(rounds(300), [&stage] {
        for (const NavigationTab tab : NavigationTab::allCases()) {
            stage.click(tab.rawValue());
            QCoreApplication::processEvents();
        }
    });
}

void EnduranceTest::makingCoversHoldsNothingBack()
{
    const QByteArray picture = samplePictures::png(samplePictures::picture({64, 36}));
    const QByteArray answer = R"({"data":[{"b64_json":")" + picture.toBase64() + R"("}]})";
    ScriptedHttpServer server{[&answer](const auto &) {
        return ScriptedAnswer::whole(answer);
    }};
    const TemporaryHome pictures;
    const QString photo = samplePictures::write(pictures.path(u"face.png"_s),
                                                samplePictures::png(samplePictures::picture({60, 80})));
    gallery::Stage stage;
    stage.configure(server.url(), u"key"_s);
    stage.open();
    repeat(rounds(60), [&] {
        stage.type(u"视频封面标题文本"_s, u"标题"_s);
        stage.upload(u"人脸形象（必填）"_s, photo);
        stage.click(u"开始生成封面"_s);
        stage.waitFor(u"保存图片"_s);
        stage.click(u"返回表单"_s);
        stage.waitFor(u"视频封面标题文本"_s);
        // Sent once.
        QCOMPARE(server.requestCount(), 1);
        server.forgetRequests();
    });
}

int main(int argc, char *argv[])
{
    return runScreenTest<EnduranceTest>(argc, argv);
}

#include "EnduranceTest.moc"
