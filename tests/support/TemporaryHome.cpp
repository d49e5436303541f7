#include "support/TemporaryHome.h"

using namespace Qt::StringLiterals;

namespace quilmora::test {
namespace {

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
    : m_formerHome{qgetenv("HOME")},
      m_formerDataHome{qgetenv("XDG_DATA_HOME")},
      m_formerConfigHome{qgetenv("XDG_CONFIG_HOME")}
{
    if (!m_folder.isValid()) {
        qFatal("No temporary home folder");
    }
    qputenv("HOME", m_folder.path().toLocal8Bit());
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_CONFIG_HOME");
}

TemporaryHome::~TemporaryHome()
{
    restore("HOME", m_formerHome);
    restore("XDG_DATA_HOME", m_formerDataHome);
    restore("XDG_CONFIG_HOME", m_formerConfigHome);
}

QString TemporaryHome::path(const QString &inside) const
{
    return inside.isEmpty() ? m_folder.path() : m_folder.filePath(inside);
}

} // namespace quilmora::test
