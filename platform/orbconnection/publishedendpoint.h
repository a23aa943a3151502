#pragma once

#include "orbconnection/orbconnection_export.h"

#include <omniORB4/CORBA.h>

#include <QString>

namespace CorbaCommon
{
/// An address in the network.
struct Endpoint {
    QString host;
    unsigned short port = 0;
};

/// Where a reference leads to first; empty when it leads nowhere by network. Makes no call.
ORBCONNECTION_EXPORT Endpoint publishedEndpoint(CORBA::Object_ptr object);
} // namespace CorbaCommon
