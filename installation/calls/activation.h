#pragma once

#include <omniORB4/CORBA.h>

#include <atomic>
#include <string>

namespace installation
{

/// Keeps a servant reachable under a key for as long as it lives. The servant itself lives until its last call is done.
///
/// Thread: any.
class Activation
{
public:
    /// Takes over the caller's reference to @p servant, also on failure. @p poa must let its user choose the keys.
    /// @throws PortableServer::POA::ObjectAlreadyActive when the key is taken.
    Activation(PortableServer::POA_ptr poa, const std::string &key, PortableServer::Servant servant);
    /// As end().
    ~Activation();
    Activation(const Activation &) = delete;
    Activation &operator=(const Activation &) = delete;

    /// From now on calls raise `CORBA::OBJECT_NOT_EXIST`. Does not wait for those in progress, so that one of them may
    /// end its own object. Any number of times.
    void end();
    /// The caller releases it.
    CORBA::Object_ptr reference() const;

private:
    const PortableServer::POA_var poa;
    const PortableServer::ObjectId_var id;
    CORBA::Object_var object; // never changes after construction
    std::atomic<bool> ended = false;
};

} // namespace installation
