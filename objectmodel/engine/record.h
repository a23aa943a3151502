#pragma once

#include <QBitArray>
#include <QExplicitlySharedDataPointer>
#include <QSharedData>

namespace KORVE_XML::engine {

/// The shared storage behind an object: the members of its class follow in a generated descendant.
class Record : public QSharedData
{
public:
    explicit Record(const QBitArray &clearBits) : bits(clearBits) {}
    virtual ~Record() = default;
    virtual Record *clone() const = 0;

    qint8 choice = -1; ///< the selected alternative of a choice group
    QBitArray bits;    ///< one per member, in the order of the accessors: explicitly set

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
