#include "apps/korvectl/commandline.h"
#include "apps/korvectl/failure.h"
#include "apps/korvectl/listing.h"
#include "apps/korvectl/recordfollower.h"

#include "coresupport/errorhandler.h"

#include <QCoreApplication>

#include <algorithm>
#include <iostream>

using namespace korvectl;

namespace
{

void complain(const Failure &failure)
{
    std::cerr << "korvectl: " << failure.what() << std::endl;
}

void print(const QString &result)
{
    std::cout << result.toStdString() << std::flush;
}

ExitCode listDevices(const ManagerSession &session, const CommandLine &line)
{
    QVector<DeviceState> devices;
    const QStringList ids = session.deviceIds();
    for (const QString &id : ids)
        devices << session.device(id);
    print(line.json ? devicesJson(devices) : devicesTable(devices));
    return ExitCode::Success;
}

/// The records of a device that cannot be asked are missing, with a word on it; the others are printed all the same.
ExitCode listRecords(const ManagerSession &session, const CommandLine &line)
{
    ExitCode worst = ExitCode::Success;
    QVector<ListedRecord> listed;
    const QStringList ids = line.device.isEmpty() ? session.deviceIds() : QStringList{line.device};
    for (const QString &id : ids) {
        try {
            const ManagerSession::Records records = session.records(id);
            for (const KORVE_XML::KORVE_RecordData &record : records)
                listed << ListedRecord{id, record};
        } catch (const Failure &failure) {
            complain(failure);
            worst = std::max(worst, failure.exitCode);
        }
    }
    if (worst == ExitCode::Success || !listed.isEmpty())
        print(line.json ? recordsJson(listed) : recordsTable(listed));
    return worst;
}

ExitCode run(const CommandLine &line)
{
    ManagerSession session(line.subsystem, line.timeout);
    switch (line.command) {
    case Command::Devices:
        return listDevices(session, line);
    case Command::Records:
        return line.follow ? followRecords(session, line) : listRecords(session, line);
    }
    return ExitCode::Usage;
}

} // namespace

int main(int argc, char **argv)
{
    int exitCode = 0;
    const auto line = CommandLine::parse(argc, argv, exitCode);
    if (!line)
        return exitCode;
    ErrorHandler::Instance().setTraceMask(line->traceMask);
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("korvectl"));
    try {
        return static_cast<int>(run(*line));
    } catch (const Failure &failure) {
        complain(failure);
        return static_cast<int>(failure.exitCode);
    }
}
