#include "generation/CoverInputs.h"
#include "imaging/ImageCodec.h"
#include "support/GenerateScreen.h"
#include "support/SamplePictures.h"

#include <QDateTime>
#include <QDir>
#include <QPlainTextEdit>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

/// What takes the place of the form and leads back to it. AccessibleTreeTest has the names of all pieces.
class GenerateStatesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aResultIsStored()
    {
        GenerateScreen screen;
        QVERIFY(screen.succeeds());
        QCOMPARE(screen.flow->generatedImage().size(), QSize(64, 36));
        QCOMPARE(screen.database.fetchAllHistory().size(), 1);
        QCOMPARE(screen.server.requestCount(), 1);
        QVERIFY2(!screen.requestBody().contains(u"image"_s), "a face photo is not needed");
    }

    void anErrorShowsItsText()
    {
        GenerateScreen screen{GenerateScreen::respondWithError()};
        QVERIFY(screen.fails());
        QCOMPARE(screen.error(), u"[Busy] 稍后"_s);
        QCOMPARE(accessible::focusOrder(&screen.window), (QStringList{texts::errorMessage, texts::back}));
    }

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

    void goingBackKeepsEveryInput_data()
    {
        QTest::addColumn<bool>("succeeds");
        QTest::newRow("result") << true;
        QTest::newRow("error after a result") << false;
    }

    void goingBackKeepsEveryInput()
    {
        QFETCH(const bool, succeeds);
        GenerateScreen screen{
            [count = 0, picture = GenerateScreen::respondWithPicture(),
             error = GenerateScreen::respondWithError()](const ReceivedRequest &request) mutable {
                return ++count == 1 ? picture(request) : error(request);
            }};
        fillIn(screen);
        const QStringList before = inputs(screen);
        QCOMPARE(before, (QStringList{u" 标题 "_s, u"办公室"_s, u"眨眼"_s, u"蓝金"_s, u"2"_s, u"小红书"_s,
                                      u"自定义..."_s}));
        click(screen.generateButton());
        QTRY_VERIFY(screen.shows(texts::succeeded));
        QCOMPARE(screen.requestBody()[u"size"_s].toString(), u"1728x2304"_s);
        if (!succeeds) {
            screen.flow->startGeneration({.selectedSize = CoverSize::presets().constFirst(),
                                          .titleText = u"标题"_s,
                                          .sceneText = {},
                                          .selectedEmotion = Emotion::presets().constFirst(),
                                          .customEmotion = {},
                                          .faceImage = {},
                                          .styleImage = {},
                                          .advancedText = {}});
            QTRY_VERIFY(screen.shows(texts::failed));
        }
        QVERIFY(!screen.flow->generatedImage().isNull());
        screen.goBack();
        QCOMPARE(inputs(screen), before);
        QVERIFY(screen.flow->generatedImage().isNull());
        // And the same form can go out again.
        const qsizetype requests = screen.server.requestCount();
        click(screen.generateButton());
        QTRY_COMPARE(screen.server.requestCount(), requests + 1);
        QCOMPARE(screen.requestBody(requests), screen.requestBody(0));
    }

    void theFocusGoesWhereTheUserGoesOn()
    {
        GenerateScreen screen{
            [count = 0, picture = GenerateScreen::respondWithPicture(),
             error = GenerateScreen::respondWithError()](const ReceivedRequest &request) mutable {
                return ++count == 1 ? picture(request) : error(request);
            }};
        QVERIFY(screen.succeeds());
        QCOMPARE(QApplication::focusWidget(), screen.find(texts::savePicture));
        screen.goBack();
        QCOMPARE(QApplication::focusWidget(), screen.titleField());
        QVERIFY(screen.fails());
        QCOMPARE(QApplication::focusWidget(), screen.find(texts::back));
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
        QCOMPARE(QApplication::focusWidget(), screen.titleField());
    }

    void saveProposesADatedNameAndWritesThePixels()
    {
        GenerateScreen screen;
        QVERIFY(screen.succeeds());
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

    void aSaveThatIsCancelledOrFailsIsSilent_data()
    {
        QTest::addColumn<ScriptedFileDialogs::Answer>("path");
        QTest::newRow("cancelled") << ScriptedFileDialogs::Answer{};
        QTest::newRow("a folder in the file's place") << ScriptedFileDialogs::Answer{u"folder.png"_s};
        QTest::newRow("in no folder") << ScriptedFileDialogs::Answer{u"no/such/a.png"_s};
    }

    void aSaveThatIsCancelledOrFailsIsSilent()
    {
        QFETCH(const ScriptedFileDialogs::Answer, path);
        GenerateScreen screen;
        QVERIFY(screen.succeeds());
        QVERIFY(QDir{}.mkpath(screen.home.path(u"folder.png"_s)));
        const QStringList names = accessible::names(&screen.window);
        const QDir home{screen.home.path(), {}, QDir::Name, QDir::AllEntries | QDir::Hidden};
        const QStringList files = home.entryList();
        screen.panels.answerDestination(path ? screen.home.path(*path) : path);
        click(screen.find(texts::savePicture));
        QCOMPARE(screen.panels.proposedNames().size(), 1);
        QCOMPARE(accessible::names(&screen.window), names);
        QVERIFY(QApplication::activeModalWidget() == nullptr && openSheet() == nullptr);
        QCOMPARE(QDir{home}.entryList(), files);
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

private:
    static void fillIn(GenerateScreen &screen)
    {
        click(screen.find(u"小红书"_s));
        typeInto(screen.titleField(), u" 标题 "_s);
        typeInto(screen.find<QLineEdit>(texts::scene), u"办公室"_s);
        click(screen.find(u"自定义..."_s));
        typeInto(screen.find<QLineEdit>(texts::customExpression), u"眨眼"_s);
        typeInto(screen.advancedEditor(), u"蓝金"_s);
        screen.pick(screen.facePhoto(), {30, 20});
        screen.pick(screen.stylePicture(), {30, 20});
    }

    static QStringList inputs(GenerateScreen &screen)
    {
        QStringList values{screen.titleField()->text(), screen.find<QLineEdit>(texts::scene)->text(),
                           screen.find<QLineEdit>(texts::customExpression)->text(),
                           screen.advancedEditor()->toPlainText(),
                           QString::number(accessible::allNamed(&screen.window, texts::remove).size())};
        for (const auto *option : screen.window.findChildren<QAbstractButton *>()) {
            if (option->isChecked()) {
                values.append(option->accessibleName());
            }
        }
        return values;
    }
};

QUILMORA_TEST(GenerateStatesTest, runScreenTest)

#include "GenerateStatesTest.moc"
