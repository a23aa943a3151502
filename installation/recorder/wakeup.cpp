#include "installation/recorder/wakeup.h"

#include "installation/recorder/recordererror.h"

#include <sys/eventfd.h>
#include <unistd.h>

#include <cerrno>

namespace installation::recorder
{

Wakeup::Wakeup() : eventDescriptor(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
{
    if (eventDescriptor < 0)
        throw RecorderError::ofSystem(errno, QStringLiteral("cannot make a session"));
}

Wakeup::~Wakeup()
{
    ::close(eventDescriptor);
}

void Wakeup::wake()
{
    ::eventfd_write(eventDescriptor, 1);
}

void Wakeup::clear()
{
    eventfd_t ignored = 0;
    ::eventfd_read(eventDescriptor, &ignored);
}

} // namespace installation::recorder
