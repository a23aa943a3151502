#pragma once

#include "installation/manager/channel.h"

#include "idl/korve.hh"

namespace installation
{

/// What a recorder tells of a record, for those who look after a replay or a recording.
struct RecordView {
    QString name;
    TQ_KORVE::eRECORD_STATUS status;
    ChannelProgress progress; ///< at the beginning of the record

    /// Asks the recorder. Errors: what it raises.
    static RecordView of(TQ_KORVE::IF_Control_ptr recorder, const QString &recordId);
};

/// A device's text, unit by unit.
QString fromDeviceText(const TQ_KORVE::wideText &text);
/// The other way around, for a text that holds any unit.
TQ_KORVE::wideText deviceTextOf(const QString &text);

} // namespace installation
