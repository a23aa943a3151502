#pragma once

#include "idl/korvemanager.hh"

#include <QString>

#include <chrono>
#include <optional>

namespace installation
{

/// What an exporter wants to have exported.
struct ExportOrder {
    QString id;
    QString device;
    QString record;
    TQ_KRV::IF_ExportCallback_var exporter; ///< its calls are limited
};

/// Asks the exporter for its three texts. Where device or record is empty, the id tells: five fields joined by "@", the
/// first two of which are device and record; empty ones do not count, and any other number of fields tells nothing.
/// Blocks for the exporter, each call at most for @p limit.
/// @throws CORBA::Exception when it does not answer.
ExportOrder orderOf(TQ_KRV::IF_ExportCallback_ptr exporter, std::chrono::milliseconds limit);

/// Where an exporter wants to have a file.
struct StreamAddress {
    QString host;
    quint16 port = 0;
    quint64 offset = 0; ///< the bytes before it are there already
};

/// Reads "HOST:PORT" or "HOST:PORT/OFFSET"; without result for anything else.
std::optional<StreamAddress> streamAddressIn(const QString &text);

} // namespace installation
