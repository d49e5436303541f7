#pragma once

#include "store/DatabaseManager.h"
#include "support/ChildProcess.h"
#include "support/DatabaseFile.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QObject>

#include <optional>
#include <sys/stat.h>

namespace quilmora::test
{

using namespace Qt::StringLiterals;

/// A database file and a folder of covers in a home of their own, all new for each test.
class StoreFixture : public QObject
{
    Q_OBJECT

protected:
    using Rows = QList<databaseFile::Row>;

    QString folder() const { return home->path(u"data"_s); }
    QString file() const { return folder() + u"/quilmora.db"_s; }
    QString covers() const { return home->path(u"Pictures/Quilmora/coverimg"_s); }

    /// Runs the statements on the database file, past the store.
    Rows sql(const QByteArray &statements) const
    {
        QDir{}.mkpath(folder());
        return databaseFile::run(file(), statements);
    }

    /// All rows of the history, by id, past the store.
    Rows history() const
    {
        return sql("SELECT id, prompt, image_path, created_at, model_id FROM history ORDER BY id");
    }

    /// The paths in the history, by text, past the store.
    QByteArrayList paths() const
    {
        QByteArrayList found;
        for (const databaseFile::Row &row : sql("SELECT image_path FROM history ORDER BY image_path")) {
            found.append(row.constFirst());
        }
        return found;
    }

    /// Everything in the database file.
    Rows everything() const
    {
        return sql("SELECT * FROM volc_config; SELECT * FROM history; SELECT * FROM sqlite_master;"
                   "SELECT * FROM sqlite_sequence; PRAGMA schema_version");
    }

    /// Puts a file of that name into the folder of covers and gives its path.
    QString addCover(const QString &name) const
    {
        return samplePictures::write(covers() + u'/' + name, "not looked into");
    }

    /// The form in which the history names a cover.
    static QByteArray stored(const QByteArray &name) { return "~/Pictures/Quilmora/coverimg/" + name; }

    /// Starts the store once and gives what it printed.
    QByteArray start() const
    {
        return standardOutputOf([this] { const DatabaseManager database{folder(), covers()}; });
    }

    /// The same without the administrator's rights, in a copy of the process.
    childProcess::Outcome startAsOrdinaryUser() const
    {
        return childProcess::run([this] {
            childProcess::becomeOrdinaryUser();
            const DatabaseManager database{folder(), covers()};
        });
    }

    /// Sets who may do what with the file or folder at `path`.
    static void setMode(const QString &path, mode_t mode)
    {
        if (chmod(QFile::encodeName(path).constData(), mode) != 0) {
            qFatal("Cannot set the mode of a file");
        }
    }

    std::optional<TemporaryHome> home;

private Q_SLOTS:
    void init()
    {
        home.emplace();
        setMode(home->path(), 0755);
    }

    void cleanup() { home.reset(); }
};

} // namespace quilmora::test
