#include "platform/Console.h"

#include "support/ChildProcess.h"
#include "support/StandardOutput.h"
#include "support/TestProgram.h"

#include <array>
#include <cstdio>
#include <unistd.h>

using namespace quilmora;
using namespace quilmora::test;

class ConsoleTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aLineIsWrittenInUtf8()
    {
        const QByteArray output =
            standardOutputOf([] { console::printLine(u"保存图片失败: 'quoted' \"%s %n\" 😀"_s); });
        QCOMPARE(output, QByteArray{"保存图片失败: 'quoted' \"%s %n\" 😀\n"});
    }

    void lineBreaksInsideBecomeBlanks_data()
    {
        const DataRows<QString, QByteArray> row{"text", "line"};
        row("line feed", u"a\nb"_s, "a b\n");
        row("carriage return", u"a\rb"_s, "a b\n");
        row("both, as one", u"a\r\nb"_s, "a b\n");
        row("two", u"a\n\nb"_s, "a  b\n");
        row("at the ends", u"\na\n"_s, " a \n");
        row("vertical tab and form feed", u"a\vb\fc"_s, "a b c\n");
        row("next line", u"a\u0085b"_s, "a b\n");
        row("separators", u"a\u2028b\u2029c"_s, "a b c\n");
        row("nothing", {}, "\n");
        row("tab and blanks stay", u"\ta  b "_s, "\ta  b \n");
    }

    void lineBreaksInsideBecomeBlanks()
    {
        QFETCH(const QString, text);
        QFETCH(const QByteArray, line);
        QCOMPARE(standardOutputOf([&text] { console::printLine(text); }), line);
    }

    void aLineIsOutAtOnce()
    {
        // The copy ends without the usual clearing up, so an unflushed line would be lost.
        const auto outcome = childProcess::run([] {
            console::printLine(u"今天"_s);
            _exit(7);
        });
        QCOMPARE(outcome.exitCode, 7);
        QCOMPARE(outcome.standardOutput, QByteArray{"今天\n"});
    }

    void aLongLineComesWhole()
    {
        const QString text(1000000, u'长');
        const QByteArray output = standardOutputOf([&text] { console::printLine(text); });
        QCOMPARE(output.size(), qsizetype{3000001});
        QVERIFY(output == text.toUtf8() + '\n');
    }

    void aReaderThatHasGoneIsIgnored()
    {
        const auto outcome = childProcess::run([] {
            std::array<int, 2> ends{};
            if (pipe(ends.data()) != 0 || dup2(ends[1], STDOUT_FILENO) < 0 || close(ends[0]) != 0) {
                _exit(1);
            }
            console::printLine(u"nobody reads this"_s);
            console::printLine(u"nor this"_s);
        });
        QCOMPARE(outcome.exitCode, 0);
    }

    void aFullDiskIsIgnored()
    {
        if (access("/dev/full", W_OK) != 0) {
            QSKIP("This system has no device that is always full");
        }
        const auto outcome = childProcess::run([] {
            if (std::freopen("/dev/full", "w", stdout) == nullptr) {
                _exit(1);
            }
            console::printLine(u"lost"_s);
            console::printLine(u"lost"_s);
        });
        QCOMPARE(outcome.exitCode, 0);
    }
};

QUILMORA_TEST(ConsoleTest, runCoreTest)
#include "ConsoleTest.moc"
