#pragma once

#include "installation/recorder/record.h"

namespace installation::recorder
{

/// What a recording is to become.
struct RecordingWish {
    DataRate rate = KORVE_XML::KORVE_RecordData::VUHF_20M;
    DataFormat format = KORVE_XML::KORVE_RecordData::RAW;
    quint64 loopBytes = 0; ///< what is kept at most; 0: everything
};

/// The record of a recording that has no sample yet, without id: complex numbers of 16 bits for signals, real ones for
/// sound, single bytes for the rest; the lowest byte first.
Record newRecording(const RecordingWish &wish, quint64 nowUs);
/// The sample rate that fills a data-rate class; 0 for a class without a bandwidth.
quint64 sampleRateOf(const Record &record);

} // namespace installation::recorder
