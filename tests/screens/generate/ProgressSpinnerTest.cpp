#include "screens/generate/ProgressSpinner.h"

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
    void init()
    {
        m_window = std::make_unique<QWidget>();
        m_spinner = new ProgressSpinner{32, u"忙"_s, m_window.get()};
        auto *column = new QVBoxLayout{m_window.get()};
        column->addWidget(m_spinner);
        QVERIFY(!timerRuns());
        showWindow(*m_window, {200, 200});
    }

    void itTurnsWhileItIsShown()
    {
        const QImage first = screenCapture::capture(m_spinner);
        QTRY_VERIFY(screenCapture::capture(m_spinner) != first);
        QCOMPARE(m_spinner->size(), QSize(32, 32));
    }

    void itsTimerRunsOnlyWhileItIsShown()
    {
        for (QWidget *hidden : {static_cast<QWidget *>(m_spinner), m_window.get()}) {
            QVERIFY(timerRuns());
            hidden->hide();
            QVERIFY(!timerRuns());
            hidden->show();
        }
        QVERIFY(timerRuns());
    }

private:
    bool timerRuns() const
    {
        return !QAbstractEventDispatcher::instance()->registeredTimers(m_spinner).isEmpty();
    }

    std::unique_ptr<QWidget> m_window;
    ProgressSpinner *m_spinner = nullptr;
};

QUILMORA_TEST(ProgressSpinnerTest, runScreenTest)

#include "ProgressSpinnerTest.moc"
