#pragma once

#include "orbconnection/orbhandler.h"

namespace korvectl
{

/// A servant that others can call for as long as this lives.
template <typename Interface, typename Servant> class Activation
{
public:
    /// Takes over one reference of @p servant.
    explicit Activation(Servant *servant)
        : servant(servant), id(CorbaCommon::OrbHandler::Instance().rootPoa()->activate_object(servant)),
          object(servant->_this())
    {
    }
    ~Activation() { CorbaCommon::OrbHandler::Instance().rootPoa()->deactivate_object(id); }
    Activation(const Activation &) = delete;

    Servant *operator->() { return servant.in(); }
    /// Borrowed.
    typename Interface::_ptr_type reference() const { return object.in(); }

private:
    PortableServer::Servant_var<Servant> servant;
    const PortableServer::ObjectId_var id;
    const typename Interface::_var_type object;
};

} // namespace korvectl
