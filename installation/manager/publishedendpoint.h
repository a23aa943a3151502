#pragma once

#include <omniORB4/CORBA.h>

#include <QString>

namespace installation
{

struct Endpoint {
    QString host;
    unsigned short port = 0;
};

/// Where a reference leads to first; empty when it leads nowhere by network.
Endpoint publishedEndpoint(CORBA::Object_ptr object);

} // namespace installation
