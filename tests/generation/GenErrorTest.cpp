#include "generation/GenError.h"

#include "generation/GenerationResult.h"
#include "support/TestProgram.h"

#include <QTest>

using namespace Qt::StringLiterals;
using namespace quilmora;

class GenErrorTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyCaseHasItsTextAndPlace()
    {
        const QList<std::pair<GenError::Case, QString>> texts{
            {GenError::Case::invalidURL, u"API URL 无效，请在「功能设置」中配置"_s},
            {GenError::Case::invalidAPIKey, u"API Key 无效，请在「功能设置」中配置"_s},
            {GenError::Case::invalidModelID, u"Model ID 无效，请在「功能设置」中配置"_s},
            {GenError::Case::noData, u"未收到响应数据"_s},
            {GenError::Case::parseFailed, u"无法解析图片数据"_s}};
        for (qsizetype index = 0; index < texts.size(); ++index) {
            const auto &[kind, text] = texts.at(index);
            QCOMPARE(GenError{kind}.kind(), kind);
            QCOMPARE(GenError{kind}.errorDescription(), text);
            QCOMPARE(localizedDescription(GenError{kind}), text);
            QVERIFY(index == 0 || texts.at(index - 1).first < kind);
        }
    }

    void aServersMessageIsUnchanged()
    {
        const QString message = u"  <b>余额不足</b> & \"more\"\n "_s;
        const GenError error = GenError::serverError(message);
        QCOMPARE(error.kind(), GenError::Case::serverError);
        QCOMPARE(error.errorDescription(), message);
        QCOMPARE(GenError::serverError({}).errorDescription(), QString{});
    }

    void errorsCompareByCaseAndMessage()
    {
        QVERIFY(GenError{GenError::Case::noData} == GenError{GenError::Case::noData});
        QVERIFY(GenError{GenError::Case::noData} != GenError{GenError::Case::parseFailed});
        QVERIFY(GenError::serverError(u"a"_s) == GenError::serverError(u"a"_s));
        QVERIFY(GenError::serverError(u"a"_s) != GenError::serverError(u"b"_s));
    }

    void otherResultsAreDescribedToo()
    {
        QCOMPARE(localizedDescription(TransportError{u"连接被拒绝"_s}), u"连接被拒绝"_s);
        QCOMPARE(localizedDescription(QImage{1, 1, QImage::Format_RGB32}), QString{});
    }
};

QUILMORA_TEST(GenErrorTest, quilmora::test::runCoreTest)
#include "GenErrorTest.moc"
