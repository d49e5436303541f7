#pragma once

#include "generation/CoverGenerationFlow.h"
#include "generation/ImageGeneratorService.h"
#include "screens/generate/GenerateCoverView.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"
#include "support/AccessibleFinder.h"
#include "support/ScreenTest.h"
#include "support/ScriptedFilePanels.h"
#include "support/ScriptedHttpServer.h"

#include <QAbstractButton>
#include <QJsonObject>
#include <QLineEdit>

#include <memory>

namespace quilmora::test
{

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
    answerWithPicture(QSize size = {64, 36}, std::chrono::milliseconds delay = std::chrono::milliseconds{0});
    static ScriptedHttpServer::Script answerWithText(const QByteArray &body);

    /// The visible piece of that accessible name and class; null when it is not there.
    template <typename Widget = QWidget>
    Widget *find(const QString &name)
    {
        return accessible::find<Widget>(&window, name);
    }
    /// Whether something of that name is visible.
    bool shows(const QString &name) { return find(name) != nullptr; }

    QLineEdit *titleField();
    QAbstractButton *generateButton();
    QWidget *advancedEditor();

    /// Types a title and presses the button.
    void generate(const QString &title);

    /// Destroys the screen, as selecting another tab does.
    void leave() { view.reset(); }

    /// The body of the request with that number, as JSON.
    QJsonObject requestBody(qsizetype index = 0) const;

    TemporaryHome home;
    ScriptedHttpServer server;
    DatabaseManager database;
    ImageStorageService storage;
    ImageGeneratorService generator;
    ScriptedFilePanels panels;
    std::shared_ptr<CoverGenerationFlow> flow;
    QWidget window;
    std::unique_ptr<GenerateCoverView> view;
};

} // namespace quilmora::test
