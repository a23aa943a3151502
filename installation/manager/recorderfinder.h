#pragma once

#include "idl/cco.hh"

#include <QString>

#include <chrono>
#include <map>
#include <optional>
#include <string>

namespace installation
{

/// Asks the central object service which recorders there are.
///
/// Thread: one at a time; blocks, each call at most for the limit.
class RecorderFinder
{
public:
    RecorderFinder(CCO::IF_CCO_c_ptr service, std::chrono::milliseconds limit);

    /// Device id to recorder. Without result when the service does not answer, which is traced once.
    std::optional<std::map<QString, CORBA::Object_var>> find();

private:
    std::map<QString, CORBA::Object_var> ask() const;
    CORBA::Object_ptr resolve(const std::string &path) const;
    void noteAnswer(bool now, const char *reason);

    const CCO::IF_CCO_c_var service;
    bool answers = true;
};

} // namespace installation
