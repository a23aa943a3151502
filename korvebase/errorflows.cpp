#include "korvebase/errorflows.h"

#include <QtGlobal>

// contract: the texts with their blanks, points and words stand as they are; a mark %1 takes the caller's text.
namespace
{

using korve::ErrorText;

constexpr ErrorText adminTexts[] = {
    {210, QT_TRANSLATE_NOOP("QObject", "Could not process request as the Korve is temporarily not reachable.")},
    {211, QT_TRANSLATE_NOOP("QObject", "Could not process request as request not supported by the Korve.")},
    {212, QT_TRANSLATE_NOOP("QObject", "An unknown CORBA exception occurred.")},
    {10000, QT_TRANSLATE_NOOP("QObject", "A recipient for notifications has not been identified. %1")},
    {10001, QT_TRANSLATE_NOOP("QObject", "An unexpected message (method call) has been received. %1")},
    {10002, QT_TRANSLATE_NOOP("QObject", " A method has been called with an argument which is invalid. %1")},
    {10003, QT_TRANSLATE_NOOP("QObject", "No more space on the storage medium. %1")},
    {10004, QT_TRANSLATE_NOOP("QObject", "The accept() call for a socket failed. %1")},
    {10005, QT_TRANSLATE_NOOP("QObject", "The setsockopt() call for a socket failed. %1")},
    {10006, QT_TRANSLATE_NOOP("QObject", "Can't create a socket. %1")},
    {10007, QT_TRANSLATE_NOOP("QObject", "The bind() call for a socket failed. %1")},
    {10008, QT_TRANSLATE_NOOP("QObject", "The listen() call for a socket failed. %1")},
    {10009, QT_TRANSLATE_NOOP("QObject", "A network connection could not be established. %1")},
    {10010, QT_TRANSLATE_NOOP("QObject", "The requested data rate category is currently not available. %1")},
    {10011, QT_TRANSLATE_NOOP("QObject", "An operation on a network device failed. %1")},
    {10012, QT_TRANSLATE_NOOP("QObject", "The specified record Id doesn't match any record. %1")},
    {10013, QT_TRANSLATE_NOOP("QObject", "A network operation failed. %1")},
    {10014, QT_TRANSLATE_NOOP("QObject", "An operation for a pthread failed. %1")},
    {10015, QT_TRANSLATE_NOOP("QObject", "The access to a record failed. %1")},
    {10016, QT_TRANSLATE_NOOP("QObject", "The record is corrupted. %1")},
    {10017, QT_TRANSLATE_NOOP("QObject", "The record could not be created. %1")},
    {10018, QT_TRANSLATE_NOOP("QObject", "The archive could not be created. %1")},
    {10019, QT_TRANSLATE_NOOP("QObject", "KORVE does not support this request in the current state. %1")},
    {10020, QT_TRANSLATE_NOOP("QObject", "No more resources are available. %1")},
    {10021, QT_TRANSLATE_NOOP("QObject", "The session could not be created. %1")},
    {10022, QT_TRANSLATE_NOOP("QObject", "The requested data rate has been exceeded by the recorded signal. %1")},
    {10023, QT_TRANSLATE_NOOP("QObject", "There is no more space left on the storage subsystem. %1")},
    {10024, QT_TRANSLATE_NOOP("QObject", "The access to the index file failed. %1")},
    {10025, QT_TRANSLATE_NOOP("QObject", "The configuration of KORVE is invalid. %1")},
    {10026, QT_TRANSLATE_NOOP("QObject", "The implementation is inconsistent. %1")},
    {10027, QT_TRANSLATE_NOOP("QObject", "The sequence of fileparts is inconsistent. %1")},
    {10028, QT_TRANSLATE_NOOP("QObject", "Error during copying. %1")},
    {10029, QT_TRANSLATE_NOOP("QObject", "The sending of the UDP broadcast sequence failed. %1")},
    {10030, QT_TRANSLATE_NOOP("QObject", "Could not open the Record-List file %1")},
    {10031, QT_TRANSLATE_NOOP("QObject", "Archive directory is already existing %1")},
    {10032, QT_TRANSLATE_NOOP(
                "QObject",
                "The mass storage is classified as too slow. Wideband recordings or replays will not be possible. %1")},
    {10033, QT_TRANSLATE_NOOP(
                "QObject", "The mass storage is classified as defect. No recordings or replays will be possible. %1")},
    {10034, QT_TRANSLATE_NOOP("QObject", "A bookmark with the given time stamp exists already. %1")},
    {20003, QT_TRANSLATE_NOOP("QObject", "The specified record Id doesn't match any record. %1")},
};
static_assert(isInOrder(adminTexts));

constexpr ErrorText setupTexts[] = {
    {0, QT_TRANSLATE_NOOP("QObject", "Interface to device %1 exists.")},
    {50, QT_TRANSLATE_NOOP("QObject", "Corbaloc Reference connection failed. %1.  Device ignored.")},
    {502, QT_TRANSLATE_NOOP("QObject", "Host of device %1 is not reachable.  Device ignored.")},
    {7000, QT_TRANSLATE_NOOP("QObject", "Unknown exception %1.  Device ignored.")},
};
static_assert(isInOrder(setupTexts));

constexpr ErrorText addBookmarkTexts[] = {
    {3, QT_TRANSLATE_NOOP("QObject", "Could not add a bookmark, as the interface to the Korve is not available.")},
    {210, QT_TRANSLATE_NOOP("QObject", "Could not add a bookmark, as the Korve is temporarily not reachable.")},
    {211, QT_TRANSLATE_NOOP("QObject", "Could not add a bookmark, it is possible the interfaces don't match.")},
    {502, QT_TRANSLATE_NOOP("QObject", "Could not add a bookmark, as the Korve is not reachable.")},
    {10002, QT_TRANSLATE_NOOP("QObject", "A bookmark entry with the specified time stamp '%1' already exists.")},
    {10003, QT_TRANSLATE_NOOP("QObject",
                              "Could not add a bookmark, as there is not enough disc space left to add a bookmark.")},
    {10012, QT_TRANSLATE_NOOP(
                "QObject", "Could not add a bookmark, as a record with the specified record id '%1' does not exist.")},
    {10034, QT_TRANSLATE_NOOP("QObject", "The bookmark you are adding already exists for this record id '%1'")},
    {20003, QT_TRANSLATE_NOOP(
                "QObject", "Could not add a bookmark, as a record with the specified record id '%1' does not exist.")},
};
static_assert(isInOrder(addBookmarkTexts));

constexpr ErrorText getBookmarkTexts[] = {
    {3, QT_TRANSLATE_NOOP("QObject", "Could not get a bookmark, as the interface to the Korve is not available.")},
    {210, QT_TRANSLATE_NOOP("QObject", "Could not get a bookmark, as the Korve is temporarily not reachable.")},
    {211, QT_TRANSLATE_NOOP("QObject", "Could not get a bookmark, it is possible the interfaces don't match.")},
    {502, QT_TRANSLATE_NOOP("QObject", "Could not get a bookmark, as the Korve is not reachable.")},
    {10012, QT_TRANSLATE_NOOP(
                "QObject", "Could not get a bookmark, as a record with the specified record id '%1' does not exist.")},
    {20003, QT_TRANSLATE_NOOP(
                "QObject", "Could not get a bookmark, as a record with the specified record id '%1' does not exist.")},
};
static_assert(isInOrder(getBookmarkTexts));

// contract: 10002 speaks of an entry that already exists.
constexpr ErrorText removeBookmarkTexts[] = {
    {3, QT_TRANSLATE_NOOP("QObject", "Could not remove a bookmark, as the interface to the Korve is not available.")},
    {210, QT_TRANSLATE_NOOP("QObject", "Could not remove a bookmark, as the Korve is temporarily not reachable.")},
    {211, QT_TRANSLATE_NOOP("QObject", "Could not remove a bookmark, it is possible the interfaces don't match.")},
    {502, QT_TRANSLATE_NOOP("QObject", "Could not remove a bookmark, as the Korve is not reachable.")},
    {10002, QT_TRANSLATE_NOOP("QObject", "A bookmark entry with the specified time stamp '%1' already exists.")},
    {10012,
     QT_TRANSLATE_NOOP("QObject",
                       "Could not remove a bookmark, as a record with the specified record id '%1' does not exist.")},
    {20003,
     QT_TRANSLATE_NOOP("QObject",
                       "Could not remove a bookmark, as a record with the specified record id '%1' does not exist.")},
};
static_assert(isInOrder(removeBookmarkTexts));

constexpr ErrorText channelTexts[] = {
    {210, QT_TRANSLATE_NOOP("QObject", "Could not process request as the KorveServer is temporarily not reachable. ")},
    {211,
     QT_TRANSLATE_NOOP(
         "QObject",
         "Could not process request as request not supported by the KorveServer. Interfaces may be incompatible. ")},
    {250,
     QT_TRANSLATE_NOOP("QObject",
                       "Channel creation failed due to CORBA naming failure. Korve recording will not be possible. ")},
    {251,
     QT_TRANSLATE_NOOP("QObject",
                       "Channel creation failed due to CORBA naming failure. Korve recording will not be possible. ")},
    {252,
     QT_TRANSLATE_NOOP("QObject",
                       "Channel creation failed due to CORBA naming failure. Korve recording will not be possible. ")},
    {253, QT_TRANSLATE_NOOP("QObject", "Channel creation failed due to CCO exception. Possible system "
                                       "misconfiguration. Korve recording will not be possible. ")},
    {254, QT_TRANSLATE_NOOP("QObject", "Channel creation failed due to CCO exception. Possible system "
                                       "misconfiguration. Korve recording will not be possible. ")},
    {255, QT_TRANSLATE_NOOP("QObject", "Channel creation failed due to CCO exception. Possible system "
                                       "misconfiguration. Korve recording will not be possible. ")},
    {300, QT_TRANSLATE_NOOP("QObject", "Channel to the KorveServer is not available. ")},
};
static_assert(isInOrder(channelTexts));

// What starting a replay and acting on one have in common.
constexpr ErrorText replayTexts[] = {
    {210, QT_TRANSLATE_NOOP("QObject", "Could not complete replaying work flow as channel manager not reachable.")},
    {211, QT_TRANSLATE_NOOP("QObject",
                            "Could not complete replaying work flow as channel manager interface seems incompatible.")},
    {750, QT_TRANSLATE_NOOP("QObject", "IPC could not be started")},
    {751, QT_TRANSLATE_NOOP("QObject", "IPC could not be stopped")},
    {752, QT_TRANSLATE_NOOP("QObject", "Resources not available")},
    {753, QT_TRANSLATE_NOOP("QObject", "Replay requested for an unknown channel")},
    {754, QT_TRANSLATE_NOOP("QObject", "The data flow for a replay could not be started.")},
    {755, QT_TRANSLATE_NOOP("QObject", "Channel is not active")},
    {756, QT_TRANSLATE_NOOP("QObject", "Could not connect to device for replay.")},
    {757, QT_TRANSLATE_NOOP("QObject", "Could not disconnect from device")},
    {758, QT_TRANSLATE_NOOP("QObject", "unknown exception occurred when on starting or stopping a replay")},
    {760, QT_TRANSLATE_NOOP("QObject", "Can not stop the data transfer because we are not in replaying mode.")},
    {7000,
     QT_TRANSLATE_NOOP(
         "QObject",
         "Could not complete replaying work flow as unknown exception occurred while stopping or starting a replay.")},
};
static_assert(isInOrder(replayTexts));

constexpr ErrorText startReplayTexts[] = {
    {27, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as replay ranges have empty values. Please try again "
                                      "making sure the ranges exist. %1")},
    {28, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as replay begin and end have the same values. Please "
                                      "reset the ranges and then try again. %1")},
    {29, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as replay begin is greater then replay end value. "
                                      "Please reset the ranges and then try again. %1")},
    {761, QT_TRANSLATE_NOOP("QObject", "Channel is not enabled for replaying.")},
    {766, QT_TRANSLATE_NOOP("QObject", "Failed to get the ReplaySession by Id.! %1")},
    {768, QT_TRANSLATE_NOOP("QObject", "StartReplaying called in wrong state.")},
    {769, QT_TRANSLATE_NOOP("QObject", "Internal lists for deviceIds don't match! %1")},
    {770, QT_TRANSLATE_NOOP("QObject", "Can not connect to the ChannelManager for Replay.")},
    {780, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started XG Interface expected but not set. %1")},
    {781, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started wrong mac address passed by korve. %1")},
    {900, QT_TRANSLATE_NOOP("QObject", "An illegal interface has been specified. Cannot perform a replay! %1")},
    {901, QT_TRANSLATE_NOOP(
              "QObject", "The sequence to perform the replay operation is not correct. Cannot perform a replay! %1")},
    {902, QT_TRANSLATE_NOOP("QObject", "Connection could not be established to perform a replay! %1")},
    {903, QT_TRANSLATE_NOOP("QObject",
                            "An error occurred trying to setup the replay and unable to close the connection.! %1")},
    {904, QT_TRANSLATE_NOOP("QObject", "The data stream requested is not available. Cannot perform a replay! %1")},
    {905, QT_TRANSLATE_NOOP("QObject", "An interface fault occurred. Cannot perform a replay! %1")},
    {906,
     QT_TRANSLATE_NOOP("QObject", "An unknown error calling a LLDC interface occurred. Cannot perform a replay! %1")},
};
static_assert(isInOrder(startReplayTexts));

constexpr ErrorText controlReplayTexts[] = {
    {767, QT_TRANSLATE_NOOP("QObject", "Replay data transfer could not be started. Cannot perform replay request!")},
    {771, QT_TRANSLATE_NOOP("QObject", "Can not pause the data transfer because we are not in replaying mode.")},
    {901,
     QT_TRANSLATE_NOOP(
         "QObject", "The sequence to perform the replay operation is not correct. Cannot perform replay request! %1")},
};
static_assert(isInOrder(controlReplayTexts));

// contract: nothing fills the mark of 850.
constexpr ErrorText startRecordingTexts[] = {
    {753, QT_TRANSLATE_NOOP("QObject", "Recording cannot be performed due to error setting up recording.")},
    {755, QT_TRANSLATE_NOOP(
              "QObject",
              "Channel is not enabled for recording. Set the RecordFlag to true before trying to start a recording.")},
    {756, QT_TRANSLATE_NOOP("QObject", "Unable to connect to data source. Recording session creation failed.")},
    {803, QT_TRANSLATE_NOOP("QObject", "There is no capacity on any KORVE device to perform a recording.")},
    {850, QT_TRANSLATE_NOOP("QObject", "Channel is not ready for recording %1.")},
    {851, QT_TRANSLATE_NOOP("QObject", "Could not create notification receiver for KORVE device.")},
    {852, QT_TRANSLATE_NOOP("QObject", "Could not initialize the recording session handler.")},
    {853, QT_TRANSLATE_NOOP("QObject",
                            "Could not create the recording session do to failure of retrieving the KORVE interface.")},
    {854, QT_TRANSLATE_NOOP("QObject", "Internal error, as number of needed KORVE devices differ.")},
    {855, QT_TRANSLATE_NOOP("QObject", "Got invalid connection id when calling connectToIf on KORVE.")},
    {900,
     QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. An illegal interface has been specified.")},
    {901,
     QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. Invalid workflow for recording performed.")},
    {902, QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. Connection could not be established.")},
    {903, QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. Unable to close connection.")},
    {904,
     QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. The data stream requested is not available.")},
    {905, QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. An interface fault occurred.")},
    {906, QT_TRANSLATE_NOOP("QObject", "Not possible to perform a recording. An unknown error occurred.")},
    {907, QT_TRANSLATE_NOOP("QObject",
                            "Not possible to perform a recording. DataRate is not available for requested interface.")},
    {10010, QT_TRANSLATE_NOOP("QObject", "The requested data rate category is currently not available.")},
    {10032, QT_TRANSLATE_NOOP(
                "QObject",
                "The mass storage is classified as too slow. Wideband recordings or replays will not be possible.")},
    {10033, QT_TRANSLATE_NOOP("QObject",
                              "The mass storage is classified as defect. No recordings or replays will be possible.")},
};
static_assert(isInOrder(startRecordingTexts));

constexpr ErrorText stopRecordingTexts[] = {
    {755, QT_TRANSLATE_NOOP("QObject", "Channel is not enabled for recording. There is nothing to do.")},
};
static_assert(isInOrder(stopRecordingTexts));

constexpr ErrorText historyTexts[] = {
    {5, QT_TRANSLATE_NOOP(
            "QObject",
            "The required transmission interface to the korve server is not available. Please try again later.")},
    {101, QT_TRANSLATE_NOOP("QObject",
                            "The korve server seems to be down. Make sure it is up and running and try again later.")},
    {210, QT_TRANSLATE_NOOP("QObject", "A transmission error has occurred. Please try again later.")},
    {211, QT_TRANSLATE_NOOP("QObject", "The interfaces between client and server don't match. Please check that the "
                                       "client and server software versions are compatible.")},
    {7000, QT_TRANSLATE_NOOP("QObject", "An unknown error has occurred.")},
};
static_assert(isInOrder(historyTexts));

constexpr const char *undetermined = QT_TRANSLATE_NOOP("QObject", "Text for error id cannot be determined.");
constexpr const char *otherSetup = QT_TRANSLATE_NOOP("QObject", "Could not process device process request.");
constexpr const char *otherAddBookmark =
    QT_TRANSLATE_NOOP("QObject", "Could not add a bookmark, as an unspecified exception occurred.");
constexpr const char *otherGetBookmark =
    QT_TRANSLATE_NOOP("QObject", "Could not get a bookmark, as an unspecified exception occurred.");
constexpr const char *otherRemoveBookmark =
    QT_TRANSLATE_NOOP("QObject", "Could not remove a bookmark, as an unspecified exception occurred.");
constexpr const char *otherReplay = QT_TRANSLATE_NOOP("QObject", "Could not process get replaying request.");
constexpr const char *otherRecording = QT_TRANSLATE_NOOP("QObject", "Could not process get recording request.");

} // namespace

namespace korve::errorflow
{

constinit const ErrorFlow admin{adminTexts, {}, undetermined};
constinit const ErrorFlow setup{setupTexts, {}, otherSetup};
constinit const ErrorFlow addBookmark{addBookmarkTexts, {}, otherAddBookmark};
constinit const ErrorFlow getBookmark{getBookmarkTexts, {}, otherGetBookmark};
constinit const ErrorFlow removeBookmark{removeBookmarkTexts, {}, otherRemoveBookmark};
constinit const ErrorFlow channel{channelTexts, {}, undetermined};
constinit const ErrorFlow startReplay{startReplayTexts, replayTexts, otherReplay};
constinit const ErrorFlow controlReplay{controlReplayTexts, replayTexts, otherReplay};
constinit const ErrorFlow startRecording{startRecordingTexts, {}, otherRecording};
constinit const ErrorFlow stopRecording{stopRecordingTexts, {}, otherRecording};
constinit const ErrorFlow history{historyTexts, {}, nullptr};

} // namespace korve::errorflow
