#include "GenerateScreen.h"
#include "platform/ImageCodec.h"
#include "screens/generate/LoadingSection.h"
#include "support/SamplePictures.h"

#include <QDateTime>
#include <QDir>
#include <QJsonObject>
#include <QPlainTextEdit>
#include <QRegularExpression>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;
using namespace std::chrono_literals;

class GenerateStatesTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whileGeneratingOnlyTheProgressIsShown();
    void aResultShowsThePictureAndTwoButtons();
    void anErrorShowsItsTextAndTheWayBack();
    void withoutAKeyTheErrorComesAtOnceAndNothingIsSent();
    void aMissingFacePhotoDoesNotStopTheStart();
    void theWayBackKeepsEveryInput_data();
    void theWayBackKeepsEveryInput();
    void theFocusGoesWhereTheUserGoesOn();
    void saveProposesADatedNameAndWritesThePixels();
    void aCancelledSaveWritesNothing();
    void aFailedSaveIsSilent();
    void leavingDuringAGenerationKeepsTheCover();

private:
    static void fillIn(GenerateScreen &screen);
    static QStringList inputs(GenerateScreen &screen);
};

void GenerateStatesTest::whileGeneratingOnlyTheProgressIsShown()
{
    GenerateScreen screen{[](const auto &) {
        return ScriptedAnswer::silence();
    }};
    screen.generate(u"标题"_s);
    QCOMPARE(accessible::names(&screen.window),
             (QStringList{u"正在生成封面..."_s, u"正在生成封面..."_s, u"请稍候，火山引擎正在生成中"_s}));
    const auto *section = screen.window.findChild<LoadingSection *>();
    QVERIFY(section->height() >= 400);
    QCOMPARE(section->width(), screen.view->viewport()->width() - 2 * 32);
}

void GenerateStatesTest::aResultShowsThePictureAndTwoButtons()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成成功"_s));
    QCOMPARE(accessible::names(&screen.window),
             (QStringList{u"生成成功"_s, u"生成的封面"_s, u"返回表单"_s, u"保存图片"_s}));
    QCOMPARE(screen.flow->generatedImage().size(), QSize(64, 36));
    QCOMPARE(screen.database.fetchAllHistory().size(), 1);
}

void GenerateStatesTest::anErrorShowsItsTextAndTheWayBack()
{
    GenerateScreen screen{GenerateScreen::answerWithText(R"({"error":{"code":"Busy","message":"稍后"}})")};
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成失败"_s));
    QCOMPARE(accessible::names(&screen.window), (QStringList{u"生成失败"_s, u"错误信息"_s, u"返回表单"_s}));
    QCOMPARE(screen.find<QPlainTextEdit>(u"错误信息"_s)->toPlainText(), u"[Busy] 稍后"_s);
    QCOMPARE(accessible::focusOrder(&screen.window), (QStringList{u"错误信息"_s, u"返回表单"_s}));
}

void GenerateStatesTest::withoutAKeyTheErrorComesAtOnceAndNothingIsSent()
{
    GenerateScreen screen;
    screen.database.saveConfig(screen.server.url().toString(), {}, u"m"_s);
    screen.generate(u"标题"_s);
    QCOMPARE(screen.find<QPlainTextEdit>(u"错误信息"_s)->toPlainText(),
             u"请先在「功能设置」中配置火山引擎的 API Key"_s);
    click(screen.find(u"返回表单"_s));
    QCOMPARE(screen.titleField()->text(), u"标题"_s);
    QCOMPARE(screen.server.requestCount(), 0);
}

void GenerateStatesTest::aMissingFacePhotoDoesNotStopTheStart()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"生成成功"_s));
    QCOMPARE(screen.server.requestCount(), 1);
    QVERIFY(!screen.requestBody().contains(u"image"_s));
}

void GenerateStatesTest::fillIn(GenerateScreen &screen)
{
    click(screen.find(u"小红书"_s));
    typeInto(screen.titleField(), u" 标题 "_s);
    typeInto(screen.find<QLineEdit>(u"背景场景"_s), u"办公室"_s);
    click(screen.find(u"自定义..."_s));
    typeInto(screen.find<QLineEdit>(u"请输入自定义表情描述"_s), u"眨眼"_s);
    typeInto(screen.advancedEditor(), u"蓝金"_s);
    for (const QString &card : {u"人脸形象（必填）"_s, u"风格参考（上传示例封面，非必填）"_s}) {
        screen.panels.answerReference(samplePictures::write(
            screen.home.path(u"a.png"_s), samplePictures::png(samplePictures::picture({30, 20}))));
        click(screen.find<QAbstractButton>(card));
    }
}

QStringList GenerateStatesTest::inputs(GenerateScreen &screen)
{
    QStringList values{screen.titleField()->text(), screen.find<QLineEdit>(u"背景场景"_s)->text(),
                       screen.find<QLineEdit>(u"请输入自定义表情描述"_s)->text(),
                       qobject_cast<QPlainTextEdit *>(screen.advancedEditor())->toPlainText(),
                       QString::number(accessible::allNamed(&screen.window, u"移除"_s).size())};
    for (const auto *option : screen.window.findChildren<QAbstractButton *>()) {
        if (option->isChecked()) {
            values.append(option->accessibleName());
        }
    }
    return values;
}

void GenerateStatesTest::theWayBackKeepsEveryInput_data()
{
    QTest::addColumn<bool>("succeeds");
    QTest::newRow("result") << true;
    QTest::newRow("error") << false;
}

void GenerateStatesTest::theWayBackKeepsEveryInput()
{
    QFETCH(const bool, succeeds);
    GenerateScreen screen{succeeds ? GenerateScreen::answerWithPicture()
                                   : GenerateScreen::answerWithText("Bad Gateway")};
    fillIn(screen);
    const QStringList before = inputs(screen);
    QCOMPARE(before, (QStringList{u" 标题 "_s, u"办公室"_s, u"眨眼"_s, u"蓝金"_s, u"2"_s, u"小红书"_s,
                                  u"自定义..."_s}));
    click(screen.generateButton());
    QTRY_VERIFY(screen.shows(succeeds ? u"生成成功"_s : u"生成失败"_s));
    QCOMPARE(screen.requestBody()[u"size"_s].toString(), u"1728x2304"_s);
    click(screen.find(u"返回表单"_s));
    QCOMPARE(inputs(screen), before);
    QVERIFY(screen.flow->generatedImage().isNull());
    // And the same form can go out again.
    click(screen.generateButton());
    QTRY_COMPARE(screen.server.requestCount(), 2);
    QCOMPARE(screen.requestBody(1), screen.requestBody(0));
}

void GenerateStatesTest::theFocusGoesWhereTheUserGoesOn()
{
    int request = 0;
    const auto picture = GenerateScreen::answerWithPicture();
    GenerateScreen screen{[&request, picture](const ReceivedRequest &received) {
        return ++request == 1 ? picture(received) : ScriptedAnswer::whole("Bad Gateway");
    }};
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"保存图片"_s));
    QCOMPARE(QApplication::focusWidget(), screen.find(u"保存图片"_s));
    click(screen.find(u"返回表单"_s));
    QCOMPARE(QApplication::focusWidget(), screen.titleField());
    click(screen.generateButton());
    QTRY_VERIFY(screen.shows(u"生成失败"_s));
    QCOMPARE(QApplication::focusWidget(), screen.find(u"返回表单"_s));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Space);
    QCOMPARE(QApplication::focusWidget(), screen.titleField());
}

void GenerateStatesTest::saveProposesADatedNameAndWritesThePixels()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"保存图片"_s));
    const QString path = samplePictures::write(screen.home.path(u"我的 封面.png"_s), "an older file");
    screen.panels.answerDestination(path);
    click(screen.find(u"保存图片"_s));
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
    QVERIFY2(screen.shows(u"生成成功"_s), "the result stays");
}

void GenerateStatesTest::aCancelledSaveWritesNothing()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"保存图片"_s));
    const QStringList names = accessible::names(&screen.window);
    const QStringList files = QDir{screen.home.path()}.entryList(QDir::AllEntries | QDir::Hidden);
    screen.panels.answerDestination(std::nullopt);
    click(screen.find(u"保存图片"_s));
    QCOMPARE(screen.panels.proposedNames().size(), 1);
    QCOMPARE(accessible::names(&screen.window), names);
    QCOMPARE(QDir{screen.home.path()}.entryList(QDir::AllEntries | QDir::Hidden), files);
}

void GenerateStatesTest::aFailedSaveIsSilent()
{
    GenerateScreen screen;
    screen.generate(u"标题"_s);
    QTRY_VERIFY(screen.shows(u"保存图片"_s));
    const QStringList names = accessible::names(&screen.window);
    // A folder stands in the file's place; another name lies in no folder at all.
    QVERIFY(QDir{}.mkpath(screen.home.path(u"folder.png"_s)));
    for (const QString &path : {screen.home.path(u"folder.png"_s), screen.home.path(u"no/such/a.png"_s)}) {
        screen.panels.answerDestination(path);
        click(screen.find(u"保存图片"_s));
        QCOMPARE(accessible::names(&screen.window), names);
        QVERIFY(QApplication::activeModalWidget() == nullptr && openSheet() == nullptr);
    }
    QCOMPARE(screen.panels.proposedNames().size(), 2);
}

void GenerateStatesTest::leavingDuringAGenerationKeepsTheCover()
{
    GenerateScreen screen{GenerateScreen::answerWithPicture({64, 36}, 50ms)};
    screen.generate(u"标题"_s);
    screen.leave();
    screen.flow.reset();
    QTRY_COMPARE(screen.database.fetchAllHistory().size(), 1);
    const HistoryRecord record = screen.database.fetchAllHistory().constFirst();
    QCOMPARE(record.image().size(), QSize(64, 36));
    QVERIFY(record.prompt.contains(u"「标题」"_s));
    QCOMPARE(record.modelID, u"test-model"_s);
}

int main(int argc, char *argv[])
{
    return runScreenTest<GenerateStatesTest>(argc, argv);
}

#include "GenerateStatesTest.moc"
