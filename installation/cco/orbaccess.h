#pragma once

#include <omniORB4/CORBA.h>

#include <chrono>

namespace installation
{

/// The one ORB of the process, which somebody else has made. The caller releases it.
CORBA::ORB_ptr theOrb();

/// A reference of its own to the same object; calls through it end after @p limit, those through @p object do not.
/// (Limits per thread would need an ORB that is set up for them.) Makes no call; the caller releases it.
CORBA::Object_ptr withCallLimit(CORBA::Object_ptr object, std::chrono::milliseconds limit);

} // namespace installation
