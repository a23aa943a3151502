#include "installation/faults/answers.h"

#include "idl/korvemanager.hh"

#include <omniORB4/callDescriptor.h>

#include <algorithm>
#include <iterator>

namespace installation::faults
{

namespace
{

/// What goes out behind the number, empty.
struct EmptyOuts {
    std::string_view operation;
    void (*marshal)(cdrStream &);
};

constexpr EmptyOuts emptyOuts[] = {
    {"copyRecord", [](cdrStream &reply) { reply.marshalString(""); }},
    {"getDeviceTime",
     [](cdrStream &reply) {
         CORBA::ULongLong(0) >>= reply;
         reply.marshalBoolean(false);
     }},
    {"getRecord", [](cdrStream &reply) { TQ_KRV::struRECORD_DATA{} >>= reply; }},
};

const EmptyOuts *outsOf(std::string_view operation)
{
    const auto found = std::find_if(std::begin(emptyOuts), std::end(emptyOuts),
                                    [&](const EmptyOuts &outs) { return outs.operation == operation; });
    return found == std::end(emptyOuts) ? nullptr : found;
}

} // namespace

bool isAnswerable(const Operation &operation)
{
    return operation.result != Result::Other && (!operation.hasOuts || outsOf(operation.name));
}

void answer(omniCallDescriptor &call, Result result, unsigned number)
{
    // The call can read what a reply holds, as a caller does; so what it sends is its own, in its own form.
    cdrMemoryStream reply;
    if (result == Result::Truth)
        reply.marshalBoolean(number != 0);
    else
        CORBA::ULong(number) >>= reply;
    if (const EmptyOuts *const outs = outsOf(call.op()))
        outs->marshal(reply);
    reply.rewindInputPtr();
    call.unmarshalReturnedValues(reply);
}

} // namespace installation::faults
