#pragma once

#include <omniORB4/CORBA.h>

#include <chrono>
#include <cstddef>

namespace installation
{

/// The one ORB of the process, which somebody else has made. The caller releases it.
CORBA::ORB_ptr theOrb();

/// A reference of its own to the same object; what is set for it holds for nobody else. The caller releases it.
CORBA::Object_ptr separateReference(CORBA::Object_ptr object);

/// What a reference takes to keep.
std::size_t bytesOf(CORBA::Object_ptr object);

/// A reference of its own to the same object, as one to an @p Interface, which is not checked. Calls through it end
/// after @p limit, those through @p object do not. (Limits per thread would need an ORB that is set up for them.)
/// Makes no call; the caller releases it.
template <typename Interface>
typename Interface::_ptr_type withCallLimit(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    const CORBA::Object_var copy = separateReference(object);
    const typename Interface::_ptr_type reference = Interface::_unchecked_narrow(copy);
    // Only now: narrowing can make one more reference, which knows no limit.
    omniORB::setClientCallTimeout(reference, static_cast<CORBA::ULong>(limit.count()));
    return reference;
}

} // namespace installation
