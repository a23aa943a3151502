#include "connectionmanagement/threadhelper.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QSignalSpy>
#include <QThread>

using namespace KorveCommon;

namespace
{
class Worker : public QObject
{
    Q_OBJECT
public:
    explicit Worker(QThread *&ranIn) : ranIn(ranIn) {}

public Q_SLOTS:
    void start()
    {
        ranIn = QThread::currentThread();
        Q_EMIT finished();
    }

Q_SIGNALS:
    void finished();

private:
    QThread *&ranIn;
};

/// What Qt hands from one of its threads to another, the thread sanitizer does not see: it would report all of it.
class ThreadWorker : public testing::Test
{
protected:
    void SetUp() override
    {
#ifdef __SANITIZE_THREAD__
        GTEST_SKIP() << "the thread sanitizer does not see Qt's own locks, and takes the hand-over of a worker for a race";
#endif
    }
};

TEST_F(ThreadWorker, RunsInItsThreadAndBothDeleteThemselves)
{
    QThread *ranIn = nullptr;
    auto *const thread = new QThread;
    auto *const worker = new Worker(ranIn);
    QSignalSpy threadGone(thread, &QObject::destroyed);
    QSignalSpy workerGone(worker, &QObject::destroyed);
    ThreadHelper::SetupThreadWorker(worker, thread, QStringLiteral("Copier"));
    EXPECT_EQ(thread->objectName(), QStringLiteral("Copier"));
    EXPECT_EQ(worker->thread(), thread);
    EXPECT_FALSE(thread->isRunning());
    thread->start();
    ASSERT_TRUE(threadGone.wait(10000));
    EXPECT_EQ(workerGone.count(), 1);
    EXPECT_EQ(ranIn, thread);
}

TEST_F(ThreadWorker, MayBeSetUpFromAnotherThread)
{
    QThread *ranIn = nullptr;
    QThread *thread = nullptr;
    QThread other;
    QObject setUp;
    setUp.moveToThread(&other);
    QObject::connect(&other, &QThread::started, &setUp, [&] {
        thread = new QThread;
        ThreadHelper::SetupThreadWorkerInMainThread(new Worker(ranIn), thread, QStringLiteral("Copier"));
        QThread::currentThread()->quit();
    });
    other.start();
    ASSERT_TRUE(other.wait(10000));
    ASSERT_TRUE(thread);
    EXPECT_EQ(thread->thread(), QCoreApplication::instance()->thread());
    QSignalSpy threadGone(thread, &QObject::destroyed);
    thread->start();
    ASSERT_TRUE(threadGone.wait(10000));
    EXPECT_EQ(ranIn, thread);
}
} // namespace

#include "threadhelper_test.moc"
