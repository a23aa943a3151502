#include "fuzz/recorder/acceptedrecord.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/wavfile.h"

#include <sys/mman.h>
#include <unistd.h>

namespace
{
/// A file that is in memory alone, with a name while this lives.
class FileInMemory
{
public:
    FileInMemory(const uint8_t *data, size_t size) : descriptor(memfd_create("input", MFD_CLOEXEC))
    {
        require(descriptor >= 0 && write(descriptor, data, size) == static_cast<ssize_t>(size));
    }
    FileInMemory(const FileInMemory &) = delete;
    ~FileInMemory() { close(descriptor); }

    QString path() const { return QStringLiteral("/proc/self/fd/%1").arg(descriptor); }

private:
    const int descriptor;
};
} // namespace

/// Reads the header of a WAV file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace installation::recorder;
    const FileInMemory file(data, size);
    try {
        requireImportable(inspectWav(file.path()), size);
    } catch (const RecorderError &) {
        // Refused with a reason.
    }
    return 0;
}
