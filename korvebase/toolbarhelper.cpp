#include "korvebase/toolbarhelper.h"

#include "korvebase/errorflows.h"

#include <QHash>
#include <QObject>

// contract: the messages stand as they are, misspellings included.
namespace
{

using korve::ErrorText;

constexpr ErrorText actionTexts[] = {
    {100,
     QT_TRANSLATE_NOOP(
         "QObject",
         "While trying to send the replay pause request to the korve manager server an unknown exception occured.")},
    {101, QT_TRANSLATE_NOOP("QObject", "Cannot connect to the replay interface on the korve manager server.")},
    {105,
     QT_TRANSLATE_NOOP(
         "QObject",
         "While trying to send the restart replay request to the korve manager server an unknown exception occured.")},
    {150, QT_TRANSLATE_NOOP("QObject", "Cannot copy as there is no record information available.")},
    {151, QT_TRANSLATE_NOOP("QObject", "Cannot copy as record is currently not in idle state.")},
    {152, QT_TRANSLATE_NOOP("QObject", "Cannot copy as interface not available on server.")},
    {153, QT_TRANSLATE_NOOP("QObject", "Cannot copy as invalid device id specified.")},
    {160, QT_TRANSLATE_NOOP("QObject", "Cannot copy as server is not reachable.")},
    {201, QT_TRANSLATE_NOOP("QObject", "Korve server is not reachable.")},
    {202,
     QT_TRANSLATE_NOOP("QObject", "Incorrect device id. Could not retrieve the record data from the korve server.")},
    {203, QT_TRANSLATE_NOOP(
              "QObject", "Could not retrieve the record data from the korve server. Unknown programm error occured.")},
    {204, QT_TRANSLATE_NOOP("QObject", "Could not retrieve the record data from the korve server. Incompatible "
                                       "interface between client and server.")},
    {205, QT_TRANSLATE_NOOP(
              "QObject", "Could not retrieve the record data from the korve server. Unknown programm error occured.")},
    {250, QT_TRANSLATE_NOOP("QObject", "Could not retrieve the record information.")},
    {251, QT_TRANSLATE_NOOP("QObject", "Could not retrieve the record information as RecordId not available.")},
    {252, QT_TRANSLATE_NOOP("QObject", "Could not retrieve the record information as no device available.")},
    {253, QT_TRANSLATE_NOOP("QObject", "Unknown error occurred while trying to start the replay. Setting to stopped.")},
    {254, QT_TRANSLATE_NOOP("QObject",
                            "Unknown error occurred while trying to start the continuous replay. Setting to stopped.")},
    {255, QT_TRANSLATE_NOOP("QObject", "Unknown error occurred while trying to start the record. Setting to stopped.")},
    {256, QT_TRANSLATE_NOOP("QObject",
                            "Unknown error occurred while trying to start the continuous record. Setting to stopped.")},
    {257, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as there is no record loaded and you don't have the "
                                       "user right to open the file dialog.")},
};
static_assert(isInOrder(actionTexts));

constexpr ErrorText recordTexts[] = {
    {1, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as this record is being indexed.")},
    {2, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as this record is already replaying.")},
    {3, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as this record is in ready for recording mode.")},
    {4, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as this record is in recording mode.")},
    {5, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as this record is being copied.")},
    {6, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as this record is being restored.")},
    {7, QT_TRANSLATE_NOOP("QObject",
                          "Replay cannot be started as unknown exception caught while trying to start replaying.")},
    {10, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is idle.")},
    {11, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is already paused.")},
    {12, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is being indexed.")},
    {13, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is in ready for recording mode.")},
    {14, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is in recording mode.")},
    {15, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is being copied.")},
    {16, QT_TRANSLATE_NOOP("QObject", "Replay cannot be paused as this record is being restored.")},
    {17, QT_TRANSLATE_NOOP("QObject",
                           "Replay cannot be paused as unknown exception caught while trying to pause replaying.")},
    {20, QT_TRANSLATE_NOOP("QObject", "Replay cannot be stopped as this record is already stopped.")},
    {21, QT_TRANSLATE_NOOP("QObject", "Replay cannot be stopped as this record is being indexed.")},
    {22, QT_TRANSLATE_NOOP("QObject", "Replay cannot be stopped as this record is in ready for recording mode.")},
    {23, QT_TRANSLATE_NOOP("QObject", "Replay cannot be stopped as this record is in recording mode.")},
    {24, QT_TRANSLATE_NOOP("QObject", "Replay cannot be stopped as this record is being copied.")},
    {25, QT_TRANSLATE_NOOP("QObject", "Replay cannot be stopped as this record is being restored.")},
    {26, QT_TRANSLATE_NOOP("QObject",
                           "Replay cannot be stopped as unknown exception caught while trying to stop replaying.")},
    {27, QT_TRANSLATE_NOOP(
             "QObject",
             "Replay cannot be started as replay ranges have empty values. Please try again to start a replay.")},
    {28, QT_TRANSLATE_NOOP("QObject", "Replay cannot be started as replay begin and end have the same values. Please "
                                      "reset the ranges and then try again.")},
    {190, QT_TRANSLATE_NOOP("QObject", "Cannot save the history entry as Korve device not available.")},
    {191, QT_TRANSLATE_NOOP("QObject", "A history entry with the specified time stamp already exists.")},
    {192, QT_TRANSLATE_NOOP(
              "QObject", "Could not add the history entry, as there is not enough disc space left to add a bookmark.")},
    {193, QT_TRANSLATE_NOOP(
              "QObject", "Could not add the history entry, as a record with the specified record id does not exist.")},
    {194, QT_TRANSLATE_NOOP("QObject", "Could not add the history entry, as the korve is not reachable.")},
    {195, QT_TRANSLATE_NOOP("QObject", "Could not add the history entry, as an unspecified exception occured.")},
    {196, QT_TRANSLATE_NOOP("QObject", "Could not add the history entry, as the korve through an undefined error.")},
    {200, QT_TRANSLATE_NOOP("QObject", "Cannot delete the history entry as Korve device not available.")},
    {201, QT_TRANSLATE_NOOP("QObject", "Could not delete the history entry, as the korve through an undefined error.")},
    {202, QT_TRANSLATE_NOOP("QObject", "A history entry with the specified time does not exist.")},
    {203,
     QT_TRANSLATE_NOOP("QObject",
                       "Could not delete the history entry, as a record with the specified record id does not exist.")},
    {204, QT_TRANSLATE_NOOP("QObject", "Could not delete the history entry, as the korve is not reachable.")},
    {205, QT_TRANSLATE_NOOP("QObject", "Could not delete the history entry, as an unspecified exception occured.")},
    {210, QT_TRANSLATE_NOOP("QObject", "A transmission error has occurred. Please try again later.")},
    {211, QT_TRANSLATE_NOOP("QObject", "The interfaces between client and server don't match. Please check that the "
                                       "client and server software versions are compatible.")},
    {220, QT_TRANSLATE_NOOP("QObject", "Cannot copy record as Korve Corba Reference not valid.")},
    {221, QT_TRANSLATE_NOOP("QObject", "Record creation failed. An invalid or no notification receiver has been set.")},
    {222, QT_TRANSLATE_NOOP("QObject", "Record creation failed. Not enough resources left to copy the record. Please "
                                       "delete or archive some recordings.")},
    {223, QT_TRANSLATE_NOOP("QObject", "Record creation failed. The access of the copied record failed or the "
                                       "specified offests in the sequence have been greater than the record size.")},
    {224,
     QT_TRANSLATE_NOOP(
         "QObject",
         "Record creation failed. There have been errors when creating the copied record on the storage subsystem.")},
    {225, QT_TRANSLATE_NOOP(
              "QObject",
              "Record creation failed. There isn't enough space on the KORVE storage subsystem for the copied record")},
    {226,
     QT_TRANSLATE_NOOP(
         "QObject", "Record creation failed. Please check for running copy sessions or recording / replay sessions.")},
    {227, QT_TRANSLATE_NOOP("QObject", "Record creation failed. The specified record to copy from does not exist.")},
    {228, QT_TRANSLATE_NOOP("QObject", "Record creation failed. Unknown error occurred.")},
    {229, QT_TRANSLATE_NOOP("QObject", "Could not find Korve.")},
    {230, QT_TRANSLATE_NOOP("QObject", "Cannot get Korve time as Korve device not available.")},
    {231, QT_TRANSLATE_NOOP("QObject", "cannot get the overview spectrum, device not available")},
    {7000, QT_TRANSLATE_NOOP("QObject", "An unknown error has occurred.")},
};
static_assert(isInOrder(recordTexts));

using Messages = QHash<unsigned int, QString>;

Messages translated(const korve::ErrorFlow &texts)
{
    Messages messages;
    for (const ErrorText &row : texts.own)
        messages.insert(static_cast<unsigned int>(row.id), QObject::tr(row.text));
    return messages;
}

QString numbered(unsigned int id)
{
    return QStringLiteral("(%1) ").arg(id);
}

QString notFound(const QString &what)
{
    return QObject::tr("Error ID %1 not found").arg(what);
}

} // namespace

namespace korve::errorflow
{

constinit const ErrorFlow toolbarActions{actionTexts, {}, nullptr};
constinit const ErrorFlow toolbarRecords{recordTexts, {}, nullptr};

} // namespace korve::errorflow

namespace KorveCommon
{

ToolbarHelper::~ToolbarHelper() = default;

ToolbarHelper &ToolbarHelper::Instance()
{
    static ToolbarHelper helper;
    return helper;
}

QString ToolbarHelper::ErrorId2Text(unsigned int id, errorIdContext context)
{
    // contract: translated once, into the language of the first message that is asked for
    static const Messages actionMessages = translated(korve::errorflow::toolbarActions);
    static const Messages recordMessages = translated(korve::errorflow::toolbarRecords);
    if (context != ActionErrors && context != RecordErrors)
        return notFound(QString::number(id));

    const Messages &messages = context == ActionErrors ? actionMessages : recordMessages;
    const auto message = messages.constFind(id);
    if (message != messages.constEnd())
        return numbered(id) + *message;
    return notFound(context == ActionErrors ? QString::number(id) : numbered(id)); // contract: with two blanks
}

} // namespace KorveCommon
