#include "support/PortalSettings.h"

using namespace Qt::StringLiterals;

namespace quilmora::test
{

QDBusVariant PortalSettings::Read(const QString &group, const QString &key)
{
    ++questions;
    if (!known || group != u"org.freedesktop.appearance"_s || key != u"color-scheme"_s) {
        sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s, u"Requested setting not found"_s);
        return QDBusVariant{0U};
    }
    // Twice a variant, as portals answer.
    return QDBusVariant{QVariant::fromValue(QDBusVariant{scheme.load()})};
}

} // namespace quilmora::test
