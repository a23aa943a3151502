#pragma once

#include "installation/recorder/recordingreceiver.h"
#include "installation/recorder/sessions.hh"

namespace installation::recorder
{

/// One recording as others see it: its record's id, its end, and the link over which the samples come. docs/recorder.md
/// tells how.
///
/// Thread: the ORB's; waits for a connection to be made and for the record to be complete, 5 s at most.
/// Errors: `exKorve` and `exLLDC` by the cause.
class RecordingSession : public POA_KORVE_INSTALLATION::IF_RecordingLink
{
public:
    struct Description {
        QString recordId;
        quint64 classRateHz = 0; ///< the sample rate that fills the data-rate class, 0 when that has none
        quint32 ownHost = 0;     ///< IPv4, where it listens
        quint32 publishedHost = 0;
    };

    static constexpr std::chrono::milliseconds endLimit{5000};

    RecordingSession(std::shared_ptr<RecordingReceiver> receiver, Description description)
        : receiver(std::move(receiver)), description(std::move(description))
    {
    }

    char *getId() override;
    void endRecordingSession(const TQ_KORVE::wideText &comment) override;
    void setConvertNetToHostByteOrder(CORBA::Boolean wanted) override;
    CORBA::UShort getNetworkSourcePort() override;
    CORBA::ULong setupNetworkServer(CORBA::ULong port) override;
    CORBA::ULong setupNetworkServerEx(CORBA::ULong sampleRateHz, CORBA::ULong transport, CORBA::UShort port) override;
    char *setupNetworkTqXg(const char *address, CORBA::ULong, CORBA::ULong) override;
    char *setupNetworkTqXgEx(const char *address, CORBA::ULong, CORBA::ULong) override;

    void endConnection(CORBA::ULong connectionId) override;
    LLDCmodule::seqIfDescription *getIfUsed() override;
    LLDCmodule::seqIfDescription *getIfAvailable() override;
    CORBA::ULong connectToIf(const LLDCmodule::struConnectionParams &params, CORBA::ULong sampleRateHz) override;

private:
    CORBA::ULong listen(LLDCmodule::eINTERFACE_KIND kind, CORBA::ULong port, quint64 sampleRateHz);
    quint64 checkedRate(quint64 sampleRateHz) const;

    const std::shared_ptr<RecordingReceiver> receiver;
    const Description description;
};

} // namespace installation::recorder
