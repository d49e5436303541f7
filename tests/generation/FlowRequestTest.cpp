#include "generation/FlowFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

/// What the flow has the service send.
class FlowRequestTest final : public FlowFixture
{
    Q_OBJECT

private Q_SLOTS:
    void settingsOfTheStartCount();
    void picturesGoFaceFirst_data();
    void picturesGoFaceFirst();
    void aKeyOfOneBlankPasses();
};

void FlowRequestTest::settingsOfTheStartCount()
{
    server->holdAnswersUntil(2);
    start();
    QTRY_COMPARE(server->requestCount(), 1);
    saveConfig(server->url().toString(), u"other"_s, u"model-2"_s);
    start();
    QTRY_COMPARE(states.size(), 4);
    QCOMPARE(server->requests()[0].header("Authorization"), "Bearer key");
    QCOMPARE(server->requests()[1].header("Authorization"), "Bearer other");
    QStringList models;
    for (const HistoryRecord &row : database->fetchAllHistory()) {
        models.append(row.modelID);
    }
    models.sort();
    QCOMPARE(models, QStringList({u"model-1"_s, u"model-2"_s}));
}

void FlowRequestTest::picturesGoFaceFirst_data()
{
    QTest::addColumn<QImage>("face");
    QTest::addColumn<QImage>("style");
    QTest::addColumn<QList<int>>("widths");
    const QImage face = samplePictures::picture({30, 20});
    const QImage style = samplePictures::picture({50, 20});
    QTest::newRow("both") << face << style << QList<int>{30, 50};
    QTest::newRow("face only") << face << QImage{} << QList<int>{30};
    QTest::newRow("style only") << QImage{} << style << QList<int>{50};
    QTest::newRow("none") << QImage{} << QImage{} << QList<int>{};
}

void FlowRequestTest::picturesGoFaceFirst()
{
    QFETCH(const QImage, face);
    QFETCH(const QImage, style);
    QFETCH(const QList<int>, widths);
    CoverInputs inputs = sampleInputs();
    inputs.faceImage = face;
    inputs.styleImage = style;
    start(inputs);
    QTRY_COMPARE(states.size(), 2);
    const QJsonValue image = QJsonDocument::fromJson(server->requests().constFirst().body)[u"image"_s];
    QCOMPARE(image.isUndefined(), widths.isEmpty());
    QCOMPARE(image.isArray(), widths.size() > 1);
    QList<int> sent;
    const QJsonArray urls = image.isArray() ? image.toArray() : QJsonArray{image};
    for (const auto &url : urls) {
        if (url.isString()) {
            sent.append(
                QImage::fromData(QByteArray::fromBase64(url.toString().section(u',', 1).toLatin1())).width());
        }
    }
    QCOMPARE(sent, widths);
}

void FlowRequestTest::aKeyOfOneBlankPasses()
{
    saveConfig(server->url().toString(), u" "_s);
    start();
    QTRY_COMPARE(states, QStringList({u"generating"_s, u"success 32x24"_s}));
    QCOMPARE(server->requests().constFirst().header("Authorization"), "Bearer");
}

QTEST_GUILESS_MAIN(FlowRequestTest)
#include "FlowRequestTest.moc"
