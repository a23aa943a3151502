#pragma once

#include <omniORB4/CORBA.h>

#include <cstdint>

/// The ORB of a test program, with one endpoint on a free port of 127.0.0.1. Made on first use; lives as long as the
/// program.
class TestOrb
{
public:
    static TestOrb &instance();

    CORBA::ORB_ptr orb() const { return theOrb; }
    /// For objects with keys of their own.
    PortableServer::POA_ptr insPoa() const { return keyed; }
    PortableServer::POA_ptr rootPoa() const { return root; }
    std::uint16_t port() const { return endpointPort; }

private:
    TestOrb();
    ~TestOrb();

    CORBA::ORB_var theOrb;
    PortableServer::POA_var root;
    PortableServer::POA_var keyed;
    std::uint16_t endpointPort;
};
