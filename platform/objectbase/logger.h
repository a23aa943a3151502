#pragma once

namespace REPORTGENERATOR
{

/// What an application hands to objects so that they can be told apart in its own log; objects only pass it on.
class Logger
{
public:
    virtual ~Logger() = default;
};

} // namespace REPORTGENERATOR
