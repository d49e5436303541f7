#include "GenerateScreen.h"

#include "platform/UserFolders.h"
#include "store/CoversFolder.h"
#include "support/SamplePictures.h"

#include <QJsonDocument>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test
{

GenerateScreen::GenerateScreen() : GenerateScreen{answerWithPicture()} {}

GenerateScreen::GenerateScreen(ScriptedHttpServer::Script script, ImageGeneratorService::IdleLimits limits)
    : server{std::move(script)},
      database{userFolders::applicationSupport() + u"/Quilmora"_s, coversFolder::path()},
      storage{coversFolder::path()},
      generator{limits},
      flow{CoverGenerationFlow::create(database, storage, generator)},
      view{std::make_unique<GenerateCoverView>(flow, panels)}
{
    database.saveConfig(server.url().toString(), u"test-key"_s, u"test-model"_s);
    // As the main view holds it.
    auto *column = new QVBoxLayout{&window};
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(view.get());
    showWindow(window, {1000, 1100});
}

ScriptedHttpServer::Script GenerateScreen::answerWithPicture(QSize size, std::chrono::milliseconds delay)
{
    const QByteArray picture = samplePictures::png(samplePictures::picture(size));
    const QByteArray body = R"({"data":[{"b64_json":")" + picture.toBase64() + R"("}]})";
    return [body, delay](const ReceivedRequest &) {
        return ScriptedAnswer::whole(body).after(delay);
    };
}

ScriptedHttpServer::Script GenerateScreen::answerWithText(const QByteArray &body)
{
    return [body](const ReceivedRequest &) {
        return ScriptedAnswer::whole(body, "502 Bad Gateway");
    };
}

QLineEdit *GenerateScreen::titleField()
{
    return find<QLineEdit>(u"视频封面标题文本"_s);
}

QAbstractButton *GenerateScreen::generateButton()
{
    return find<QAbstractButton>(u"开始生成封面"_s);
}

QWidget *GenerateScreen::advancedEditor()
{
    return find<QPlainTextEdit>(u"自定义风格指令（如\"使用蓝金配色\"、\"更戏剧化\"、\"保留原来的穿着\"）"_s);
}

void GenerateScreen::generate(const QString &title)
{
    typeInto(titleField(), title);
    click(generateButton());
}

QJsonObject GenerateScreen::requestBody(qsizetype index) const
{
    return QJsonDocument::fromJson(server.requests().at(index).body).object();
}

} // namespace quilmora::test
