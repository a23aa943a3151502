#include "installation/recorder/importsource.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/sigmfpair.h"
#include "installation/recorder/wavfile.h"

namespace installation::recorder
{

ImportSource inspectFile(const QString &path)
{
    if (isSigmfName(path))
        return inspectSigmf(path);
    const QByteArray beginning = File::openForReading(path).read(4);
    if (beginning == "RIFF" || beginning == "RF64")
        return inspectWav(path);
    throw RecorderError(TQ_KORVE::ekINVALID_VALUE,
                        QStringLiteral("neither a WAV file nor one called .sigmf-meta or .sigmf-data"));
}

} // namespace installation::recorder
