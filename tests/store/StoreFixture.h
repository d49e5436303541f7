#pragma once

#include "store/DatabaseManager.h"
#include "support/ChildProcess.h"
#include "support/DatabaseFile.h"
#include "support/FailureNote.h"
#include "support/SamplePictures.h"
#include "support/StandardOutput.h"
#include "support/TemporaryHome.h"

#include <QDir>
#include <QFile>
#include <QObject>

#include <algorithm>
#include <functional>
#include <optional>
#include <sys/stat.h>

namespace quilmora::test {

using namespace Qt::StringLiterals;

/// Puts something at a path.
using Make = std::function<void(const QString &path)>;

inline void makeNothing(const QString & /*path*/) {}

inline void makeFolder(const QString &path) { QDir{}.mkpath(path); }

inline void makePipe(const QString &path)
{
    if (mkfifo(QFile::encodeName(path).constData(), 0600) != 0) {
        qFatal("Cannot make a pipe");
    }
}

inline Make linkTo(const QString &target)
{
    return [target](const QString &path) {
        QFile::link(target, path);
    };
}

inline Make fileOf(const QByteArray &bytes)
{
    return [bytes](const QString &path) {
        samplePictures::write(path, bytes);
    };
}

/// A database file and a folder of covers in a home of their own, all new for each test.
class StoreFixture : public QObject
{
    Q_OBJECT

protected:
    using Rows = QList<databaseFile::Row>;

    QString folder() const { return m_home->path(u"应用 'data'/Quilmora"_s); }
    QString file() const { return folder() + u"/quilmora.db"_s; }
    QString covers() const { return m_home->path(u"Pictures/Quilmora/coverimg"_s); }

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

    /// What the store prints when its file cannot be opened.
    QByteArray cannotOpen() const { return "无法打开数据库: " + file().toUtf8() + '\n'; }

    /// How many errors of SQLite the store has printed; -1 when another line is among them.
    static qsizetype errorCount(const QByteArray &output)
    {
        const QByteArrayList lines = output.split('\n');
        const bool areErrors = std::all_of(lines.begin(), lines.end() - 1, [](const QByteArray &line) {
            return line.startsWith("SQL 错误: ");
        });
        return areErrors && lines.constLast().isEmpty() ? lines.size() - 1 : -1;
    }

    /// Opens the store, which stays open until the test ends or reopens it.
    void open()
    {
        m_database.reset();
        m_database.emplace(folder(), covers());
    }

    /// Starts the store once and gives what it printed.
    QByteArray start() const
    {
        return standardOutputOf([this] { const DatabaseManager database{folder(), covers()}; });
    }

    /// The same in a copy of the process, which is ended when it hangs.
    childProcess::Outcome startInChild() const
    {
        return childProcess::run([this] { const DatabaseManager database{folder(), covers()}; });
    }

    /// The same without the administrator's rights.
    childProcess::Outcome startAsOrdinaryUser() const
    {
        return childProcess::run([this] {
            childProcess::becomeOrdinaryUser();
            const DatabaseManager database{folder(), covers()};
        });
    }

    /// Sets the permission bits of the file or folder at `path`.
    static void setMode(const QString &path, mode_t mode)
    {
        if (chmod(QFile::encodeName(path).constData(), mode) != 0) {
            qFatal("Cannot set the mode of a file");
        }
    }

    /// The permission bits of the file or folder at `path`, as an octal text; "0" if there is none.
    static QString modeOf(const QString &path)
    {
        struct stat status {
        };
        stat(QFile::encodeName(path).constData(), &status);
        return QString::number(status.st_mode & 0777U, 8);
    }

    std::optional<TemporaryHome> m_home;
    std::optional<DatabaseManager> m_database;

protected Q_SLOTS:
    void init()
    {
        m_home.emplace();
        setMode(m_home->path(), 0755);
    }

    void cleanup()
    {
        m_database.reset();
        m_home.reset();
    }
};

} // namespace quilmora::test
