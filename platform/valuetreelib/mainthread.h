#pragma once

#include <QCoreApplication>
#include <QThread>

namespace values
{
/// Whether the caller runs on the application's thread, the only one that may touch the tree. Any, before there is an
/// application.
inline bool isMainThread()
{
    const QCoreApplication *const application = QCoreApplication::instance();
    return !application || application->thread() == QThread::currentThread();
}
} // namespace values
