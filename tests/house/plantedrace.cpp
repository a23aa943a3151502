#include <QThread>

#include <memory>

namespace {
int shared = 0;

void countUnguarded()
{
    for (int i = 0; i < 1000; ++i)
        ++shared;
}
} // namespace

int main()
{
    const std::unique_ptr<QThread> first(QThread::create(countUnguarded));
    const std::unique_ptr<QThread> second(QThread::create(countUnguarded));
    first->start();
    second->start();
    first->wait();
    second->wait();
    return shared == 0;
}
