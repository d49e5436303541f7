#include "platform/Console.h"

#include <cstdio>

namespace quilmora::console
{

void printLine(const QString &text)
{
    QByteArray line = text.toUtf8();
    line.replace("\r\n", " ").replace('\n', ' ').replace('\r', ' ').append('\n');
    std::fwrite(line.constData(), 1, static_cast<std::size_t>(line.size()), stdout);
    std::fflush(stdout);
}

} // namespace quilmora::console
