#include "objectmodel/engine/streamwindow.h"

#include <QIODevice>

namespace KORVE_XML::engine
{

StreamWindow::StreamWindow(QDataStream &in) : in(in), order(in) {}

qint64 StreamWindow::left() const
{
    return in.device() ? in.device()->bytesAvailable() - begin : 0;
}

void StreamWindow::takeRaw(char *to, int count)
{
    if (end - begin < count && !refill(count)) {
        memset(to, 0, std::size_t(count));
        return;
    }
    memcpy(to, ahead.data() + begin, std::size_t(count));
    begin += count;
}

template <class Integer> Integer StreamWindow::take()
{
    char bytes[sizeof(Integer)];
    takeRaw(bytes, sizeof bytes);
    return order.load<Integer>(bytes);
}

template qint8 StreamWindow::take<qint8>();
template qint32 StreamWindow::take<qint32>();
template qint64 StreamWindow::take<qint64>();

QString StreamWindow::takeText()
{
    if (end - begin < 4)
        refill(4);
    const quint32 size = end - begin < 4 ? 0 : order.load<quint32>(ahead.data() + begin);
    // The stream's own operator would make room for a long text before it finds out that it is not there.
    if (size != nullCount && size > left() - 4 && in.version() >= 3) {
        fail(QDataStream::ReadPastEnd);
        return {};
    }
    const bool isSmall = size <= ahead.size() - 4 && size % 2 == 0 && in.version() >= 3;
    if (!isSmall || (end - begin < int(size) + 4 && !refill(int(size) + 4)))
        return takeStreamed<QString>();
    QString text = order.loadText(ahead.data() + begin + 4, int(size));
    begin += int(size) + 4;
    return text;
}

void StreamWindow::settle()
{
    if (begin > 0)
        in.skipRawData(begin);
    begin = 0;
    end = 0;
}

bool StreamWindow::refill(int wanted)
{
    settle();
    QIODevice *device = in.device();
    end = device && !failed() ? int(qMax(qint64(0), device->peek(ahead.data(), qint64(ahead.size())))) : 0;
    if (end >= wanted)
        return true;
    begin = end;
    settle();
    fail(QDataStream::ReadPastEnd);
    return false;
}

} // namespace KORVE_XML::engine
