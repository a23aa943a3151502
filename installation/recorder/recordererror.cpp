#include "installation/recorder/recordererror.h"

#include <cerrno>

namespace installation::recorder
{

namespace
{

TQ_KORVE::eKorveKind kindOf(int error)
{
    switch (error) {
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return TQ_KORVE::ekNO_SPACE_LEFT_ON_DEVICE;
    case EMFILE:
    case ENFILE:
    case ENOMEM:
        return TQ_KORVE::ekRESSOURCES_EXHAUSTED;
    case ENOENT: // of the two files of a record
        return TQ_KORVE::ekRECORD_CORRUPTED;
    case EIO:
        return TQ_KORVE::ekMASS_STORAGE_DEFECT;
    default:
        return TQ_KORVE::ekRECORD_ACCESS_FAILED;
    }
}

} // namespace

RecorderError RecorderError::ofSystem(int error, const QString &action)
{
    return {kindOf(error), QStringLiteral("%1: %2").arg(action, qt_error_string(error))};
}

} // namespace installation::recorder
