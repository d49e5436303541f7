#include "support/GenerateScreen.h"

#include "platform/Files.h"
#include "store/ImageStorageService.h"
#include "support/SamplePictures.h"

#include <QJsonDocument>
#include <QVBoxLayout>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test {

GenerateScreen::GenerateScreen() : GenerateScreen{respondWithPicture()} {}

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

ScriptedHttpServer::Script GenerateScreen::respondWithPicture(QSize size, std::chrono::milliseconds delay)
{
    const QByteArray picture = samplePictures::png(samplePictures::picture(size));
    return [body = bodyWith(picture), delay](const ReceivedRequest &) {
        return ScriptedResponse::whole(body).after(delay);
    };
}

QByteArray GenerateScreen::bodyWith(const QByteArray &picture)
{
    return R"({"data":[{"b64_json":")" + picture.toBase64() + R"("}]})";
}

ScriptedHttpServer::Script GenerateScreen::respondWithText(const QByteArray &body)
{
    return [body](const ReceivedRequest &) {
        return ScriptedResponse::whole(body, "502 Bad Gateway");
    };
}

ScriptedHttpServer::Script GenerateScreen::respondWithError()
{
    return respondWithText(R"({"error":{"code":"Busy","message":"稍后"}})");
}

ScriptedHttpServer::Script GenerateScreen::neverRespond()
{
    return [](const ReceivedRequest &) {
        return ScriptedResponse::silence();
    };
}

CoverInputs GenerateScreen::inputs(const QImage &face)
{
    return {.selectedSize = CoverSize::presets().constFirst(),
            .titleText = u"标题"_s,
            .sceneText = {},
            .selectedEmotion = Emotion::presets().constFirst(),
            .customEmotion = {},
            .faceImage = face,
            .styleImage = {},
            .advancedText = {}};
}

void GenerateScreen::generate(const QString &title)
{
    typeInto(titleField(), title);
    click(generateButton());
}

bool GenerateScreen::succeeds()
{
    generate();
    return QTest::qWaitFor([this] { return shows(texts::succeeded); });
}

bool GenerateScreen::fails()
{
    generate();
    return QTest::qWaitFor([this] { return shows(texts::failed); });
}

QString GenerateScreen::error() { return find<QPlainTextEdit>(texts::errorMessage)->toPlainText(); }

void GenerateScreen::pick(QAbstractButton *card, QSize size)
{
    panels.answerReference(samplePictures::writePng(home.path(u"a.png"_s), samplePictures::picture(size)));
    click(card);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

QJsonObject GenerateScreen::requestBody(qsizetype index) const
{
    return QJsonDocument::fromJson(server.requests().at(index).body).object();
}

} // namespace quilmora::test
