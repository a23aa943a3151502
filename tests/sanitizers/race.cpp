#include <QCoreApplication>
#include <QTimer>

#include <thread>

namespace
{
int shared = 0;

void plantedWrite()
{
    ++shared;
}
} // namespace

/// A thread and a call from Qt's event loop write the same number: what the suppression for Qt must not hide.
int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    std::thread writer(&plantedWrite);
    QTimer::singleShot(0, &application, [] {
        plantedWrite();
        QCoreApplication::quit();
    });
    const int result = QCoreApplication::exec();
    writer.join();
    return result;
}
