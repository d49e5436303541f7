#include "platform/Console.h"

#include <algorithm>
#include <csignal>
#include <cstdio>

using namespace Qt::StringLiterals;

namespace quilmora::console {
namespace {

bool isLineBreak(QChar character) { return u"\n\r\v\f\u0085\u2028\u2029"_s.contains(character); }

} // namespace

void printLine(const QString &text)
{
#ifdef SIGPIPE
    // A closed pipe, such as that of a pager, must not end the program.
    [[maybe_unused]] static const auto former = std::signal(SIGPIPE, SIG_IGN);
#endif
    QString line = text;
    line.replace(u"\r\n"_s, u" "_s);
    std::replace_if(line.begin(), line.end(), isLineBreak, u' ');
    const QByteArray bytes = line.toUtf8() + '\n';
    std::fwrite(bytes.constData(), 1, static_cast<std::size_t>(bytes.size()), stdout);
    std::fflush(stdout);
}

} // namespace quilmora::console
