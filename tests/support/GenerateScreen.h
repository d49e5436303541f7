#pragma once

#include "generation/CoverGenerationFlow.h"
#include "generation/ImageGeneratorService.h"
#include "model/CoverInputs.h"
#include "screens/generate/GenerateCoverView.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFileDialogs.h"
#include "support/ScriptedHttpServer.h"
#include "support/Texts.h"

#include <QAbstractButton>
#include <QJsonObject>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <memory>

namespace quilmora::test {

/// The generate screen in a window, with everything behind it: a server that answers as the test says, and a
/// database and covers in a home folder of its own.
class GenerateScreen final
{
public:
    /// With a server that answers every request with a small picture.
    GenerateScreen();
    explicit GenerateScreen(ScriptedHttpServer::Script script, ImageGeneratorService::IdleLimits limits = {});
    Q_DISABLE_COPY_MOVE(GenerateScreen)
    ~GenerateScreen() = default;

    /// A script that answers every request with a picture of that size after that time.
    static ScriptedHttpServer::Script
    respondWithPicture(QSize size = {64, 36}, std::chrono::milliseconds delay = std::chrono::milliseconds{0});
    /// The body of a response with that picture.
    static QByteArray bodyWith(const QByteArray &picture);
    static ScriptedHttpServer::Script respondWithText(const QByteArray &body);
    /// Of an error with the text "[Busy] 稍后".
    static ScriptedHttpServer::Script respondWithError();
    static ScriptedHttpServer::Script neverRespond();

    /// The visible piece of that accessible name and class; null when it is not there.
    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return accessible::find<Widget>(&window, name);
    }
    /// Whether something of that name is visible.
    bool shows(const QString &name) { return find(name) != nullptr; }

    QLineEdit *titleField() { return find<QLineEdit>(texts::title); }
    QLineEdit *sceneField() { return find<QLineEdit>(texts::scene); }
    QLineEdit *customExpression() { return find<QLineEdit>(texts::customExpression); }
    QAbstractButton *generateButton() { return find<QAbstractButton>(texts::start); }
    QPlainTextEdit *advancedEditor() { return find<QPlainTextEdit>(texts::instructions); }
    QAbstractButton *facePhoto() { return find<QAbstractButton>(texts::facePhoto); }
    QAbstractButton *stylePicture() { return find<QAbstractButton>(texts::stylePicture); }

    /// Clicks an upload card and picks a picture of that size.
    void pick(QAbstractButton *card, QSize size);

    /// What a form with a title and nothing else but perhaps a photo holds.
    static CoverInputs inputs(const QImage &face = {});

    /// Types a title and presses the button.
    void generate(const QString &title = QStringLiteral("标题"));
    /// The same, and waits for a cover or for an error; false when it does not come.
    bool succeeds();
    bool fails();
    /// The text of the error.
    QString error();
    void goBack() { click(find(texts::back)); }

    /// Destroys the screen, as selecting another tab does.
    void leave() { view.reset(); }

    /// The body of the request with that number, as JSON.
    QJsonObject requestBody(qsizetype index = 0) const;
    QString sentPrompt() const { return requestBody().value(QStringLiteral("prompt")).toString(); }

    TemporaryHome home;
    ScriptedHttpServer server;
    DatabaseManager database;
    ImageStorageService storage;
    ImageGeneratorService generator;
    ScriptedFileDialogs panels;
    std::shared_ptr<CoverGenerationFlow> flow;
    QWidget window;
    std::unique_ptr<GenerateCoverView> view;
};

} // namespace quilmora::test
