#pragma once

#include "installation/cco/orbaccess.h"

namespace installation
{

/// A reference of its own to the same object, as one to an @p Interface, which is not checked. Calls through it end
/// after @p limit, those through @p object do not. Makes no call; the caller releases it.
template <typename Interface>
typename Interface::_ptr_type limitedReference(CORBA::Object_ptr object, std::chrono::milliseconds limit)
{
    const CORBA::Object_var own = withCallLimit(object, limit);
    const typename Interface::_ptr_type narrowed = Interface::_unchecked_narrow(own);
    // Narrowing has made one more reference, which does not inherit the limit.
    omniORB::setClientCallTimeout(narrowed, static_cast<CORBA::ULong>(limit.count()));
    return narrowed;
}

} // namespace installation
