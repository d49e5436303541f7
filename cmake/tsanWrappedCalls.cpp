#include <QObject>
#include <QThread>
#include <QThreadPool>

// Every kind of call by which work is handed to another thread; ThreadSanitizer.cmake looks at what it is
// linked with.
int main()
{
    QObject object;
    QThread thread;
    QObject::connect(&thread, &QThread::finished, &object, [] {});
    thread.start();
    QMetaObject::invokeMethod(
        &object, [] {}, Qt::QueuedConnection);
    thread.wait();
    QThreadPool pool;
    pool.start([] {});
    pool.waitForDone();
}
