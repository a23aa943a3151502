#pragma once

#include "korvebase/korvebase_export.h"

#include "objectmodel/korve_recorddata.h"

#include "idl/korve.hh"

/// The structures and numberings of a recorder device in those of the object model, and the numberings back.
///
/// Thread: any.  Errors: never fails; an unknown number is traced and falls back to HF_20k, RAW or IDLE.
namespace KorveCommon::CorbaToDeviceConverter
{

/// Sets what @p metaData has. The entries come behind those that @p record has already.
KORVEBASE_EXPORT void fillRecordData(KORVE_XML::KORVE_RecordData &record, const TQ_KORVE::struMETA_DATA &metaData,
                                     const TQ_KORVE::seqINDEX_ENTRY &index, const TQ_KORVE::seqBookmarks &bookmarks,
                                     const TQ_KORVE::seqHistory &history);
KORVEBASE_EXPORT void fillRecordData(KORVE_XML::KORVE_RecordData &record, const TQ_KORVE::struMETA_DATA &metaData);
/// Appends a new record per entry. One that could not be written as XML and read back is appended too, and traced.
KORVEBASE_EXPORT void fillRecordData(QVector<KORVE_XML::KORVE_RecordData> &records,
                                     const TQ_KORVE::seqMETA_DATA &metaData);
KORVEBASE_EXPORT void fillIndexEntry(KORVE_XML::IndexEntry &entry, const TQ_KORVE::struINDEX_ENTRY &data);
KORVEBASE_EXPORT void fillBookmarkEntry(KORVE_XML::BookmarkEntry &entry, const TQ_KORVE::struBookmarkEntry &data);
KORVEBASE_EXPORT void fillHistoryEntry(KORVE_XML::HistoryEntry &entry, const TQ_KORVE::struHistoryEntry &data);

KORVEBASE_EXPORT TQ_KORVE::eDATARATE_CLASS convertDataRateFromXml(KORVE_XML::KORVE_RecordData::DataRate rate);
KORVEBASE_EXPORT TQ_KORVE::eDATA_FORMAT convertDataFormatFromXml(KORVE_XML::KORVE_RecordData::DataFormat format);
/// The name of the window, or a text that says that there is none.
KORVEBASE_EXPORT QString convertWindowingModesToString(TQ_KORVE::eFFT_WINDOWING_MODES window);

// These take a literal of the like-named TQ_KORVE enumeration, or the number for it in a device's metadata.
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::RecordStatus convertRecordStatusFromKorve(unsigned int status);
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::DataFormat convertDataFormatFromKorve(unsigned int format);
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::DataRate convertDataRateClassFromKorve(unsigned int rate);

} // namespace KorveCommon::CorbaToDeviceConverter
