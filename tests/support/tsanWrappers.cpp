// Tells the thread sanitizer where Qt hands work from one thread to another. Qt is not
// compiled with the sanitizer, which sees none of its locks: whatever one thread prepares and another one is
// given would look like a race. Each of these functions takes the place of one that our code calls
// (cmake/ThreadSanitizer.cmake), does what that one does, and says which moment comes before which other one:
// only what Qt promises, between the two threads concerned. Everything else is watched as ever.
//
// One more function takes the place of the sanitizer's own, which fails where a new process shares the memory
// of the old one until it has become another program.

#include <QDeadlineTimer>
#include <QObject>
#include <QRunnable>
#include <QThread>
#include <QThreadPool>

#include <cstdarg>
#include <dlfcn.h>
#include <functional>
#include <sanitizer/tsan_interface.h>
#include <utility>

// Qt's functions by the names that the linker knows.
#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
#define INVOKE                                                                                               \
    "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv"
#define START_TASK "_ZN11QThreadPool5startESt8functionIFvvEEi"
#define WAIT_FOR_TASKS "_ZN11QThreadPool11waitForDoneEi"
#else
#define INVOKE                                                                                               \
    "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeE"        \
    "xPKPKvPKPKcPKPKNS2_18QMetaTypeInterfaceE"
#define START_TASK "_ZN11QThreadPool5startEP9QRunnablei"
#define WAIT_FOR_TASKS "_ZN11QThreadPool11waitForDoneE14QDeadlineTimer"
#endif
#define CONNECT                                                                                              \
    "_ZN7QObject11connectImplEPKS_PPvS1_S3_"                                                                 \
    "PN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPKiPK11QMetaObject"
#define START_THREAD "_ZN7QThread5startENS_8PriorityE"
#define WAIT_FOR_THREAD "_ZN7QThread4waitE14QDeadlineTimer"

namespace quilmora::test::tsanWrappers {

using Slot = QtPrivate::QSlotObjectBase;

#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
using Task = std::function<void()>;
using PoolDeadline = int;
bool reallyInvoke(QObject *object, Slot *slot, Qt::ConnectionType type, void *result) asm("__real_" INVOKE);
bool invoke(QObject *object, Slot *slot, Qt::ConnectionType type, void *result) asm("__wrap_" INVOKE);
#else
using Task = QRunnable *;
using PoolDeadline = QDeadlineTimer;
using ArgumentTypes = const QtPrivate::QMetaTypeInterface *const *;
bool reallyInvoke(QObject *object, Slot *slot, Qt::ConnectionType type, qsizetype count,
                  const void *const *arguments, const char *const *names,
                  ArgumentTypes types) asm("__real_" INVOKE);
bool invoke(QObject *object, Slot *slot, Qt::ConnectionType type, qsizetype count,
            const void *const *arguments, const char *const *names,
            ArgumentTypes types) asm("__wrap_" INVOKE);
#endif
QMetaObject::Connection reallyConnect(const QObject *sender, void **signal, const QObject *receiver,
                                      void **function, Slot *slot, Qt::ConnectionType type, const int *types,
                                      const QMetaObject *metaObject) asm("__real_" CONNECT);
void reallyStart(QThread *thread, QThread::Priority priority) asm("__real_" START_THREAD);
bool reallyWait(QThread *thread, QDeadlineTimer deadline) asm("__real_" WAIT_FOR_THREAD);
void reallyStart(QThreadPool *pool, Task task, int priority) asm("__real_" START_TASK);
bool reallyWait(QThreadPool *pool, PoolDeadline deadline) asm("__real_" WAIT_FOR_TASKS);

QMetaObject::Connection connect(const QObject *sender, void **signal, const QObject *receiver,
                                void **function, Slot *slot, Qt::ConnectionType type, const int *types,
                                const QMetaObject *metaObject) asm("__wrap_" CONNECT);
void start(QThread *thread, QThread::Priority priority) asm("__wrap_" START_THREAD);
bool wait(QThread *thread, QDeadlineTimer deadline) asm("__wrap_" WAIT_FOR_THREAD);
void start(QThreadPool *pool, Task task, int priority) asm("__wrap_" START_TASK);
bool wait(QThreadPool *pool, PoolDeadline deadline) asm("__wrap_" WAIT_FOR_TASKS);

namespace {

/// A slot that another thread may call or destroy. What was done before it was handed over comes before each
/// call, and each call before the slot's destruction and before the end of a wait for the call.
class HandedOverSlot final : public Slot
{
public:
    HandedOverSlot(Slot *slot, void *waiting)
        : Slot{&HandedOverSlot::operate},
          m_inner{slot},
          m_waiter{waiting}
    {
        __tsan_release(this);
    }

private:
    static void operate(int operation, Slot *slot, QObject *receiver, void **arguments, bool *isSame)
    {
        auto *const self = static_cast<HandedOverSlot *>(slot);
        __tsan_acquire(self);
        if (operation == Destroy) {
            self->m_inner->destroyIfLastRef();
            delete self;
        } else if (operation == Call) {
            self->m_inner->call(receiver, arguments);
            if (self->m_waiter != nullptr) {
                __tsan_release(self->m_waiter);
            }
            __tsan_release(self);
        } else {
            *isSame = self->m_inner->compare(arguments);
        }
    }

    Slot *const m_inner;
    void *const m_waiter; ///< Stands for whoever waits for the call, if anybody does.
};

/// `more` is what Qt is passed beside the slot, which depends on its version.
template <typename... More>
bool invokeHandedOver(QObject *object, Slot *slot, Qt::ConnectionType type, More... more)
{
    if (type != Qt::BlockingQueuedConnection) {
        return reallyInvoke(object, new HandedOverSlot{slot, nullptr}, type, more...);
    }
    char waiter = 0;
    const bool isDone = reallyInvoke(object, new HandedOverSlot{slot, &waiter}, type, more...);
    __tsan_acquire(&waiter);
    return isDone;
}

#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
/// A task that another thread runs. It is destroyed before the end is reported to those who wait for the
/// pool.
class HandedOverTask final : public QRunnable
{
public:
    HandedOverTask(QRunnable *task, QThreadPool *owner) : inner{task}, pool{owner} { __tsan_release(this); }

    void run() override
    {
        __tsan_acquire(this);
        inner->run();
        if (inner->autoDelete()) {
            delete inner;
        }
        __tsan_release(pool);
    }

private:
    QRunnable *const inner;
    QThreadPool *const pool;
};
#endif

} // namespace

#if QT_VERSION < QT_VERSION_CHECK(6, 8, 0)
bool invoke(QObject *object, Slot *slot, Qt::ConnectionType type, void *result)
{
    return invokeHandedOver(object, slot, type, result);
}

void start(QThreadPool *pool, Task task, int priority)
{
    // Owned by itself, so that it is destroyed before the end is told.
    auto *const handedOver = new Task{std::move(task)};
    __tsan_release(handedOver);
    reallyStart(
        pool,
        [pool, handedOver] {
            __tsan_acquire(handedOver);
            (*handedOver)();
            delete handedOver;
            __tsan_release(pool);
        },
        priority);
}
#else
bool invoke(QObject *object, Slot *slot, Qt::ConnectionType type, qsizetype count,
            const void *const *arguments, const char *const *names, ArgumentTypes types)
{
    return invokeHandedOver(object, slot, type, count, arguments, names, types);
}

void start(QThreadPool *pool, Task task, int priority)
{
    reallyStart(pool, new HandedOverTask{task, pool}, priority);
}
#endif

QMetaObject::Connection connect(const QObject *sender, void **signal, const QObject *receiver,
                                void **function, Slot *slot, Qt::ConnectionType type, const int *types,
                                const QMetaObject *metaObject)
{
    // What the signal carries is not spoken of here: nothing of ours sends signals to other threads.
    return reallyConnect(sender, signal, receiver, function, new HandedOverSlot{slot, nullptr}, type, types,
                         metaObject);
}

void start(QThread *thread, QThread::Priority priority)
{
    // What comes before the start, the sanitizer knows: it sees how threads are made.
    QObject::connect(
        thread, &QThread::finished, thread, [thread] { __tsan_release(thread); },
        static_cast<Qt::ConnectionType>(Qt::DirectConnection | Qt::SingleShotConnection));
    reallyStart(thread, priority);
}

bool wait(QThread *thread, QDeadlineTimer deadline)
{
    const bool hasFinished = reallyWait(thread, deadline);
    if (hasFinished) {
        __tsan_acquire(thread);
    }
    return hasFinished;
}

bool wait(QThreadPool *pool, PoolDeadline deadline)
{
    const bool areDone = reallyWait(pool, deadline);
    if (areDone) {
        __tsan_acquire(pool);
    }
    return areDone;
}

} // namespace quilmora::test::tsanWrappers

extern "C" int clone(int (*child)(void *), void *stack, int flags, void *argument, ...)
{
    using Clone = int(int (*)(void *), void *, int, void *, void *, void *, void *);
    static auto *const really = reinterpret_cast<Clone *>(dlsym(RTLD_NEXT, "clone"));
    va_list more;
    va_start(more, argument);
    void *const parentId = va_arg(more, void *);
    void *const storage = va_arg(more, void *);
    void *const childId = va_arg(more, void *);
    va_end(more);
    return really(child, stack, flags, argument, parentId, storage, childId);
}
