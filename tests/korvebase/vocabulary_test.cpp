#include "korvebase/valuenames.h"
#include "korvebase/valuetreepaths.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace
{
using namespace korve;

struct Word {
    QLatin1String constant;
    const char *text; // by hand: what stands on the other side
};

#define WORD(word) Word{name::word, #word}
const Word names[] = {
    WORD(AddArchive), WORD(Admin), WORD(AllRecordReplayModes), WORD(AllRecordsHaveChanged), WORD(AllowedDevices),
    WORD(KorveAvailable), WORD(ArchiveAction), WORD(ArchiveCommand), WORD(ArchiveURL), WORD(AutoDeletionCounter),
    WORD(AvailableDataRateClass), WORD(AvailableDataRateClass2), WORD(AvailableDevices), WORD(ChannelName),
    WORD(ConfiguredDevices), WORD(CopyFromArchive), WORD(CopyToArchive), WORD(CurrentID), WORD(CurrentItem),
    WORD(CurrentReplayPosition), WORD(DSQualityIndex), WORD(DSQualityStorage), WORD(DataFormat), WORD(DataRateClass),
    WORD(DeleteFromArchive), WORD(DeleteRecordingList), WORD(DeletionCount), WORD(DeviceAddress), WORD(DeviceID),
    WORD(DeviceInfo), WORD(DeviceName), WORD(DeviceStatus), WORD(DeviceType), WORD(DiscSpace), WORD(Duration),
    WORD(ErrorCode), WORD(Extended), WORD(ExtendedVersion), WORD(FileSize), WORD(FileSizeInKB), WORD(FirmwareVersion),
    WORD(GBAvailable), WORD(GBTotal), WORD(IdList), WORD(IpAddress), WORD(IsDeletable), WORD(IsVirtual),
    WORD(LoadCount), WORD(LoadedCompletly), WORD(LocalSubSystem), WORD(LoopSize), WORD(NoOfReplays),
    WORD(NoOfSessions), WORD(OneRecordHasChanged), WORD(PauseSupported), WORD(Pending), WORD(ProcessedItem),
    WORD(PelinRegistrationMode), WORD(TovalSWVersion), WORD(Reboot), WORD(RecordCounterStartTime), WORD(RecordFlag),
    WORD(RecordID), WORD(RecordName), WORD(RecordReplayModes), WORD(RecordStatus), WORD(RecordTimeout),
    WORD(RecordingSession), WORD(Records), WORD(RemoteConfiguration), WORD(ReplayBegin), WORD(ReplayDataRateClass),
    WORD(ReplayEnd), WORD(ReplayFlag), WORD(ReplayMode), WORD(RequestedSampleRate), WORD(RequestedSampleSize),
    WORD(Restart), WORD(SerialNumber), WORD(SetRecordIdle), WORD(Shutdown), WORD(StartPosition), WORD(StartTime),
    WORD(Status), WORD(StopPosition), WORD(StopTime), WORD(SupportsXGInterface), WORD(SyncOneRecord),
    WORD(Synchronize), WORD(TriggeredByCorbaCall), WORD(Version),
};
#undef WORD

const Word paths[] = {
    {path::subSystems, "/SubSystems"},
    {path::root, "/KORVE"},
    {path::channel, "/KORVE/Channel"},
    {path::command, "/KORVE/Command"},
    {path::exportCommand, "/KORVE/Command/Export"},
    {path::connection, "/KORVE/Connection"},
    {path::device, "/KORVE/Device"},
    {path::local, "/KORVE/Local"},
    {path::status, "/Status"},
    {path::statusArchive, "/Status/Archive"},
    {path::statusVersion, "/Status/Version"},
    {path::statusAvailableDataRates, "/Status/AvailableDataRates"},
    {path::statusOccupiedDataRates, "/Status/OccupiedDataRates"},
    {path::statusSupportedDataRates, "/Status/SupportedDataRates"},
    {path::statusResourceStatusMap, "/Status/ResourceStatusMap"},
    {path::statusDiscSpace, "/Status/DiscSpace"},
    {path::statusDSQualityIndex, "/Status/DiscSpace/DSQualityIndex"},
    {path::statusDSQualityStorage, "/Status/DiscSpace/DSQualityStorage"},
    {path::records, "/Records"},
    {path::recordsMap, "/Records/Map"},
    {path::recordsLoadCount, "/Records/LoadCount"},
    {path::recordsLoadedCompletly, "/Records/LoadedCompletly"},
    {path::recordsDeletionCount, "/Records/DeletionCount"},
    {path::archive, "/Archive"},
    {path::admin, "/Admin"},
    {path::bite, "/Bite"},
    {path::bit, "/Bit"},
    {path::cmd, "/Cmd"},
    {path::index, "/Index"},
    {path::dummy, "/Dummy"},
    {path::korveBite, "/KORVE_Bite"},
    {path::biteCommand, "/BiteCommand"},
    {path::localBitTolerance, "/LocalBitTolerance"},
    {path::healthState, "/HealthState"},
    {path::checkOrbConnection, "/CheckOrbConnection"},
    {path::archiveAction, "/ArchiveAction"},
    {path::archiveCommand, "/ArchiveCommand"},
    {path::archvieCmdResult, "/ArchvieCmdResult"},
    {path::idList, "/IdList"},
    {path::currentItem, "/CurrentItem"},
    {path::processedItem, "/ProcessedItem"},
    {path::managerInterface, "/CentralServices/KorveManager/IF_KRV_c_KRV"},
    {path::localSystem, "CCO/LocalSystem/"},
    {path::valueTreeConnection, "KorveManager/VTConnect"},
};

template <std::size_t count> void expectTexts(const Word (&words)[count])
{
    std::set<std::string> texts;
    for (const Word &word : words) {
        EXPECT_EQ(std::string(word.constant.data(), word.constant.size()), word.text);
        texts.insert(word.text);
    }
    EXPECT_EQ(texts.size(), count) << "each once";
}

TEST(Vocabulary, NamesValuesAsTheOtherSideDoes)
{
    EXPECT_EQ(std::size(names), 91u);
    expectTexts(names);
    EXPECT_EQ(QString(name::toBeDefined).toStdString(), "*** TO BE DEFINED !!! ***");
}

TEST(Vocabulary, NamesPathsAsTheOtherSideDoes)
{
    EXPECT_EQ(std::size(paths), 44u);
    expectTexts(paths);
}
} // namespace
