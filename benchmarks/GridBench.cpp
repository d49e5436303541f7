#include "GridBench.h"

#include "BenchHistory.h"
#include "BenchWindow.h"
#include "Report.h"
#include "imaging/PngReader.h"
#include "platform/Console.h"
#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryListView.h"
#include "screens/history/ThumbnailCache.h"

#include <QAbstractEventDispatcher>
#include <QApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QScrollBar>
#include <QTest>

#include <algorithm>
#include <memory>
#include <vector>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

constexpr QSize windowSize{1600, 1000};
constexpr int screenful = 16;
constexpr int runs = 9;
constexpr double frame = 16; // Milliseconds.

double milliseconds(const QElapsedTimer &timer) { return static_cast<double>(timer.nsecsElapsed()) / 1e6; }

/// How long the turns of the main loop take. Those in which nothing happens do not count.
class Turns final
{
public:
    /// Takes turns until `end` says so.
    template <typename End>
    void takeUntil(End end)
    {
        constexpr double idle = 0.1;
        constexpr qint64 patience = 60'000;
        QElapsedTimer whole;
        whole.start();
        while (!end()) {
            QElapsedTimer timer;
            timer.start();
            QAbstractEventDispatcher::instance()->processEvents(QEventLoop::AllEvents);
            if (milliseconds(timer) > idle) {
                m_times.push_back(milliseconds(timer));
            }
            if (whole.elapsed() > patience) {
                qFatal("The pictures do not come");
            }
        }
    }

    void takeFor(int time)
    {
        QElapsedTimer timer;
        timer.start();
        takeUntil([&] { return timer.elapsed() >= time; });
    }

    double longest() const { return *std::max_element(m_times.begin(), m_times.end()); }

    /// The time that all but one of a hundred turns keep to.
    double nearlyAll() const
    {
        std::vector<double> sorted = m_times;
        std::sort(sorted.begin(), sorted.end());
        return sorted[(sorted.size() - 1) * 99 / 100];
    }

    void add(const Turns &others)
    {
        m_times.insert(m_times.end(), others.m_times.begin(), others.m_times.end());
    }

private:
    std::vector<double> m_times;
};

/// The history screen in a window that has been open before.
class Visit final
{
public:
    Visit(BenchHistory &history, ThumbnailCache &thumbnails)
    {
        m_window.resize(windowSize);
        m_window.show();
        if (!QTest::qWaitForWindowExposed(&m_window)) {
            qFatal("The window does not appear");
        }
        m_window.repaint();
        m_view = new HistoryListView{history.database, m_panels, thumbnails, &m_window};
        m_view->resize(windowSize);
        // Reads the history; the first drawing comes with the next turns.
        m_view->show();
    }

    HistoryGrid &grid() { return *m_view->findChild<HistoryGrid *>(); }

private:
    OneFileDialogs m_panels;
    QWidget m_window;
    HistoryListView *m_view = nullptr;
};

void reportTurns(const QString &what, double medianOfLongest, const Turns &all)
{
    report(what + u", the longest turn"_s, medianOfLongest, frame, 1.0);
    const auto tell = [&](const QString &which, double time) {
        console::printLine(u"%1 %2 ms"_s.arg(what + which, -58).arg(time, 9, 'f', 2));
    };
    tell(u", 99 of 100 turns"_s, all.nearlyAll());
    tell(u", the longest of all runs"_s, all.longest());
}

void benchFilling(BenchHistory &history)
{
    Turns all;
    const double longest = medianOf(runs, [&] {
        ThumbnailCache thumbnails;
        Visit visit{history, thumbnails};
        Turns turns;
        turns.takeUntil([&] { return visit.grid().isFilled(); });
        all.add(turns);
        return turns.longest();
    });
    reportTurns(u"filling the grid"_s, longest, all);
}

void benchScrolling(BenchHistory &history)
{
    constexpr int steps = 100;
    constexpr int stepTime = 10;
    constexpr int rest = 300;
    Turns all;
    const double longest = medianOf(runs, [&] {
        ThumbnailCache thumbnails;
        Visit visit{history, thumbnails};
        Turns turns;
        turns.takeUntil([&] { return visit.grid().isFilled(); });
        QScrollBar *bar = visit.grid().verticalScrollBar();
        // By the wheel, by the page and by the handle; after each the tiles begin to fill.
        for (const int step : {120, bar->pageStep(), bar->maximum() / steps}) {
            for (int i = 0; i < steps; ++i) {
                bar->setValue(bar->value() + step);
                turns.takeFor(stepTime);
            }
            turns.takeFor(rest);
            bar->setValue(0);
        }
        all.add(turns);
        return turns.longest();
    });
    reportTurns(u"scrolling through 10,000 covers"_s, longest, all);
}

double rowsTime(const BenchHistory &history)
{
    return medianMilliseconds(runs, [&] {
        for (int number = 0; number < screenful; ++number) {
            QFile file{history.coverFile(number)};
            PngReader rows{file};
            if (!file.open(QIODevice::ReadOnly) || !rows.open()) {
                qFatal("Cannot read a cover");
            }
            std::vector<uchar> row(static_cast<std::size_t>(rows.bytesPerRow()));
            for (int y = 0; y < rows.size().height(); ++y) {
                rows.read(row.data());
            }
            rows.finish();
        }
    });
}

/// From the first drawing of the grid to all its pictures.
double fillingTime(BenchHistory &history, ThumbnailCache &thumbnails)
{
    Visit visit{history, thumbnails};
    QElapsedTimer timer;
    timer.start();
    Turns turns;
    turns.takeUntil([&] { return visit.grid().isFilled(); });
    return milliseconds(timer);
}

} // namespace

void benchGrid()
{
    constexpr int many = 10'000;
    BenchHistory sixteen{screenful};
    BenchHistory tenThousand{many};
    benchFilling(tenThousand);
    benchScrolling(tenThousand);
    const double filling = medianOf(runs, [&] {
        ThumbnailCache thumbnails;
        return fillingTime(sixteen, thumbnails);
    });
    report(u"filling sixteen tiles, against reading their rows"_s, filling, rowsTime(sixteen), 1.2);
    ThumbnailCache thumbnails;
    fillingTime(sixteen, thumbnails);
    constexpr double allowed = 5;
    report(u"a screenful on the second visit"_s,
           medianOf(runs, [&] { return fillingTime(sixteen, thumbnails); }), allowed, 1.0);
}

} // namespace quilmora::bench
