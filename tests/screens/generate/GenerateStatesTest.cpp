#include "imaging/ImageCodec.h"
#include "store/ImageStorageService.h"
#include "support/GenerateScreen.h"
#include "support/SamplePictures.h"

#include <QDateTime>
#include <QDir>
#include <QRegularExpression>
#include <QTcpServer>

#include <atomic>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// What takes the place of the form and leads back to it, also after faults of the connection.
/// AccessibleTreeTest has the names of all pieces.
class GenerateStatesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void withoutAKeyTheErrorComesAtOnceAndNothingIsSent()
    {
        GenerateScreen screen;
        screen.database.saveConfig(screen.server.url().toString(), {}, u"m"_s);
        screen.generate();
        QCOMPARE(screen.error(), u"请先在「功能设置」中配置火山引擎的 API Key"_s);
        screen.goBack();
        QCOMPARE(screen.titleField()->text(), u"标题"_s);
        QCOMPARE(screen.server.requestCount(), 0);
    }

    void goingBackKeepsEveryInput()
    {
        GenerateScreen screen{pictureThenErrors()};
        fillIn(screen);
        const QStringList before = inputs(screen);
        QCOMPARE(before, (QStringList{u" 标题 "_s, u"办公室"_s, u"眨眼"_s, u"蓝金"_s, u"2"_s, u"小红书"_s,
                                      u"自定义..."_s}));
        click(screen.generateButton());
        QTRY_VERIFY(screen.shows(texts::succeeded));
        QCOMPARE(screen.requestBody()[u"size"_s].toString(), u"1728x2304"_s);
        for (const bool isError : {false, true}) {
            QTRY_VERIFY(screen.shows(isError ? texts::failed : texts::succeeded));
            QCOMPARE(screen.flow->generatedImage().isNull(), isError);
            screen.goBack();
            QVERIFY2(inputs(screen) == before, isError ? "after an error" : "after a result");
            QVERIFY(screen.flow->generatedImage().isNull());
            // And the same form can go out again.
            const qsizetype requests = screen.server.requestCount();
            click(screen.generateButton());
            QTRY_COMPARE(screen.server.requestCount(), requests + 1);
            QCOMPARE(screen.requestBody(requests), screen.requestBody(0));
        }
    }

    void anErrorAfterAResultCanBeLeft()
    {
        GenerateScreen screen{pictureThenErrors()};
        QVERIFY(screen.succeeds());
        screen.flow->startGeneration(GenerateScreen::inputs());
        QTRY_VERIFY(screen.shows(texts::failed));
        QVERIFY(!screen.flow->generatedImage().isNull());
        screen.goBack();
        QVERIFY(screen.flow->generatedImage().isNull());
        QCOMPARE(screen.titleField()->text(), u"标题"_s);
    }

    void theFocusGoesWhereTheUserGoesOn()
    {
        GenerateScreen screen{pictureThenErrors()};
        QVERIFY(screen.succeeds());
        QCOMPARE(QApplication::focusWidget(), screen.find(texts::savePicture));
        screen.goBack();
        QCOMPARE(QApplication::focusWidget(), screen.titleField());
        QVERIFY(screen.fails());
        QCOMPARE(accessible::focusOrder(&screen.window), (QStringList{texts::errorMessage, texts::back}));
        QCOMPARE(QApplication::focusWidget(), screen.find(texts::back));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(QApplication::focusWidget(), screen.titleField());
    }

    void aResultIsStoredAndSavedUnderADatedName()
    {
        GenerateScreen screen;
        QVERIFY(screen.succeeds());
        QCOMPARE(screen.flow->generatedImage().size(), QSize(64, 36));
        QCOMPARE(screen.database.fetchAllHistory().size(), 1);
        QCOMPARE(screen.server.requestCount(), 1);
        QVERIFY2(!screen.requestBody().contains(u"image"_s), "a face photo is not needed");
        const QString path = samplePictures::write(screen.home.path(u"我的 封面.png"_s), "an older file");
        screen.panels.answerDestination(path);
        click(screen.find(texts::savePicture));
        QCOMPARE(screen.panels.proposedNames().size(), 1);
        static const QRegularExpression pattern{uR"(^Quilmora_(\d{8}_\d{6})\.png$)"_s};
        const QRegularExpressionMatch name = pattern.match(screen.panels.proposedNames().constFirst());
        QVERIFY2(name.hasMatch(), qPrintable(screen.panels.proposedNames().constFirst()));
        const QDateTime proposed = QDateTime::fromString(name.captured(1), u"yyyyMMdd_HHmmss"_s);
        QVERIFY(std::abs(proposed.secsTo(QDateTime::currentDateTime())) < 60);
        QFile file{path};
        QVERIFY(file.open(QIODevice::ReadOnly));
        const QByteArray bytes = file.readAll();
        QVERIFY(bytes.startsWith("\x89PNG"));
        QCOMPARE(imageCodec::decode(bytes).convertToFormat(QImage::Format_RGB32),
                 samplePictures::inSrgb(samplePictures::picture({64, 36})));
        QVERIFY2(screen.shows(texts::succeeded), "the result stays");
    }

    void aSaveThatIsCancelledOrFailsIsSilent()
    {
        GenerateScreen screen;
        QVERIFY(screen.succeeds());
        const QString folder = screen.home.path(u"folder.png"_s);
        QVERIFY(QDir{}.mkpath(folder));
        const QStringList names = accessible::names(&screen.window);
        const QDir home{screen.home.path(), {}, QDir::Name, QDir::AllEntries | QDir::Hidden};
        const QStringList files = home.entryList();
        const QList<ScriptedFileDialogs::Answer> paths{std::nullopt, folder,
                                                       screen.home.path(u"no/such/a.png"_s)};
        for (const ScriptedFileDialogs::Answer &path : paths) {
            screen.panels.answerDestination(path);
            click(screen.find(texts::savePicture));
            QCOMPARE(accessible::names(&screen.window), names);
            QVERIFY(QApplication::activeModalWidget() == nullptr && openSheet() == nullptr);
            QCOMPARE(QDir{home}.entryList(), files);
        }
        QCOMPARE(screen.panels.proposedNames().size(), paths.size());
    }

    void leavingDuringAGenerationKeepsTheCover()
    {
        GenerateScreen screen{GenerateScreen::respondWithPicture({64, 36}, 50ms)};
        screen.generate();
        screen.leave();
        screen.flow.reset();
        QTRY_COMPARE(screen.database.fetchAllHistory().size(), 1);
        const HistoryRecord record = screen.database.fetchAllHistory().constFirst();
        QCOMPARE(record.image().size(), QSize(64, 36));
        QVERIFY(record.prompt.contains(u"「标题」"_s));
        QCOMPARE(record.modelID, u"test-model"_s);
    }

    void theScreenIsUsableAfterwards()
    {
        const QString closed = u"连接已关闭"_s;
        const QList<std::pair<ScriptedResponse, QString>> faults{
            {ScriptedResponse::reset(), closed},
            {ScriptedResponse::cut("{\"data\":", 1000), closed},
            {ScriptedResponse::silence(), u"请求超时"_s},
            {{{{"220 mail.example.org ESMTP\r\n"}}}, closed},
            {ScriptedResponse::whole({}), {}},
            {ScriptedResponse::whole("<b>Bad Gateway</b>", "502 Bad Gateway"), u"<b>Bad Gateway</b>"_s},
            {ScriptedResponse::whole(R"({"error":{"code":"AuthenticationError","message":"no"}})",
                                     "401 Unauthorized", "WWW-Authenticate: Negotiate\r\n"),
             u"[AuthenticationError] no"_s},
            {ScriptedResponse::redirect(307, "http://quilmora.invalid/"), u"不安全的重定向"_s},
            {ScriptedResponse::flood(300'000'000, "HTTP/1.1 200 OK\r\nContent-Length: 300000000\r\n\r\n"),
             u"下载的数据太大，无法保存"_s},
            {ScriptedResponse::whole(R"({"data":[{"b64_json":"bm8gcGljdHVyZQ=="}]})"), u"无法解析图片数据"_s},
        };
        for (const auto &[fault, text] : faults) {
            GenerateScreen screen{
                [response = fault, good = GenerateScreen::respondWithPicture(),
                 isFirst = std::make_shared<std::atomic_bool>(true)](const ReceivedRequest &request) {
                    return isFirst->exchange(false) ? response : good(request);
                },
                {.request = 2s, .download = 2s}};
            screen.generate();
            goBackAndSucceed(screen, text);
            QCOMPARE(screen.server.headCount(), 2);
        }
    }

    void anAddressWithoutAServerCanBeCorrected()
    {
        GenerateScreen screen;
        QString port;
        {
            QTcpServer gone;
            QVERIFY(gone.listen(QHostAddress::LocalHost));
            port = QString::number(gone.serverPort());
        }
        const VolcengineConfig good = screen.database.getConfig();
        screen.database.saveConfig(u"http://127.0.0.1:"_s + port, good.apiKey, good.modelID);
        screen.generate();
        QTRY_VERIFY(screen.shows(texts::failed));
        screen.database.saveConfig(good.apiURL, good.apiKey, good.modelID);
        goBackAndSucceed(screen, u"连接被拒绝"_s);
        QCOMPARE(screen.server.headCount(), 1);
    }

    void faultsInARowChangeNothing()
    {
        constexpr int faults = 20;
        GenerateScreen screen{[good = GenerateScreen::respondWithPicture(),
                               count = std::make_shared<std::atomic_int>(0)](const ReceivedRequest &request) {
            return (*count)++ < faults ? ScriptedResponse::reset() : good(request);
        }};
        screen.generate();
        for (int count = 1; count < faults; ++count) {
            QTRY_VERIFY(screen.shows(texts::failed));
            QCOMPARE(screen.error(), u"连接已关闭"_s);
            screen.goBack();
            click(screen.generateButton());
            QTRY_COMPARE(screen.server.headCount(), count + 1);
        }
        goBackAndSucceed(screen, u"连接已关闭"_s);
        QCOMPARE(screen.server.headCount(), faults + 1);
    }

private:
    /// A picture for the first request, errors for all later ones.
    static ScriptedHttpServer::Script pictureThenErrors()
    {
        return [count = 0, picture = GenerateScreen::respondWithPicture(),
                error = GenerateScreen::respondWithError()](const ReceivedRequest &request) mutable {
            return ++count == 1 ? picture(request) : error(request);
        };
    }

    static void fillIn(GenerateScreen &screen)
    {
        click(screen.find(u"小红书"_s));
        typeInto(screen.titleField(), u" 标题 "_s);
        typeInto(screen.sceneField(), u"办公室"_s);
        click(screen.find(u"自定义..."_s));
        typeInto(screen.customExpression(), u"眨眼"_s);
        typeInto(screen.advancedEditor(), u"蓝金"_s);
        screen.pick(screen.facePhoto(), {30, 20});
        screen.pick(screen.stylePicture(), {30, 20});
    }

    static QStringList inputs(GenerateScreen &screen)
    {
        QStringList values{screen.titleField()->text(), screen.sceneField()->text(),
                           screen.customExpression()->text(), screen.advancedEditor()->toPlainText(),
                           QString::number(accessible::allNamed(&screen.window, texts::remove).size())};
        for (const auto *option : screen.window.findChildren<QAbstractButton *>()) {
            if (option->isChecked()) {
                values.append(option->accessibleName());
            }
        }
        return values;
    }

    /// Sees the error with `text`, goes back, and makes a cover out of the same form.
    static void goBackAndSucceed(GenerateScreen &screen, const QString &text)
    {
        QTRY_VERIFY_WITH_TIMEOUT(screen.shows(texts::failed), 30'000);
        QCOMPARE(accessible::names(&screen.window),
                 (QStringList{texts::failed, texts::errorMessage, texts::back}));
        QCOMPARE(screen.error(), text);
        QVERIFY(screen.database.fetchAllHistory().isEmpty());
        QVERIFY(QDir{coversFolder::path()}.isEmpty());

        screen.goBack();
        QCOMPARE(screen.titleField()->text(), u"标题"_s);
        click(screen.generateButton());
        QTRY_VERIFY_WITH_TIMEOUT(screen.shows(texts::succeeded), 30'000);
        QCOMPARE(screen.database.fetchAllHistory().size(), 1);
    }
};

QUILMORA_TEST(GenerateStatesTest, runScreenTest)
#include "GenerateStatesTest.moc"
