#pragma once

#include "valuetreelib/valuebase.h"

namespace values
{
/// One change of a value. ValueBase::AddCommandForTransmission() makes its bytes, at once or later: they tell the
/// content as it is then.
struct ValueChange {
    ValueBase &value;
    TChangeCode code;
    bool forced; ///< observers were told although nothing need have changed, and so should be those elsewhere
    IObserver *originator;
};

/// Learns of everything that happens below one path, in the order in which it happens and before any observer: what a
/// mirror sends. A mirror knows its own changes by the originator that it gave them.
///
/// It only takes notes: it must not change the tree from inside these calls.
class ITreeListener
{
public:
    virtual ~ITreeListener() = default;
    /// Nodes come before what stands below them.
    virtual void itemAdded(TreeItem &item, IObserver *originator) = 0;
    /// @p item is out of the tree. Of what is removed together, each item is told, nodes before what stood below them.
    virtual void itemRemoved(TreeItem &item, IObserver *originator) = 0;
    /// Not for changes within a transaction, but for what they came to at its end.
    virtual void valueChanged(const ValueChange &change) = 0;
    /// A value whose class tells its changes by commands; also within a transaction, and before the notification.
    virtual void commandRecorded(ValueBase &value, const ValueBase::CommandOnValue &command) = 0;
    /// One of the value's holders has let go of it. The value stays.
    virtual void valueReleased(ValueBase &value) = 0;
};
} // namespace values
