#pragma once

#include "installation/cco/registry.h"

namespace installation
{

/// Decides who gets a name: one that lives keeps it, and another is refused until it is gone.
///
/// Mere values cannot be asked whether they live, so the last ones count. Each change of hands is traced. Whom a name
/// was refused is listed below CorbaCommon::refusedNames, until it is gone or gets the name.
/// Thread: any.
class Registrar
{
public:
    /// Borrows @p registry. A holder that does not answer within @p answerLimit lives as long as the registry keeps it.
    Registrar(Registry &registry, std::chrono::milliseconds answerLimit);

    /// @p caller is the address that asks for it. Blocks for the limit, and a second, when somebody else has the name.
    /// @throws CORBA::NO_PERMISSION when a living one has it, CORBA::NO_RESOURCES when there is no room for it.
    void put(const std::string &name, const Registry::Content &content, const std::string &caller);

    /// Takes the name away, if it has an object, which the caller releases; nil otherwise. While its holder lives, only the
    /// address that has registered it, and this process (which has no address), may do so. Blocks as put() does.
    /// @throws CORBA::NO_PERMISSION for anybody else.
    CORBA::Object_ptr takeObject(const std::string &name, const std::string &caller);
    /// As takeObject(), if the name has values. Mere values do not live.
    void takeValues(const std::string &name, const std::string &caller);

private:
    template <typename Kind> std::optional<Kind> take(const std::string &name, const std::string &caller);
    bool lives(const Registry::Entry &entry) const;
    bool isLeftBehind(const Registry::Entry &holder, const Registry::Content &other) const;
    [[noreturn]] void refuse(const Registry::Entry &holder, const Registry::Content &other, const std::string &caller);
    /// False when it is listed already, or cannot be.
    bool noteRefusal(const std::string &name, const Registry::Content &content, const std::string &caller);
    void forgetRefusal(const std::string &name, const Registry::Content &content);

    Registry &registry;
    const std::chrono::milliseconds answerLimit;
};

} // namespace installation
