#pragma once

#include "objectmodel/engine/byteorder.h"

#include <array>

namespace KORVE_XML::engine
{

/// Reads single values from a stream by looking ahead in pieces; what was looked at but not taken stays in the stream.
class StreamWindow
{
public:
    explicit StreamWindow(QDataStream &in);
    ~StreamWindow() { settle(); }
    StreamWindow(const StreamWindow &) = delete;
    StreamWindow &operator=(const StreamWindow &) = delete;

    bool failed() const { return in.status() != QDataStream::Ok; }
    void fail(QDataStream::Status status) { in.setStatus(status); }
    /// How many bytes there still are.
    qint64 left() const;

    /// Fills @p to with the next @p count bytes, or with zeros when there are fewer.
    void takeRaw(char *to, int count);
    template <class Integer> Integer take();
    QString takeText();
    /// A value of a type that is rare enough to be left to the stream's own operator.
    template <class T> T takeStreamed()
    {
        settle();
        T value{};
        in >> value;
        return value;
    }

private:
    /// Leaves the stream behind what was taken.
    void settle();
    bool refill(int wanted);

    QDataStream &in;
    const ByteOrder order;
    std::array<char, 1024> ahead;
    int begin = 0;
    int end = 0;
};

} // namespace KORVE_XML::engine
