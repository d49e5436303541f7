#include "Report.h"

#include "platform/Console.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

struct Results {
    QJsonArray rows;
    QJsonArray figures;
    bool allMet = true;
};

Results &results()
{
    static Results all;
    return all;
}

/// Keeps a line for the report and gives its verdict.
QString verdict(const QString &what, double ours, double baseline, const QString &unit, double goal)
{
    const double ratio = ours / baseline;
    const bool met = ratio <= goal;
    results().allMet = results().allMet && met;
    results().rows.append(QJsonObject{{u"what"_s, what},
                                      {u"ours"_s, ours},
                                      {u"baseline"_s, baseline},
                                      {u"unit"_s, unit},
                                      {u"ratio"_s, ratio},
                                      {u"goal"_s, goal},
                                      {u"met"_s, met}});
    return met ? u"met"_s : u"NOT MET"_s;
}

void reportRatio(const QString &what, double ours, double baseline, double goal, const QString &unit)
{
    console::printLine(u"%1 %2 %3  %4 %3  ratio %5  goal %6  %7"_s.arg(what, -58)
                           .arg(ours, 9, 'f', 2)
                           .arg(unit)
                           .arg(baseline, 9, 'f', 2)
                           .arg(ours / baseline, 6, 'f', 3)
                           .arg(goal, 5, 'f', 3)
                           .arg(verdict(what, ours, baseline, unit, goal)));
}

} // namespace

double median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

double medianOf(int runs, const std::function<double()> &measure)
{
    std::vector<double> values(static_cast<std::size_t>(runs));
    std::generate(values.begin(), values.end(), measure);
    return median(std::move(values));
}

double millisecondsOf(const std::function<void()> &work)
{
    QElapsedTimer timer;
    timer.start();
    work();
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

double medianMilliseconds(int runs, const std::function<void()> &work)
{
    return medianOf(runs, [&] { return millisecondsOf(work); });
}

Pair medianPair(int runs, const std::function<double()> &ours, const std::function<double()> &baseline)
{
    std::vector<double> first;
    std::vector<double> second;
    for (int run = 0; run < runs; ++run) {
        first.push_back(ours());
        second.push_back(baseline());
    }
    return {median(std::move(first)), median(std::move(second))};
}

void reportHead()
{
    console::printLine(u"%1 %2  %3"_s.arg(u"measured"_s, -58).arg(u"ours"_s, 12).arg(u"baseline"_s, 12));
}

void report(const QString &what, double ours, double baseline, double goal)
{
    reportRatio(what, ours, baseline, goal, u"ms"_s);
}

void reportSize(const QString &what, double ours, double baseline, double goal)
{
    reportRatio(what, ours, baseline, goal, u"MB"_s);
}

void reportMemory(const QString &what, double mebibytes, double goal)
{
    console::printLine(u"%1 %2 MiB %3 MiB  %4"_s.arg(what, -58)
                           .arg(mebibytes, 8, 'f', 1)
                           .arg(goal, 8, 'f', 1)
                           .arg(verdict(what, mebibytes, goal, u"MiB"_s, 1.0)));
}

void reportMemory(const QString &what, double ours, double baseline, double goal)
{
    reportRatio(what, ours, baseline, goal, u"MiB"_s);
}

void reportCount(const QString &what, double ours, double most)
{
    const bool met = ours <= most;
    results().allMet = results().allMet && met;
    results().rows.append(
        QJsonObject{{u"what"_s, what}, {u"ours"_s, ours}, {u"goal"_s, most}, {u"met"_s, met}});
    console::printLine(u"%1 %2      goal %3  %4"_s.arg(what, -58)
                           .arg(ours, 9, 'f', 2)
                           .arg(most, 5, 'f', 0)
                           .arg(met ? u"met"_s : u"NOT MET"_s));
}

void reportFigures(const QString &what, const QList<Figure> &figures)
{
    QJsonObject seconds;
    QString line = u"%1"_s.arg(what, -58);
    for (const Figure &figure : figures) {
        seconds.insert(figure.way, figure.seconds);
        line += u"  %1 %2 s"_s.arg(figure.way).arg(figure.seconds, 0, 'f', 2);
    }
    results().figures.append(QJsonObject{{u"what"_s, what}, {u"seconds"_s, seconds}});
    console::printLine(line);
}

bool allGoalsMet() { return results().allMet; }

void writeReport(const QString &path)
{
    QDir{}.mkpath(QFileInfo{path}.path());
    QFile file{path};
    const QJsonObject report{
        {u"rows"_s, results().rows}, {u"figures"_s, results().figures}, {u"allGoalsMet"_s, results().allMet}};
    const QByteArray json = QJsonDocument{report}.toJson();
    if (!file.open(QIODevice::WriteOnly) || file.write(json) != json.size()) {
        qFatal("Cannot write %s", qUtf8Printable(path));
    }
}

} // namespace quilmora::bench
