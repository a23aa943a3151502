#pragma once

#include "installation/recorder/devicefailure.h"
#include "installation/recorder/linkerror.h"

namespace installation::recorder
{

/// Traces @p error as the end of @p operation, and is what the caller gets to see of it.
LLDCmodule::exLLDC linkFailure(const char *operation, const LinkError &error);

/// What @p work answers; whatever it throws becomes `exKorve`.
template <typename Work> auto answerDevice(const char *operation, Work work)
{
    try {
        return work();
    } catch (const RecorderError &error) {
        throw deviceFailure(operation, error);
    } catch (const std::exception &error) { // not one of ours, but it must not end as CORBA::UNKNOWN
        throw deviceFailure(operation, {TQ_KORVE::ekIMPLEMENTATION_FAULT, QString::fromUtf8(error.what())});
    }
}

/// The same for what changes something: what may still be done, though the store has not answered in time, becomes
/// `CORBA::TIMEOUT`, which may be completed. A kind would say that nothing was done.
template <typename Work> auto answerChange(const char *operation, Work work)
{
    return answerDevice(operation, [&] {
        try {
            return work();
        } catch (const RecorderError &error) {
            if (!error.isOutcomeUnknown())
                throw;
            deviceFailure(operation, error); // for its trace
            throw CORBA::TIMEOUT(0, CORBA::COMPLETED_MAYBE);
        }
    });
}

/// What @p work answers; whatever it throws becomes `exLLDC`.
template <typename Work> auto answerLink(const char *operation, Work work)
{
    try {
        return work();
    } catch (const LinkError &error) {
        throw linkFailure(operation, error);
    } catch (const std::exception &error) { // of the recorder, which has no kind of its own here
        throw linkFailure(operation, {LLDCmodule::ekUnknown, QString::fromUtf8(error.what())});
    }
}

} // namespace installation::recorder
