#include "HistoryBench.h"

#include "BenchHistory.h"
#include "BenchWindow.h"
#include "Report.h"
#include "ResidentMemory.h"
#include "app/MainView.h"
#include "app/TopNavigationBar.h"
#include "imaging/ImageCodec.h"
#include "screens/history/HistoryGrid.h"
#include "screens/history/HistoryListView.h"
#include "screens/history/ImagePreviewView.h"
#include "screens/history/ThumbnailCache.h"
#include "screens/settings/SettingsView.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QScrollBar>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace quilmora::bench {
namespace {

constexpr QSize windowSize{1000, 700};
// Enough to outlast the moments when a neighbour of a virtual machine fills the caches.
constexpr int runs = 31;

/// Tells how long it takes until a widget of a class is painted for the first time.
template <typename Widget>
class FirstPaint final : public QObject
{
public:
    FirstPaint()
    {
        qApp->installEventFilter(this);
        m_timer.start();
    }

    double wait()
    {
        if (!QTest::qWaitFor([this] { return m_milliseconds >= 0; })) {
            qFatal("Nothing was painted");
        }
        return m_milliseconds;
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        const auto *widget = event->type() == QEvent::Paint ? qobject_cast<QWidget *>(watched) : nullptr;
        if (widget == nullptr || m_milliseconds >= 0 || m_isInside) {
            return false;
        }
        if (qobject_cast<const Widget *>(widget) != nullptr ||
            qobject_cast<const Widget *>(widget->parentWidget()) != nullptr) {
            // Painted here, so that the time ends with the painting and not with its start.
            m_isInside = true;
            QCoreApplication::sendEvent(watched, event);
            m_isInside = false;
            m_milliseconds = static_cast<double>(m_timer.nsecsElapsed()) / 1e6;
            return true;
        }
        return false;
    }

private:
    QElapsedTimer m_timer;
    double m_milliseconds = -1;
    bool m_isInside = false;
};

/// The window after a click on the tab of the history. The tab that was left is the settings.
class Screen final
{
public:
    explicit Screen(BenchHistory &history)
        : m_window{[&](NavigationTab tab, QWidget *parent) -> QWidget * {
              if (tab == NavigationTab::history) {
                  return new HistoryListView{history.database, m_panels, m_thumbnails, parent};
              }
              return new SettingsView{history.database, parent};
          }}
    {
        m_window.resize(windowSize);
        m_window.show();
        if (!QTest::qWaitForWindowActive(&m_window)) {
            qFatal("The window does not appear");
        }
        const auto buttons = m_window.findChildren<NavTabButton *>();
        FirstPaint<HistoryGrid> paint;
        buttons.at(1)->click();
        milliseconds = paint.wait();
    }

    HistoryGrid &grid() { return *m_window.findChild<HistoryGrid *>(); }

    void fill()
    {
        if (!QTest::qWaitFor([this] { return grid().isFilled(); }, 60000)) {
            qFatal("The pictures do not come");
        }
    }

    double milliseconds = 0;

private:
    OneFileDialogs m_panels;
    ThumbnailCache m_thumbnails;
    MainView m_window;
};

double openingTime(BenchHistory &history) { return Screen{history}.milliseconds; }

double peakMemory(BenchHistory &history)
{
    residentMemory::resetPeak();
    Screen screen{history};
    screen.fill();
    // Through the list from its start to its end.
    constexpr int stops = 20;
    QScrollBar *bar = screen.grid().verticalScrollBar();
    for (int stop = 1; stop <= stops; ++stop) {
        bar->setValue(bar->maximum() * stop / stops);
        screen.grid().viewport()->repaint();
        screen.fill();
    }
    return residentMemory::peak();
}

double previewTime(BenchHistory &history)
{
    Screen screen{history};
    screen.fill();
    HistoryGrid &grid = screen.grid();
    FirstPaint<ImagePreviewView> paint;
    QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                      grid.visualRect(grid.model()->index(0, 0)).center());
    return paint.wait();
}

double decodingTime(const QString &path)
{
    QElapsedTimer timer;
    timer.start();
    imageCodec::decodeFile(path);
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

} // namespace

void benchHistory()
{
    constexpr int many = 10'000;
    BenchHistory ten{10};
    BenchHistory tenThousand{many};
    // The first one after the start also loads fonts and symbols.
    openingTime(ten);
    const Pair opening = medianPair(
        runs, [&] { return openingTime(tenThousand); }, [&] { return openingTime(ten); });
    report(u"history with 10,000 covers to its first paint, against 10"_s, opening.ours, opening.baseline,
           2.0);
    const Pair preview = medianPair(
        runs, [&] { return previewTime(ten); }, [&] { return decodingTime(ten.coverFile(0)); });
    constexpr double allowed = 20;
    report(u"click to painted preview, its time beside decoding"_s, preview.ours - preview.baseline, allowed,
           1.0);
    const double peakOfTen = peakMemory(ten);
    constexpr double allowedMebibytes = 60;
    reportMemory(u"history with 10,000 covers, its peak above that with 10"_s,
                 peakMemory(tenThousand) - peakOfTen, allowedMebibytes);
}

} // namespace quilmora::bench
