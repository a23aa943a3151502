#pragma once

#include "installation/manager/registeredobjects.h"

#include <QString>

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
    RegisteredObjects registered;
};

} // namespace installation
