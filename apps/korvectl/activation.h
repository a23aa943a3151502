#pragma once

#include "orbconnection/orbhandler.h"

namespace korvectl
{

/// A servant that others can call for as long as this lives.
template <typename Interface, typename Servant> class Activation
{
public:
    /// Takes over the caller's reference to @p servant, also on failure.
    explicit Activation(Servant *servant) : Activation(PortableServer::Servant_var<Servant>(servant)) {}
    ~Activation() { CorbaCommon::OrbHandler::Instance().rootPoa()->deactivate_object(id); }
    Activation(const Activation &) = delete;

    Servant *operator->() { return servant; }
    /// Borrowed.
    typename Interface::_ptr_type reference() const { return object.in(); }

private:
    explicit Activation(const PortableServer::Servant_var<Servant> &owned)
        : servant(owned.in()), id(CorbaCommon::OrbHandler::Instance().rootPoa()->activate_object(servant)),
          object(servant->_this())
    {
    }

    Servant *const servant; ///< owned by the POA until it is deactivated and its last call is done
    const PortableServer::ObjectId_var id;
    const typename Interface::_var_type object;
};

} // namespace korvectl
