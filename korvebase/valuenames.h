#pragma once

#include "korvebase/literal.h"

/// The names that values of the tree and words of commands have, the same on both sides of a connection.
namespace korve::name
{

inline constexpr QLatin1String AddArchive = literal("AddArchive");
inline constexpr QLatin1String Admin = literal("Admin");
inline constexpr QLatin1String AllRecordReplayModes = literal("AllRecordReplayModes");
inline constexpr QLatin1String AllRecordsHaveChanged = literal("AllRecordsHaveChanged");
inline constexpr QLatin1String AllowedDevices = literal("AllowedDevices");
inline constexpr QLatin1String KorveAvailable = literal("KorveAvailable");
inline constexpr QLatin1String ArchiveAction = literal("ArchiveAction");
inline constexpr QLatin1String ArchiveCommand = literal("ArchiveCommand");
inline constexpr QLatin1String ArchiveURL = literal("ArchiveURL");
inline constexpr QLatin1String AutoDeletionCounter = literal("AutoDeletionCounter");
inline constexpr QLatin1String AvailableDataRateClass = literal("AvailableDataRateClass");
inline constexpr QLatin1String AvailableDataRateClass2 = literal("AvailableDataRateClass2");
inline constexpr QLatin1String AvailableDevices = literal("AvailableDevices");
inline constexpr QLatin1String ChannelName = literal("ChannelName");
inline constexpr QLatin1String ConfiguredDevices = literal("ConfiguredDevices");
inline constexpr QLatin1String CopyFromArchive = literal("CopyFromArchive");
inline constexpr QLatin1String CopyToArchive = literal("CopyToArchive");
inline constexpr QLatin1String CurrentID = literal("CurrentID");
inline constexpr QLatin1String CurrentItem = literal("CurrentItem");
inline constexpr QLatin1String CurrentReplayPosition = literal("CurrentReplayPosition");
inline constexpr QLatin1String DSQualityIndex = literal("DSQualityIndex");
inline constexpr QLatin1String DSQualityStorage = literal("DSQualityStorage");
inline constexpr QLatin1String DataFormat = literal("DataFormat");
inline constexpr QLatin1String DataRateClass = literal("DataRateClass");
inline constexpr QLatin1String DeleteFromArchive = literal("DeleteFromArchive");
inline constexpr QLatin1String DeleteRecordingList = literal("DeleteRecordingList");
inline constexpr QLatin1String DeletionCount = literal("DeletionCount");
inline constexpr QLatin1String DeviceAddress = literal("DeviceAddress");
inline constexpr QLatin1String DeviceID = literal("DeviceID");
inline constexpr QLatin1String DeviceInfo = literal("DeviceInfo");
inline constexpr QLatin1String DeviceName = literal("DeviceName");
inline constexpr QLatin1String DeviceStatus = literal("DeviceStatus");
inline constexpr QLatin1String DeviceType = literal("DeviceType");
inline constexpr QLatin1String DiscSpace = literal("DiscSpace");
inline constexpr QLatin1String Duration = literal("Duration");
inline constexpr QLatin1String ErrorCode = literal("ErrorCode");
inline constexpr QLatin1String Extended = literal("Extended");
inline constexpr QLatin1String ExtendedVersion = literal("ExtendedVersion");
inline constexpr QLatin1String FileSize = literal("FileSize");
inline constexpr QLatin1String FileSizeInKB = literal("FileSizeInKB");
inline constexpr QLatin1String FirmwareVersion = literal("FirmwareVersion");
inline constexpr QLatin1String GBAvailable = literal("GBAvailable");
inline constexpr QLatin1String GBTotal = literal("GBTotal");
inline constexpr QLatin1String IdList = literal("IdList");
inline constexpr QLatin1String IpAddress = literal("IpAddress");
inline constexpr QLatin1String IsDeletable = literal("IsDeletable");
inline constexpr QLatin1String IsVirtual = literal("IsVirtual");
inline constexpr QLatin1String LoadCount = literal("LoadCount");
inline constexpr QLatin1String LoadedCompletly = literal("LoadedCompletly"); // contract: spelled so on both sides
inline constexpr QLatin1String LocalSubSystem = literal("LocalSubSystem");
inline constexpr QLatin1String LoopSize = literal("LoopSize");
inline constexpr QLatin1String NoOfReplays = literal("NoOfReplays");
inline constexpr QLatin1String NoOfSessions = literal("NoOfSessions");
inline constexpr QLatin1String OneRecordHasChanged = literal("OneRecordHasChanged");
inline constexpr QLatin1String PauseSupported = literal("PauseSupported");
inline constexpr QLatin1String Pending = literal("Pending");
inline constexpr QLatin1String ProcessedItem = literal("ProcessedItem");
inline constexpr QLatin1String PelinRegistrationMode = literal("PelinRegistrationMode");
inline constexpr QLatin1String TovalSWVersion = literal("TovalSWVersion"); // contract: spelled so on both sides
inline constexpr QLatin1String Reboot = literal("Reboot");
inline constexpr QLatin1String RecordCounterStartTime = literal("RecordCounterStartTime");
inline constexpr QLatin1String RecordFlag = literal("RecordFlag");
inline constexpr QLatin1String RecordID = literal("RecordID");
inline constexpr QLatin1String RecordName = literal("RecordName");
inline constexpr QLatin1String RecordReplayModes = literal("RecordReplayModes");
inline constexpr QLatin1String RecordStatus = literal("RecordStatus");
inline constexpr QLatin1String RecordTimeout = literal("RecordTimeout");
inline constexpr QLatin1String RecordingSession = literal("RecordingSession");
inline constexpr QLatin1String Records = literal("Records");
inline constexpr QLatin1String RemoteConfiguration = literal("RemoteConfiguration");
inline constexpr QLatin1String ReplayBegin = literal("ReplayBegin");
inline constexpr QLatin1String ReplayDataRateClass = literal("ReplayDataRateClass");
inline constexpr QLatin1String ReplayEnd = literal("ReplayEnd");
inline constexpr QLatin1String ReplayFlag = literal("ReplayFlag");
inline constexpr QLatin1String ReplayMode = literal("ReplayMode");
inline constexpr QLatin1String RequestedSampleRate = literal("RequestedSampleRate");
inline constexpr QLatin1String RequestedSampleSize = literal("RequestedSampleSize");
inline constexpr QLatin1String Restart = literal("Restart");
inline constexpr QLatin1String SerialNumber = literal("SerialNumber");
inline constexpr QLatin1String SetRecordIdle = literal("SetRecordIdle");
inline constexpr QLatin1String Shutdown = literal("Shutdown");
inline constexpr QLatin1String StartPosition = literal("StartPosition");
inline constexpr QLatin1String StartTime = literal("StartTime");
inline constexpr QLatin1String Status = literal("Status");
inline constexpr QLatin1String StopPosition = literal("StopPosition");
inline constexpr QLatin1String StopTime = literal("StopTime");
inline constexpr QLatin1String SupportsXGInterface = literal("SupportsXGInterface");
inline constexpr QLatin1String SyncOneRecord = literal("SyncOneRecord");
inline constexpr QLatin1String Synchronize = literal("Synchronize");
inline constexpr QLatin1String TriggeredByCorbaCall = literal("TriggeredByCorbaCall");
inline constexpr QLatin1String Version = literal("Version");

/// Stands where nobody has filled in a text yet.
inline constexpr QLatin1String toBeDefined = literal("*** TO BE DEFINED !!! ***");

} // namespace korve::name
