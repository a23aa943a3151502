#pragma once

#include "idl/korvemanager.hh"

#include <QString>

namespace installation
{

/// What a record is doing.
struct RecordState {
    QString device;
    QString record;
    QString name; ///< of the record, as people see it
    TQ_KRV::eRECORD_STATUS status = TQ_KRV::rsIDLE;
};

/// A recorder's number for what a record is doing, in the manager's numbering.
TQ_KRV::eRECORD_STATUS toClientStatus(unsigned int deviceStatus);

} // namespace installation
