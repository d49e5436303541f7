#include "generation/OneShotUpload.h"

#include <QTest>

using namespace quilmora;

class OneShotUploadTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesItsBytesInPieces();
    void anEmptyBodyIsAtItsEnd();
    void cannotBeRewound();
    void takesNoBytes();
};

void OneShotUploadTest::givesItsBytesInPieces()
{
    OneShotUpload upload{"0123456789"};
    QVERIFY(!upload.isSequential());
    QCOMPARE(upload.size(), 10);
    QCOMPARE(upload.read(4), "0123");
    QCOMPARE(upload.read(4), "4567");
    QVERIFY(!upload.atEnd());
    QCOMPARE(upload.read(4), "89");
    QVERIFY(upload.atEnd());
    QCOMPARE(upload.read(4), QByteArray{});
}

void OneShotUploadTest::anEmptyBodyIsAtItsEnd()
{
    OneShotUpload upload{{}};
    QCOMPARE(upload.size(), 0);
    QVERIFY(upload.atEnd());
    QCOMPARE(upload.readAll(), QByteArray{});
}

void OneShotUploadTest::cannotBeRewound()
{
    OneShotUpload upload{"body"};
    QCOMPARE(upload.read(2), "bo");
    QVERIFY(!upload.reset());
    QCOMPARE(upload.readAll(), "dy");
    QVERIFY(!upload.reset());
}

void OneShotUploadTest::takesNoBytes()
{
    OneShotUpload upload{"body"};
    QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (quilmora::OneShotUpload): ReadOnly device");
    QCOMPARE(upload.write("x"), -1);
}

QTEST_GUILESS_MAIN(OneShotUploadTest)
#include "OneShotUploadTest.moc"
