#include "ClickToWireBench.h"
#include "EncoderBench.h"
#include "ResponseBench.h"
#ifdef QUILMORA_XCB
#include "FirstWindowBench.h"
#endif
#include "FormBench.h"
#include "GridBench.h"
#include "HistoryBench.h"
#include "Report.h"
#include "StartUpBench.h"
#include "StatesBench.h"
#include "TabsBench.h"
#include "platform/ChineseTranslations.h"
#include "ui/style/ControlStyle.h"
#include "ui/theme/Fonts.h"
#include "ui/theme/Theme.h"

#include <QApplication>
#include <QCommandLineParser>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdlib>
#include <functional>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::bench;

namespace {

struct Bench {
    QString name;
    std::function<void()> run;
};

QList<Bench> benches(const QTemporaryDir &folder)
{
    return {
#ifdef QUILMORA_XCB
        {u"window"_s, benchFirstWindow},
#endif
        {u"tabs"_s, benchTabs},
        {u"states"_s, benchStates},
        {u"answer"_s, benchAnswer},
        {u"history"_s, benchHistory},
        {u"grid"_s, benchGrid},
        {u"start-up"_s, benchStartUp},
        {u"picking"_s,
         [&folder] {
             benchPickingAPhoto(folder);
         }},
        {u"painting"_s,
         [&folder] {
             benchPaintingTheForm(folder);
         }},
        {u"idle"_s, benchIdle},
        {u"click"_s,
         [&folder] {
             benchLoadingBeforeEncoding(folder);
         }},
        {u"encoder"_s, benchEncoder},
        {u"click-to-wire"_s, benchClickToWire},
    };
}

QString namesOf(const QList<Bench> &all)
{
    QStringList names;
    for (const Bench &bench : all) {
        names.append(bench.name);
    }
    return names.join(u' ');
}

} // namespace

int main(int argc, char *argv[])
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication application{argc, argv};
    const QTemporaryDir folder;
    const QList<Bench> all = benches(folder);
    const QCommandLineOption json{u"json"_s, u"Writes the results to <file>, too."_s, u"file"_s};
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOption(json);
    parser.addPositionalArgument(u"name"_s, u"What to measure, all if nothing is named: "_s + namesOf(all),
                                 u"[name...]"_s);
    parser.process(application);
    const QStringList wanted = parser.positionalArguments();
    for (const QString &name : wanted) {
        if (std::none_of(all.begin(), all.end(),
                         [&name](const Bench &bench) { return bench.name == name; })) {
            qFatal("There is no %s; there are: %s", qUtf8Printable(name), qUtf8Printable(namesOf(all)));
        }
    }

    installChineseTranslations(application);
    QApplication::setStyle(new ControlStyle);
    installApplicationFont();
    Theme::current();
    reportHead();
    for (const Bench &bench : all) {
        if (wanted.isEmpty() || wanted.contains(bench.name)) {
            bench.run();
        }
    }
    if (parser.isSet(json)) {
        writeReport(parser.value(json));
    }
    return allGoalsMet() ? EXIT_SUCCESS : EXIT_FAILURE;
}
