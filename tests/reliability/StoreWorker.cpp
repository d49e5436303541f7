#include "generation/CoverGenerationFlow.h"
#include "generation/ImageGeneratorService.h"
#include "model/CoverInputs.h"
#include "platform/Console.h"
#include "reliability/PixelDigest.h"
#include "reliability/WorkedSettings.h"
#include "store/DatabaseManager.h"
#include "store/ImageStorageService.h"

#include <QCoreApplication>

#include <cstdio>
#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

/// The smallest picture that the service makes.
constexpr qint64 width = 1280;
constexpr qint64 height = 720;

/// Saves settings and makes a cover, over and over, with the application's own services, and prints, a line
/// each, what a user would have seen:
///   "started"              the store is open
///   "saving N", "saved N"  the settings with that number
///   "shown TITLE DIGEST"   the success of that cover, with the digest of its picture
///   "failed TEXT"
class StoreWorker final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(StoreWorker)

public:
    /// `name` begins the titles; `count` covers are made, of the service at `endpoint`.
    StoreWorker(QString name, int count, QString endpoint)
        : m_name{std::move(name)},
          m_count{count},
          m_endpoint{std::move(endpoint)}
    {
    }
    ~StoreWorker() override = default;

    /// Opens the store as the application does.
    void start()
    {
        m_flow = CoverGenerationFlow::create(DatabaseManager::shared(), ImageStorageService::shared(),
                                             ImageGeneratorService::shared());
        connect(m_flow.get(), &CoverGenerationFlow::generationStateChanged, this, &StoreWorker::printOutcome);
        console::printLine(u"started"_s);
    }

    /// Makes the next cover, if there is one.
    void makeNext()
    {
        if (m_number == m_count) {
            Q_EMIT finished();
            return;
        }
        ++m_number;
        saveSettings();
        CoverInputs inputs{};
        inputs.selectedSize = CoverSize::presets().constFirst();
        inputs.selectedSize.width = width;
        inputs.selectedSize.height = height;
        inputs.titleText = title();
        inputs.selectedEmotion = Emotion::presets().constFirst();
        m_flow->startGeneration(inputs);
    }

Q_SIGNALS:
    void finished();

private:
    QString title() const { return m_name + u'-' + QString::number(m_number); }

    void saveSettings() const
    {
        console::printLine(u"saving %1"_s.arg(m_number));
        const VolcengineConfig settings = workedSettings(m_endpoint, m_number);
        DatabaseManager::shared().saveConfig(settings.apiURL, settings.apiKey, settings.modelID);
        console::printLine(u"saved %1"_s.arg(m_number));
    }

    void printOutcome()
    {
        if (const auto *success = std::get_if<generationState::Success>(&m_flow->generationState())) {
            console::printLine(u"shown "_s + title() + u' ' + pixelDigest(success->image));
        } else if (const auto *failure = std::get_if<generationState::Failure>(&m_flow->generationState())) {
            console::printLine(u"failed "_s + failure->message);
        } else {
            return;
        }
        QMetaObject::invokeMethod(this, &StoreWorker::makeNext, Qt::QueuedConnection);
    }

    const QString m_name;
    const int m_count;
    const QString m_endpoint;
    int m_number = 0;
    std::shared_ptr<CoverGenerationFlow> m_flow;
};

} // namespace
} // namespace quilmora::test

/// quilmora-store-worker NAME COUNT ENDPOINT: opens the store of the user whose home it finds, waits for a
/// line on standard input, makes that many covers, and ends.
int main(int argc, char *argv[])
{
    const QCoreApplication application{argc, argv};
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 4) {
        return 2;
    }
    quilmora::test::StoreWorker maker{arguments.at(1), arguments.at(2).toInt(), arguments.at(3)};
    // Queued: finishing before the loop runs would have no effect.
    QObject::connect(&maker, &quilmora::test::StoreWorker::finished, &application, &QCoreApplication::quit,
                     Qt::QueuedConnection);
    maker.start();
    std::getchar();
    maker.makeNext();
    return QCoreApplication::exec();
}

#include "StoreWorker.moc"
