#include "local_service/http/ServiceCounters.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace quilmora
{

ServiceCounters::Visit::Visit(ServiceCounters &counters) : m_counters{counters}
{
    ++m_counters.m_requests;
    const int now = ++m_counters.m_underWay;
    int most = m_counters.m_mostAtOnce;
    while (now > most && !m_counters.m_mostAtOnce.compare_exchange_weak(most, now)) {
    }
}

ServiceCounters::Visit::~Visit()
{
    --m_counters.m_underWay;
}

QByteArray ServiceCounters::toJson() const
{
    const QJsonObject counts{{u"requests"_s, requests()},
                             {u"answered"_s, answered()},
                             {u"under_way"_s, underWay()},
                             {u"most_at_once"_s, mostAtOnce()}};
    return QJsonDocument{counts}.toJson(QJsonDocument::Compact);
}

} // namespace quilmora
