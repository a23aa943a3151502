#include "connectionmanagement/threadhelper.h"

#include <QCoreApplication>
#include <QThread>

namespace KorveCommon
{
void ThreadHelper::SetupThreadWorker(QObject *worker, QThread *thread, const QString &name)
{
    thread->setObjectName(name);
    worker->moveToThread(thread);
    QObject::connect(thread, SIGNAL(started()), worker, SLOT(start()));
    QObject::connect(worker, SIGNAL(finished()), thread, SLOT(quit()));
    QObject::connect(worker, SIGNAL(finished()), worker, SLOT(deleteLater()));
    QObject::connect(thread, SIGNAL(finished()), thread, SLOT(deleteLater()));
}

void ThreadHelper::SetupThreadWorkerInMainThread(QObject *worker, QThread *thread, const QString &name)
{
    thread->moveToThread(QCoreApplication::instance()->thread());
    SetupThreadWorker(worker, thread, name);
}
} // namespace KorveCommon
