#pragma once

#include "installation/recorder/record.h"
#include "installation/recorder/recordfolder.h"
#include "installation/recorder/recordparts.h"

#include "idl/korve.hh"

namespace installation::recorder
{

// A record in the structures of the device's contract.

/// A file of a record, as an entry of a list of records: name and size, and nothing else.
TQ_KORVE::struMETA_DATA toFileEntry(const RecordFile &file);
/// Its name as `recordID` and the reason as `recordName`, and nothing else.
TQ_KORVE::struMETA_DATA toRefusedEntry(const RefusedFile &file);
TQ_KORVE::struMETA_DATA toMetaData(const RecordSummary &record);
/// Receiver settings are those of the first index entry, 0 without one.
TQ_KORVE::struRECORD_DETAILS toDetails(const Record &record);
TQ_KORVE::struINDEX_ENTRY toIndexEntry(const IndexEntry &entry);
TQ_KORVE::struBookmarkEntry toBookmark(const Note &bookmark);
TQ_KORVE::struHistoryEntry toHistoryEntry(const Note &entry);
/// Unit by unit, without an end.
TQ_KORVE::wideText toWideText(const QString &text);
QString fromWideText(const TQ_KORVE::wideText &text);
/// The caller owns it.
TQ_KORVE::seqOctet *toOctets(const QByteArray &bytes);
QVector<FilePart> fromFileParts(const TQ_KORVE::seqFILE_PART &parts);

} // namespace installation::recorder
