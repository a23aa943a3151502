#pragma once

#include "korvebase/literal.h"

/// The paths of the value tree, whole or as parts behind a device or subsystem, and the names of remote objects.
namespace korve::path
{

// Holder of foreign subsystems at a client.
inline constexpr QLatin1String subSystems = literal("/SubSystems");

// The recorder's tree and its branches.
inline constexpr QLatin1String root = literal("/KORVE");
inline constexpr QLatin1String channel = literal("/KORVE/Channel");
inline constexpr QLatin1String command = literal("/KORVE/Command");
inline constexpr QLatin1String exportCommand = literal("/KORVE/Command/Export");
inline constexpr QLatin1String connection = literal("/KORVE/Connection");
inline constexpr QLatin1String device = literal("/KORVE/Device");
inline constexpr QLatin1String local = literal("/KORVE/Local");

// Below a device: what it reports.
inline constexpr QLatin1String status = literal("/Status");
inline constexpr QLatin1String statusArchive = literal("/Status/Archive");
inline constexpr QLatin1String statusVersion = literal("/Status/Version");
inline constexpr QLatin1String statusAvailableDataRates = literal("/Status/AvailableDataRates");
inline constexpr QLatin1String statusOccupiedDataRates = literal("/Status/OccupiedDataRates");
inline constexpr QLatin1String statusSupportedDataRates = literal("/Status/SupportedDataRates");
inline constexpr QLatin1String statusResourceStatusMap = literal("/Status/ResourceStatusMap");
inline constexpr QLatin1String statusDiscSpace = literal("/Status/DiscSpace");
inline constexpr QLatin1String statusDSQualityIndex = literal("/Status/DiscSpace/DSQualityIndex");
inline constexpr QLatin1String statusDSQualityStorage = literal("/Status/DiscSpace/DSQualityStorage");

// Below a device: its records.
inline constexpr QLatin1String records = literal("/Records");
inline constexpr QLatin1String recordsMap = literal("/Records/Map");
inline constexpr QLatin1String recordsLoadCount = literal("/Records/LoadCount");
// contract: spelled so on both sides
inline constexpr QLatin1String recordsLoadedCompletly = literal("/Records/LoadedCompletly");
inline constexpr QLatin1String recordsDeletionCount = literal("/Records/DeletionCount");

// The archive, below the recorder's root and by itself.
inline constexpr QLatin1String archive = literal("/Archive");

// Below a device.
inline constexpr QLatin1String admin = literal("/Admin");
inline constexpr QLatin1String bite = literal("/Bite");
inline constexpr QLatin1String bit = literal("/Bit");
inline constexpr QLatin1String cmd = literal("/Cmd");
inline constexpr QLatin1String index = literal("/Index");
inline constexpr QLatin1String dummy = literal("/Dummy");
inline constexpr QLatin1String korveBite = literal("/KORVE_Bite");
inline constexpr QLatin1String biteCommand = literal("/BiteCommand");
inline constexpr QLatin1String localBitTolerance = literal("/LocalBitTolerance");
inline constexpr QLatin1String healthState = literal("/HealthState");
inline constexpr QLatin1String checkOrbConnection = literal("/CheckOrbConnection");

// Below the archive.
inline constexpr QLatin1String archiveAction = literal("/ArchiveAction");
inline constexpr QLatin1String archiveCommand = literal("/ArchiveCommand");
inline constexpr QLatin1String archvieCmdResult = literal("/ArchvieCmdResult"); // contract: spelled so on both sides
inline constexpr QLatin1String idList = literal("/IdList");
inline constexpr QLatin1String currentItem = literal("/CurrentItem");
inline constexpr QLatin1String processedItem = literal("/ProcessedItem");

// Names at the central object service.
inline constexpr QLatin1String managerInterface = literal("/CentralServices/KorveManager/IF_KRV_c_KRV");
inline constexpr QLatin1String localSystem = literal("CCO/LocalSystem/");
inline constexpr QLatin1String valueTreeConnection = literal("KorveManager/VTConnect");

} // namespace korve::path
