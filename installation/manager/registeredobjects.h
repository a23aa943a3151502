#pragma once

#include "idl/cco.hh"

#include <chrono>
#include <functional>
#include <map>
#include <optional>
#include <string>

namespace installation
{

/// The objects that are registered below one folder of the central object service.
///
/// Thread: one at a time; blocks, each call at most for the limit.
class RegisteredObjects
{
public:
    /// By their names, which are relative to the folder.
    using Objects = std::map<std::string, CORBA::Object_var>;
    using Filter = std::function<bool(const std::string &name)>;

    /// @p folder is relative to the central services of the local subsystem, and ends in "/".
    RegisteredObjects(CCO::IF_CCO_c_ptr service, const std::string &folder, std::chrono::milliseconds limit);

    /// Those whose names are wanted. Without result when the service does not answer, which is traced once.
    std::optional<Objects> find(const Filter &isWanted);
    /// Takes the name away, if it still stands for @p object, and if the service lets this process do so.
    void unregister(const std::string &name, CORBA::Object_ptr object);

private:
    Objects ask(const Filter &isWanted) const;
    CORBA::Object_ptr resolve(const std::string &path) const;
    void noteAnswer(bool now, const char *reason);

    const std::string folder;
    const CCO::IF_CCO_c_var service;
    bool answers = true;
};

} // namespace installation
