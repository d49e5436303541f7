#include "generation/GenError.h"

#include "generation/GenerationResult.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class GenErrorTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCaseHasItsText_data();
    void everyCaseHasItsText();
    void theCasesKeepTheirOrder();
    void aServersMessageIsUnchanged();
    void errorsCompareByCaseAndMessage();
    void aResultIsDescribedByItsError();
};

void GenErrorTest::everyCaseHasItsText_data()
{
    QTest::addColumn<GenError::Case>("kind");
    QTest::addColumn<QString>("text");
    QTest::newRow("address") << GenError::Case::invalidURL << u"API URL 无效，请在「功能设置」中配置"_s;
    QTest::newRow("key") << GenError::Case::invalidAPIKey << u"API Key 无效，请在「功能设置」中配置"_s;
    QTest::newRow("model") << GenError::Case::invalidModelID << u"Model ID 无效，请在「功能设置」中配置"_s;
    QTest::newRow("no data") << GenError::Case::noData << u"未收到响应数据"_s;
    QTest::newRow("picture") << GenError::Case::parseFailed << u"无法解析图片数据"_s;
}

void GenErrorTest::everyCaseHasItsText()
{
    QFETCH(const GenError::Case, kind);
    QFETCH(const QString, text);
    const GenError error{kind};
    QCOMPARE(error.kind(), kind);
    QCOMPARE(error.errorDescription(), text);
}

void GenErrorTest::theCasesKeepTheirOrder()
{
    QVERIFY(GenError::Case::invalidURL < GenError::Case::invalidAPIKey);
    QVERIFY(GenError::Case::invalidAPIKey < GenError::Case::invalidModelID);
    QVERIFY(GenError::Case::invalidModelID < GenError::Case::noData);
    QVERIFY(GenError::Case::noData < GenError::Case::parseFailed);
}

void GenErrorTest::aServersMessageIsUnchanged()
{
    const QString message = u"  <b>余额不足</b> & \"more\"\n "_s;
    const GenError error = GenError::serverError(message);
    QCOMPARE(error.kind(), GenError::Case::serverError);
    QCOMPARE(error.errorDescription(), message);
    QCOMPARE(GenError::serverError({}).errorDescription(), QString{});
}

void GenErrorTest::errorsCompareByCaseAndMessage()
{
    QVERIFY(GenError{GenError::Case::noData} == GenError{GenError::Case::noData});
    QVERIFY(GenError{GenError::Case::noData} != GenError{GenError::Case::parseFailed});
    QVERIFY(GenError::serverError(u"a"_s) == GenError::serverError(u"a"_s));
    QVERIFY(GenError::serverError(u"a"_s) != GenError::serverError(u"b"_s));
}

void GenErrorTest::aResultIsDescribedByItsError()
{
    QCOMPARE(localizedDescription(GenError{GenError::Case::parseFailed}), u"无法解析图片数据"_s);
    QCOMPARE(localizedDescription(TransportError{u"连接被拒绝"_s}), u"连接被拒绝"_s);
    QCOMPARE(localizedDescription(QImage{1, 1, QImage::Format_RGB32}), QString{});
}

QTEST_GUILESS_MAIN(GenErrorTest)
#include "GenErrorTest.moc"
