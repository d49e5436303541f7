#include "generation/NonRewindableBody.h"

#include "support/TestProgram.h"

#include <QTest>

using namespace quilmora;

class NonRewindableBodyTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesItsBytesInPieces()
    {
        NonRewindableBody upload{"0123456789"};
        QVERIFY(!upload.isSequential());
        QCOMPARE(upload.size(), 10);
        QCOMPARE(upload.read(4), "0123");
        QCOMPARE(upload.read(4), "4567");
        QVERIFY(!upload.atEnd());
        QCOMPARE(upload.read(4), "89");
        QVERIFY(upload.atEnd());
        QCOMPARE(upload.read(4), QByteArray{});

        NonRewindableBody empty{{}};
        QCOMPARE(empty.size(), 0);
        QVERIFY(empty.atEnd());
        QCOMPARE(empty.readAll(), QByteArray{});
    }

    void cannotBeRewoundNorWritten()
    {
        NonRewindableBody upload{"body"};
        QCOMPARE(upload.read(2), "bo");
        QVERIFY(!upload.reset());
        QTest::ignoreMessage(QtWarningMsg, "QIODevice::write (quilmora::NonRewindableBody): ReadOnly device");
        QCOMPARE(upload.write("x"), -1);
        QCOMPARE(upload.readAll(), "dy");
        QVERIFY(!upload.reset());
    }
};

QUILMORA_TEST(NonRewindableBodyTest, quilmora::test::runCoreTest)
#include "NonRewindableBodyTest.moc"
