#include "platform/ChineseTranslations.h"

#include "support/TestProgram.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTranslator>

using namespace quilmora;
using namespace quilmora::test;

class ChineseTranslationsTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QCOMPARE(QCoreApplication::translate("QHttp", "Connection closed"), u"Connection closed"_s);
        installChineseTranslations(*QCoreApplication::instance());
    }

    void theCatalogIsInTheProgram()
    {
        QTranslator embedded;
        QVERIFY(embedded.load(u":/translations/qtbase_zh_CN.qm"_s));
        QCOMPARE(embedded.translate("QHttp", "Connection refused"), u"连接被拒绝"_s);
    }

    void platformTextsAreChinese_data()
    {
        const DataRows<QByteArray, QByteArray> addRow{"context", "source"};
        const auto row = [&](const QByteArray &context, const QByteArray &source) {
            addRow(context + ": " + source, context, source);
        };
        // From the system's catalog.
        row("QHttp", "Connection closed");
        row("QHttp", "Host %1 not found");
        row("QHttp", "SSL handshake failed");
        row("QHttp", "Too many redirects");
        row("QHttp", "Insecure redirect");
        row("QHttp", "Unknown protocol specified");
        row("QNetworkReply", "Protocol \"%1\" is unknown");
        row("QAbstractSocket", "Connection timed out");
        row("QNativeSocketEngine", "Network unreachable");
        row("QHttpSocketEngine", "Proxy connection refused");
        row("QSslSocket", "The certificate is self-signed, and untrusted");
        row("QIODevice", "No such file or directory");
        row("QIODevice", "No space left on device");
        row("QFileDialog", "File &name:");
        row("QLineEdit", "&Copy");
        // Our own words.
        row("QHttp", "Decompression failed: %1");
        row("QHttp", "Data downloaded is too large to store");
        row("QHttp", "Unsupported content encoding: %1");
        row("QSslSocket", "Attempted to use an unsupported protocol.");
        row("QFile", "Cannot create %1 for output: %2");
        for (const char *kind : {"Alias", "Drive", "Folder", "Shortcut", "Unknown"}) {
            row("QAbstractFileIconProvider", kind);
        }
    }

    void platformTextsAreChinese()
    {
        QFETCH(const QByteArray, context);
        QFETCH(const QByteArray, source);
        const QString text = QCoreApplication::translate(context.constData(), source.constData());
        QVERIFY2(text.contains(QRegularExpression{u"\\p{Han}"_s}), qPrintable(text));
        for (const QString &placeholder : {u"%1"_s, u"%2"_s}) {
            QCOMPARE(text.contains(placeholder), QString::fromLatin1(source).contains(placeholder));
        }
    }

    void unknownTextsStayAsTheyAre()
    {
        QCOMPARE(QCoreApplication::translate("QHttp", "No such text"), u"No such text"_s);
        QCOMPARE(QCoreApplication::translate("Other", "Decompression failed: %1"),
                 u"Decompression failed: %1"_s);
    }

    void fileErrorsAreChinese()
    {
        const QTemporaryDir folder;
        QFile file{folder.filePath(u"missing/file"_s)};
        QVERIFY(!file.open(QIODevice::ReadOnly));
        QCOMPARE(file.errorString(), u"此文件或目录不存在"_s);
    }

    void theLocaleStaysTheUsers() { QCOMPARE(QLocale{}, m_localeBefore); }

private:
    QLocale m_localeBefore;
};

QUILMORA_TEST(ChineseTranslationsTest, runCoreTest)
#include "ChineseTranslationsTest.moc"
