#pragma once

#include "installation/calls/activation.h"
#include "tests/installation/cco/testorb.h"
#include "tests/support/countedservant.h"

#include "idl/cco.hh"

#include <optional>
#include <string>

/// A servant of the test under a key of its own, which it can also have as a name at the central object service.
template <typename Servant> class ServedObject
{
public:
    explicit ServedObject(const std::string &key)
        : servant(new CountedServant<Servant>), activation(std::in_place, TestOrb::instance().insPoa(), key, add(servant))
    {
    }
    ServedObject(CCO::IF_CCO_c_ptr cco, const std::string &name) : ServedObject(name)
    {
        cco->Register(name.c_str(), CORBA::Object_var(reference()), 0);
    }
    ~ServedObject()
    {
        activation.reset();
        servant->_remove_ref();
    }
    ServedObject(const ServedObject &) = delete;

    /// The caller releases it.
    CORBA::Object_ptr reference() const { return activation->reference(); }
    Servant *operator->() const { return servant; }
    /// No longer reachable.
    void die() { activation.reset(); }

private:
    static Servant *add(Servant *servant)
    {
        servant->_add_ref();
        return servant;
    }
    Servant *const servant;
    std::optional<installation::Activation> activation;
};
