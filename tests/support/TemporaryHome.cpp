#include "support/TemporaryHome.h"

using namespace Qt::StringLiterals;

namespace quilmora::test
{
namespace
{

void restore(const char *variable, const QByteArray &formerValue)
{
    if (formerValue.isNull()) {
        qunsetenv(variable);
    } else {
        qputenv(variable, formerValue);
    }
}

} // namespace

TemporaryHome::TemporaryHome()
    : formerHome{qgetenv("HOME")},
      formerDataHome{qgetenv("XDG_DATA_HOME")},
      formerConfigHome{qgetenv("XDG_CONFIG_HOME")}
{
    if (!folder.isValid()) {
        qFatal("No temporary home folder");
    }
    qputenv("HOME", folder.path().toLocal8Bit());
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_CONFIG_HOME");
}

TemporaryHome::~TemporaryHome()
{
    restore("HOME", formerHome);
    restore("XDG_DATA_HOME", formerDataHome);
    restore("XDG_CONFIG_HOME", formerConfigHome);
}

QString TemporaryHome::path(const QString &inside) const
{
    return inside.isEmpty() ? folder.path() : folder.filePath(inside);
}

} // namespace quilmora::test
