#pragma once

#include "korvebase/korvebase_export.h"
#include "korvebase/korvedatatypes.h"

#include "objectmodel/korve_recorddata.h"
#include "objectmodel/netifparams.h"

#include "idl/korvemanager.hh"

#include <QHash>

/// The object model in the structures and numberings of the recorder manager, and back.
///
/// A text that is absent goes out as "". Index entries carry sample rate and bandwidth in 32 bits; more is cut off.
/// Thread: any.  Errors: never fails; an unknown number is traced, where that is not said otherwise, and falls back.
namespace KorveCommon::CorbaToClientConverter
{

/// Appends all of @p sequence to @p records; true if there are any records afterwards, from here or before.
KORVEBASE_EXPORT bool convertRecords(const TQ_KRV::seqRECORD_DATA &sequence,
                                     QVector<KORVE_XML::KORVE_RecordData> &records);
/// Clears each entry of @p sequence once it is converted, so that the records take over its memory, still in the cache.
KORVEBASE_EXPORT bool convertRecords(TQ_KRV::seqRECORD_DATA &&sequence,
                                     QVector<KORVE_XML::KORVE_RecordData> &records);
/// Sets what @p data has. Its index, bookmark and history entries come behind those that @p record has already.
KORVEBASE_EXPORT void fillRecordData(KORVE_XML::KORVE_RecordData &record, const TQ_KRV::struRECORD_DATA &data);
KORVEBASE_EXPORT void fillBookmarkEntry(KORVE_XML::BookmarkEntry &entry, const TQ_KRV::struBookmarkEntry &data);
KORVEBASE_EXPORT void fillHistoryEntry(KORVE_XML::HistoryEntry &entry, const TQ_KRV::struHistoryEntry &data);

KORVEBASE_EXPORT void fillCorbaBookmarkEntry(TQ_KRV::struBookmarkEntry &data, const KORVE_XML::BookmarkEntry &entry);
/// The caller owns the result.
KORVEBASE_EXPORT TQ_KRV::struRECORD_DATA *toCorbaRecordData(const KORVE_XML::KORVE_RecordData &record);
/// The second half of the structure is filled for a record of exactly two index entries. The caller owns the result.
KORVEBASE_EXPORT TQ_KRV::struMETA_DATA *toCorbaMetaData(const KORVE_XML::KORVE_RecordData &record);
/// Stands in for a missing record in a reply. The caller owns the result.
KORVEBASE_EXPORT TQ_KRV::struRECORD_DATA *dummyCorbaRecordData();
/// In the order of the hash. The caller owns the result.
KORVEBASE_EXPORT TQ_KRV::seqRECORD_DATA *
toCorbaRecordDataSeq(const QHash<QString, KORVE_XML::KORVE_RecordData> &records);

KORVEBASE_EXPORT TQ_KRV::eDATARATE_CLASS convertDataRateClassFromXml(KORVE_XML::KORVE_RecordData::DataRate rate);
KORVEBASE_EXPORT TQ_KRV::eRECORD_STATUS convertRecordStatusFromXml(KORVE_XML::KORVE_RecordData::RecordStatus status);
KORVEBASE_EXPORT TQ_KRV::eDATA_FORMAT convertDataFormatFromXml(KORVE_XML::KORVE_RecordData::DataFormat format);
/// TCP_IF, untraced, for an unknown type.
KORVEBASE_EXPORT TQ_KRV::interfaceTypeEnum
convertKorveInterfaceTypeFromXml(KORVE_XML::NetIfParams::KorveInterfaceType type);
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::RecordStatus convertRecordStatusFromClient(TQ_KRV::eRECORD_STATUS status);
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::DataFormat convertDataFormatFromClient(TQ_KRV::eDATA_FORMAT format);
KORVEBASE_EXPORT KORVE_XML::KORVE_RecordData::DataRate convertDataRateClassFromClient(TQ_KRV::eDATARATE_CLASS rate);
/// TCP_IF, untraced, for an unknown type.
KORVEBASE_EXPORT KORVE_XML::NetIfParams::KorveInterfaceType convertKorveInterfaceType(TQ_KRV::interfaceTypeEnum type);
/// A rectangle, untraced, for an unknown window.
KORVEBASE_EXPORT TQ_KRV::eFFT_WINDOWING_MODES convertWindowingModes(KorveDataTypes::eFFT_Window window);

} // namespace KorveCommon::CorbaToClientConverter
