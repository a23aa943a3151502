#include "installation/faults/systemexceptions.h"

#include <omniORB4/CORBA.h>

#include <algorithm>
#include <iterator>

namespace installation::faults
{

namespace
{

struct NamedException {
    std::string_view name;
    RaiseSystemException raise;
};

constexpr NamedException systemExceptions[] = {
#define KORVE_NAMED_EXCEPTION(Name) {#Name, [] { throw CORBA::Name(0, CORBA::COMPLETED_NO); }},
    OMNIORB_FOR_EACH_SYS_EXCEPTION(KORVE_NAMED_EXCEPTION)
#undef KORVE_NAMED_EXCEPTION
};

} // namespace

RaiseSystemException systemExceptionNamed(std::string_view name)
{
    const auto found = std::find_if(std::begin(systemExceptions), std::end(systemExceptions),
                                    [&](const NamedException &row) { return row.name == name; });
    return found == std::end(systemExceptions) ? nullptr : found->raise;
}

} // namespace installation::faults
