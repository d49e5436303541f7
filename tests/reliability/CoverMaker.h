#pragma once

#include "generation/CoverGenerationFlow.h"

#include <QObject>
#include <QString>

#include <memory>

namespace quilmora::test
{

/// Saves settings and makes a cover, over and over, with the application's own services, and says on standard
/// output, a line each, what a user would have seen:
///   "started"              the store is open
///   "saving N", "saved N"  the settings with that number
///   "shown TITLE DIGEST"   the success of that cover, with the digest of its picture
///   "failed TEXT"
class CoverMaker final : public QObject
{
    Q_OBJECT
    Q_DISABLE_COPY_MOVE(CoverMaker)

public:
    /// `name` begins the titles; `count` covers are made, of the service at `endpoint`.
    CoverMaker(QString name, int count, QString endpoint);
    ~CoverMaker() override = default;

    /// Opens the store as the application does.
    void start();

    /// Makes the next cover, if there is one.
    void makeNext();

Q_SIGNALS:
    void finished();

private:
    QString title() const { return name + u'-' + QString::number(number); }
    void saveSettings() const;
    void tellOutcome();

    const QString name;
    const int count;
    const QString endpoint;
    int number = 0;
    std::shared_ptr<CoverGenerationFlow> flow;
};

} // namespace quilmora::test
