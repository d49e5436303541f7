#include "generation/ResponseParser.h"
#include "support/SamplePictures.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

namespace
{

/// A picture whose base64 text ends with `padding` signs and holds both of the last two letters of the
/// alphabet. Behind its end a picture file may carry anything.
QByteArray pictureBytes(int padding)
{
    QByteArray bytes = samplePictures::png(samplePictures::picture({16, 16}));
    bytes += QByteArray::fromBase64("++//");
    while ((3 - bytes.size() % 3) % 3 != padding) {
        bytes += '\0';
    }
    return bytes;
}

bool isPicture(const QByteArray &digits)
{
    const auto noResource = [](const QUrl &) {
        return std::optional<QByteArray>{};
    };
    const GenerationResult result =
        parseResponse(R"({"data":[{"b64_json":")" + digits + R"("}]})", noResource);
    return std::holds_alternative<QImage>(result);
}

} // namespace

class StrictBase64Test final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPaddingIsRead_data();
    void everyPaddingIsRead();
    void anythingElseIsRefused_data();
    void anythingElseIsRefused();
};

void StrictBase64Test::everyPaddingIsRead_data()
{
    QTest::addColumn<int>("padding");
    QTest::newRow("none") << 0;
    QTest::newRow("one") << 1;
    QTest::newRow("two") << 2;
}

void StrictBase64Test::everyPaddingIsRead()
{
    QFETCH(const int, padding);
    const QByteArray digits = pictureBytes(padding).toBase64();
    QCOMPARE(digits.count('='), padding);
    QVERIFY(isPicture(digits));
}

void StrictBase64Test::anythingElseIsRefused_data()
{
    QTest::addColumn<QByteArray>("digits");
    const QByteArray one = pictureBytes(1).toBase64();
    const QByteArray two = pictureBytes(2).toBase64();
    const QByteArray none = pictureBytes(0).toBase64();
    QTest::newRow("blank before") << QByteArray{" " + none};
    QTest::newRow("blank behind") << QByteArray{none + " "};
    QTest::newRow("blanks to a full group") << QByteArray{none + "    "};
    QTest::newRow("line break inside") << QByteArray{none}.insert(76, R"(\n)");
    QTest::newRow("line breaks to a full group") << QByteArray{none}.insert(76, R"(\r\n\r\n)");
    QTest::newRow("line break at the end") << QByteArray{none + R"(\n)"};
    QTest::newRow("padding missing") << one.chopped(1);
    QTest::newRow("both paddings missing") << two.chopped(2);
    QTest::newRow("one of two paddings missing") << two.chopped(1);
    QTest::newRow("padding too much") << QByteArray{one + "="};
    QTest::newRow("a group of padding") << QByteArray{none + "===="};
    QTest::newRow("padding in the middle") << QByteArray{one + none};
    QTest::newRow("two paddings in the middle") << QByteArray{two + none};
    QTest::newRow("one sign short") << none.chopped(1);
    QTest::newRow("alphabet for addresses")
        << pictureBytes(0).toBase64(QByteArray::Base64UrlEncoding | QByteArray::KeepTrailingEquals);
    QTest::newRow("a Chinese character") << QByteArray{none}.replace(80, 4, "封面封面");
    QTest::newRow("a full-width letter") << QByteArray{none}.replace(80, 1, "Ａ");
    QTest::newRow("NUL") << QByteArray{none}.replace(80, 1, R"(\u0000)");
    QTest::newRow("a data address") << QByteArray{"data:image/png;base64," + none};
}

void StrictBase64Test::anythingElseIsRefused()
{
    QFETCH(const QByteArray, digits);
    QVERIFY(!isPicture(digits));
}

QTEST_GUILESS_MAIN(StrictBase64Test)
#include "StrictBase64Test.moc"
