#pragma once

#include "apps/korvectl/arguments.h"

#include <QString>
#include <QVector>

#include <chrono>
#include <optional>

namespace korvectl
{

enum class Command {
    Devices,
    Records,
    RecordShow,
    RecordComment,
    RecordDeletable,
    RecordCopy,
    RecordDelete,
    RecordStart,
    RecordStop,
    HistoryList,
    HistoryAdd,
    HistoryRemove,
    BookmarksList,
    BookmarksAdd,
    BookmarksRemove,
    ReplayStart,
    ReplayPause,
    ReplayContinue,
    ReplayStop,
    ReplayStatus,
    Spectrum,
    Export,
    TimeGet,
    TimeSet,
    Watch,
    Errors,
    TreeList,
    TreeGet,
    TreeWatch,
    Doctor,
    Completion,
    Complete,
};

/// Where samples go to or come from, and how fast.
struct LinkOptions {
    std::optional<Endpoint> peer; ///< without: the channels that are registered already
    bool isUdp = false;
    Speed speed{};
    unsigned long replayCount = 1; ///< 0: again and again
};

/// What a recording is to be.
struct RecordingOptions {
    QString dataRate{QStringLiteral("VUHF_1M")};
    QString dataFormat{QStringLiteral("RAW")};
    unsigned long sampleRateHz = 0; ///< 0: that of the data rate
    unsigned long loopMiB = 0;      ///< 0: no loop
    unsigned long durationS = 0;    ///< 0: until it is stopped
};

struct SpectrumOptions {
    unsigned long lineCount = 0; ///< 0: as many as the terminal is high, or 512 for a picture
    unsigned long fftSize = 1024;
    QString window{QStringLiteral("hanning")};
    QString picture; ///< the path of a PNG; empty: to the terminal
};

/// What the program is told to do.
struct CommandLine {
    Command command = Command::Devices;
    QString device; ///< empty: all
    QString record;
    QString channel;
    QString subsystem; ///< empty: the local one
    QString path{QStringLiteral("/")}; ///< in the value tree
    QString text;      ///< a comment, an entry of a history, or that of a bookmark
    QString name;      ///< of a new record
    QString folder;    ///< for files; empty: the current one
    QString flow;      ///< of errors; empty: all
    Moment moment;
    QVector<Section> sections; ///< empty: all of the record
    LinkOptions link;
    RecordingOptions recording;
    SpectrumOptions spectrum;
    unsigned long number = 0; ///< of an error
    std::chrono::milliseconds timeout{5000};
    std::chrono::milliseconds watchTime{0}; ///< 0: for good
    int changeLimit = 0;                    ///< 0: for good
    bool isOn = false;
    bool recursive = false;
    bool json = false;
    bool follow = false; ///< of the records: go on telling what becomes of them
    unsigned traceMask = 0;
    QString typedLine; ///< as it is being typed, up to the cursor
    QString typedWord; ///< the end of that which the shell is going to replace

    /// Without result when the program is to end with @p exitCode: help was asked for, or the line is wrong, which has
    /// been said then.
    static std::optional<CommandLine> parse(int argc, char **argv, int &exitCode);
};

} // namespace korvectl
