#pragma once

#include <QExplicitlySharedDataPointer>
#include <QSharedData>

#include <bit>

namespace KORVE_XML::engine
{

/// One bit per member, in the order of the accessors: explicitly set. No class has more than 64 members.
///
/// A word instead of an array: it costs no allocation, and whole classes are tested by one mask.
class Bits
{
public:
    constexpr Bits(quint64 word = 0) : word(word) {}

    bool test(int bit) const { return word >> bit & 1; }
    void set(int bit) { word |= quint64(1) << bit; }
    void clear(int bit) { word &= ~(quint64(1) << bit); }
    bool contain(Bits others) const { return (word & others.word) == others.word; }
    /// The lowest of them, which is taken away; there must be one.
    int takeFirst()
    {
        const int bit = std::countr_zero(word);
        word &= word - 1;
        return bit;
    }
    bool isEmpty() const { return word == 0; }
    Bits operator|(Bits others) const { return word | others.word; }
    /// As the wire has them: bytes with the least significant bit first.
    quint64 toWord() const { return word; }

private:
    quint64 word;
};

/// The shared storage behind an object: the members of its class follow in a generated descendant.
class Record : public QSharedData
{
public:
    Record() = default;
    virtual ~Record() = default;
    virtual Record *clone() const = 0;

    qint8 choice = -1; ///< the selected alternative of a choice group
    Bits bits;

protected:
    Record(const Record &) = default;
    Record &operator=(const Record &) = delete;
};

using RecordPtr = QExplicitlySharedDataPointer<Record>;

} // namespace KORVE_XML::engine

template <> inline KORVE_XML::engine::Record *QExplicitlySharedDataPointer<KORVE_XML::engine::Record>::clone()
{
    return d->clone();
}
