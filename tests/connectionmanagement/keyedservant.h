#pragma once

#include "orbconnection/orbhandler.h"

/// A servant of the process under a key, for as long as this lives.
template <typename Servant> class KeyedServant
{
public:
    explicit KeyedServant(const char *key) : id(PortableServer::string_to_ObjectId(key))
    {
        poa()->activate_object_with_id(id, &servant);
    }
    ~KeyedServant() { poa()->deactivate_object(id); }
    KeyedServant(const KeyedServant &) = delete;

    Servant *operator->() { return &servant; }

private:
    static PortableServer::POA_ptr poa() { return CorbaCommon::OrbHandler::Instance().keyedPoa(); }

    Servant servant;
    const PortableServer::ObjectId_var id;
};
