#include <QCoreApplication>
#include <QThread>
#include <QThreadPool>

#include <array>
#include <atomic>
#include <cstdio>
#include <cstring>
#include <functional>

/// Shows what the thread sanitizer sees: "handed-over" passes data between threads in all the ways that the
/// toolkit promises to be safe, each other argument makes one mistake.

namespace {

std::array<char, 4096> shared{};

/// Seen by both threads, and no order to the sanitizer.
std::atomic_bool hasHappened = false;

void happen() { hasHappened.store(true, std::memory_order_relaxed); }

void waitUntilItHappened()
{
    while (!hasHappened.load(std::memory_order_relaxed)) {
        QThread::yieldCurrentThread();
    }
}

void count() { ++shared.front(); }

/// Runs on an object that lives in a thread of its own.
void withThread(const std::function<void(QThread &thread, QObject &object)> &action)
{
    QThread thread;
    QObject object;
    object.moveToThread(&thread);
    thread.start();
    action(thread, object);
    thread.quit();
    thread.wait();
}

void handOver()
{
    count();
    withThread([](QThread &thread, QObject &object) {
        QMetaObject::invokeMethod(
            &object, [] { count(); }, Qt::BlockingQueuedConnection);
        count();
        QMetaObject::invokeMethod(&object, [&thread] {
            count();
            thread.quit();
        });
        thread.wait();
        count();
    });
    QThreadPool pool;
    pool.start([] { count(); });
    pool.waitForDone();
    count();
}

void useAfterQueueing()
{
    withThread([](QThread & /*thread*/, QObject &object) {
        QMetaObject::invokeMethod(&object, [] {
            count();
            happen();
        });
        waitUntilItHappened();
        count();
    });
}

void useWhileThreadRuns()
{
    withThread([](QThread &thread, QObject &object) {
        QMetaObject::invokeMethod(&object, [&thread] {
            count();
            thread.quit();
        });
        while (!thread.isFinished()) {
            QThread::yieldCurrentThread();
        }
        count();
    });
}

void useWhileTaskRuns()
{
    QThreadPool pool;
    pool.start([] {
        count();
        happen();
    });
    waitUntilItHappened();
    count();
}

void copyWhileTaskRuns()
{
    QThreadPool pool;
    pool.start([] {
        std::memset(shared.data(), 1, shared.size());
        happen();
    });
    waitUntilItHappened();
    std::array<char, shared.size()> copy{};
    std::memcpy(copy.data(), shared.data(), copy.size());
    std::printf("%d\n", copy.back());
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application{argc, argv};
    const QString what = QCoreApplication::arguments().value(1);
    const QHash<QString, void (*)()> actions{
        {QStringLiteral("handed-over"), handOver},      {QStringLiteral("queued"), useAfterQueueing},
        {QStringLiteral("thread"), useWhileThreadRuns}, {QStringLiteral("task"), useWhileTaskRuns},
        {QStringLiteral("copy"), copyWhileTaskRuns},
    };
    if (const auto action = actions.value(what)) {
        action();
        return 0;
    }
    return 1;
}
