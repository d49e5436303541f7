#include "screens/common/ProgressSpinner.h"

#include "support/ScreenCapture.h"
#include "support/ScreenTest.h"

#include <QAbstractEventDispatcher>
#include <QVBoxLayout>

#include <memory>

using namespace Qt::StringLiterals;
using namespace quilmora;
using namespace quilmora::test;

class ProgressSpinnerTest final : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void itTurnsWhileItIsShown();
    void itsTimerRunsOnlyWhileItIsShown();
    void itsTimerStopsWithTheWindow();

private:
    bool timerRuns() const
    {
        return !QAbstractEventDispatcher::instance()->registeredTimers(spinner).isEmpty();
    }

    std::unique_ptr<QWidget> window;
    ProgressSpinner *spinner = nullptr;
};

void ProgressSpinnerTest::init()
{
    window = std::make_unique<QWidget>();
    spinner = new ProgressSpinner{32, u"忙"_s, window.get()};
    auto *column = new QVBoxLayout{window.get()};
    column->addWidget(spinner);
    QVERIFY(!timerRuns());
    showWindow(*window, {200, 200});
}

void ProgressSpinnerTest::itTurnsWhileItIsShown()
{
    const QImage first = screenCapture::capture(spinner);
    QTRY_VERIFY(screenCapture::capture(spinner) != first);
    QCOMPARE(spinner->size(), QSize(32, 32));
}

void ProgressSpinnerTest::itsTimerRunsOnlyWhileItIsShown()
{
    QVERIFY(timerRuns());
    spinner->hide();
    QVERIFY(!timerRuns());
    spinner->show();
    QVERIFY(timerRuns());
}

void ProgressSpinnerTest::itsTimerStopsWithTheWindow()
{
    window->hide();
    QVERIFY(!timerRuns());
    window->show();
    QVERIFY(timerRuns());
}

int main(int argc, char *argv[])
{
    return runScreenTest<ProgressSpinnerTest>(argc, argv);
}

#include "ProgressSpinnerTest.moc"
