#include "fuzz/recorder/acceptedrecord.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/sigmfpair.h"

#include <QFile>
#include <QTemporaryDir>

/// Qt's parser loses what it has built when a document is malformed or has a key twice.
extern "C" __attribute__((visibility("default"))) const char *__lsan_default_suppressions()
{
    return "leak:libQt5Core.so.5";
}

namespace
{
constexpr int samplesBytes = 4000;

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    require(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

/// A recording whose document changes with each input.
class Recording
{
public:
    Recording() { writeFile(folder.filePath(QStringLiteral("air.sigmf-data")), QByteArray(samplesBytes, 's')); }

    QString with(const QByteArray &document) const
    {
        const QString path = folder.filePath(QStringLiteral("air.sigmf-meta"));
        writeFile(path, document);
        return path;
    }

private:
    const QTemporaryDir folder;
};
} // namespace

/// Reads the document of a SigMF recording.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    using namespace installation::recorder;
    static const Recording recording;
    const QByteArray document(reinterpret_cast<const char *>(data), int(size));
    const QString path = recording.with(document);
    try {
        requireImportable(inspectSigmf(path), samplesBytes);
    } catch (const RecorderError &) {
        // Refused with a reason.
    }
    return 0;
}
