#include "installation/manager/recordview.h"

#include <algorithm>

namespace installation
{

RecordView RecordView::of(TQ_KORVE::IF_Control_ptr recorder, const QString &recordId)
{
    const TQ_KORVE::struMETA_DATA_var metaData = recorder->getMetaData(recordId.toUtf8().constData());
    RecordView view;
    view.name = fromDeviceText(metaData->recordName);
    view.status = static_cast<TQ_KORVE::eRECORD_STATUS>(metaData->recordStatus);
    view.progress = {.position = metaData->startPosition,
                     .sizeBytes = metaData->size,
                     .recordBegin = metaData->startPosition,
                     .recordEnd = std::max(metaData->stopPosition, metaData->startPosition + metaData->size),
                     .startUs = metaData->startTime,
                     .stopUs = metaData->stopTime};
    return view;
}

QString fromDeviceText(const TQ_KORVE::wideText &text)
{
    QString read;
    for (CORBA::ULong position = 0; position < text.length(); ++position)
        read += QChar(text[position]);
    return read;
}

TQ_KORVE::wideText deviceTextOf(const QString &text)
{
    TQ_KORVE::wideText converted;
    converted.length(static_cast<CORBA::ULong>(text.size()));
    std::copy_n(text.utf16(), text.size(), converted.get_buffer());
    return converted;
}

} // namespace installation
