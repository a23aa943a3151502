#pragma once

#include "installation/cco/registry.h"

namespace installation
{

/// What stands behind a name: an object, an address, or mere values, which cannot be asked anything.
class Holder
{
public:
    explicit Holder(const Registry::Content &content);

    bool canBeAsked() const { return !CORBA::is_nil(object) || address; }
    /// Blocks, as askObject() and askAddress() do. Needs one that can be asked.
    Answer ask(std::chrono::milliseconds limit) const;
    /// Where it is; empty when that is nowhere.
    std::optional<NetworkAddress> endpoint() const;
    /// In a few words.
    std::string description() const;

private:
    CORBA::Object_var object;
    std::optional<NetworkAddress> address;
};

} // namespace installation
