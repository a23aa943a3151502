#include "common/errorlogging.h"

#include "idl/korvemanager.hh"
#include "tests/appruntime/capturedtraces.h"
#include "tests/common/exceptionkinds.h"

#include <gmock/gmock.h>

#include <QStringList>

#include <functional>

using testing::ElementsAre;
using testing::IsEmpty;

namespace
{
const char *const source = "common/errorlogging";

/// What a failing operation calls itself and its object. Marks in them are text like any other.
struct Names {
    QString operation, object, record;
};
const Names plain{QStringLiteral("SetRecordComment"), QStringLiteral("recorder-1"), QStringLiteral("R7")};
const Names awkward{QStringLiteral("%2"), QString::fromUtf8("%3 %4 é📡"), QStringLiteral("R%1@A/%4")};

/// A sentence with its names: {op}, {object}, {record}, {exception}.
std::string sentence(const char *form, const Names &names, const QString &exception = QString())
{
    QString text;
    for (const QString &piece : QString::fromUtf8(form).split(u'{')) {
        const int end = piece.indexOf(u'}');
        const QString name = piece.left(qMax(end, 0));
        text += name == u"op"          ? names.operation
                : name == u"object"    ? names.object
                : name == u"record"    ? names.record
                : name == u"exception" ? exception
                                       : QString();
        text += piece.mid(end + 1);
    }
    return text.toStdString();
}

const char *const ofRecord = "{op} for Device/Record {object}/{record} failed with exception: {exception}";
const char *const ofDevice = "{op} for Device {object} failed with exception: {exception}";
const char *const ofChannel = "{op} for Channel '{object}' failed with exception: {exception}";

template <typename Logger> unsigned long userOfRecord(const CORBA::UserException &thrown, const Names &names)
{
    return Logger().userException(thrown, names.operation, names.object, names.record);
}
template <typename Logger> unsigned long userOfDevice(const CORBA::UserException &thrown, const Names &names)
{
    return Logger().userException(thrown, names.operation, names.object);
}
template <typename Logger> unsigned long systemOfRecord(const CORBA::SystemException &thrown, const Names &names)
{
    return Logger().systemException(thrown, names.operation, names.object, names.record);
}
template <typename Logger> unsigned long systemOfDevice(const CORBA::SystemException &thrown, const Names &names)
{
    return Logger().systemException(thrown, names.operation, names.object);
}
template <typename Logger> unsigned long otherOfRecord(const Names &names)
{
    return Logger().unspecifiedError(names.operation, names.object, names.record);
}
template <typename Logger> unsigned long otherOfDevice(const Names &names)
{
    return Logger().unspecifiedError(names.operation, names.object);
}
unsigned long userOfDevicesChannel(const CORBA::UserException &thrown, const Names &names)
{
    return KorveDevice::ErrorLogging().userExceptionChannel(thrown, names.operation, names.object);
}

template <typename Log> struct Row {
    const char *name;
    Log *log;
    const char *form;
    Family text = Family::Device; ///< whose decoder words a user exception
    Family number = Family::Device;
};
template <typename Log> void PrintTo(const Row<Log> &row, std::ostream *out)
{
    *out << row.name;
}
const auto rowName = [](const auto &info) { return info.param.name; };

using UserRow = Row<unsigned long(const CORBA::UserException &, const Names &)>;
using SystemRow = Row<unsigned long(const CORBA::SystemException &, const Names &)>;
using OtherRow = Row<unsigned long(const Names &)>;

using Device = KorveDevice::ErrorLogging;
using Channel = KorveChannel::ErrorLogging;
using Admin = KorveAdmin::ErrorLogging;

/// Each row is called at each level mask: it says @p text, once, where it is wanted, and answers @p number anyway.
void expectLogged(const std::function<unsigned long()> &log, const std::string &text, unsigned long number)
{
    for (const unsigned mask : {0u, 32u, 64u, 96u}) {
        CapturedTraces traces(mask);
        EXPECT_EQ(log(), number) << text << " at mask " << mask;
        if (mask & 32u)
            EXPECT_THAT(traces.texts(), ElementsAre(text));
        else
            EXPECT_THAT(traces.texts(), IsEmpty()) << mask;
        EXPECT_EQ(traces.sourceOf(text), mask & 32u ? source : "");
    }
}

class LoggedUserException : public testing::TestWithParam<UserRow>
{
protected:
    static void expectAll(const ExceptionCase &exception, long kind, const char *freeText, const Names &names)
    {
        const auto thrown = exception.make(kind, freeText);
        const QString words = exception.text(GetParam().text, kind, QString::fromUtf8(freeText));
        expectLogged([&] { return GetParam().log(*thrown, names); }, sentence(GetParam().form, names, words),
                     exception.number(GetParam().number, kind));
    }
};

INSTANTIATE_TEST_SUITE_P(
    Loggers, LoggedUserException,
    testing::Values(UserRow{"DeviceRecord", userOfRecord<Device>, ofRecord},
                    UserRow{"DeviceOnly", userOfDevice<Device>, ofDevice},
                    UserRow{"DeviceChannel", userOfDevicesChannel, ofChannel},
                    UserRow{"Channel", userOfDevice<Channel>, ofChannel, Family::Channel, Family::Channel},
                    // An administration call is worded as one of the device and numbered as one of the manager.
                    UserRow{"AdminRecord", userOfRecord<Admin>, ofRecord, Family::Device, Family::Channel},
                    UserRow{"AdminOnly", userOfDevice<Admin>, ofDevice, Family::Device, Family::Channel}),
    rowName);

TEST_P(LoggedUserException, IsWordedAndNumberedForEveryKind)
{
    for (const ExceptionCase &exception : knownExceptions())
        for (const ExceptionKind &row : exception.kinds())
            expectAll(exception, row.kind, "why", plain);
}

TEST_P(LoggedUserException, IsWordedAndNumberedForKindsThatDoNotExist)
{
    for (const ExceptionCase &exception : knownExceptions())
        for (const long kind : {static_cast<long>(exception.kinds().size()), 255l, -1l})
            expectAll(exception, kind, "why", plain);
}

TEST_P(LoggedUserException, TakesMarksInNamesForText)
{
    for (const ExceptionCase &exception : knownExceptions())
        expectAll(exception, 0, "%1 %2 %3 %4 \xc3\xa9", awkward);
}

class LoggedSystemException : public testing::TestWithParam<SystemRow>
{
};

INSTANTIATE_TEST_SUITE_P(Loggers, LoggedSystemException,
                         testing::Values(SystemRow{"DeviceRecord", systemOfRecord<Device>, ofRecord},
                                         SystemRow{"DeviceOnly", systemOfDevice<Device>, ofDevice},
                                         SystemRow{"Channel", systemOfDevice<Channel>, ofChannel},
                                         SystemRow{"AdminRecord", systemOfRecord<Admin>, ofRecord},
                                         SystemRow{"AdminOnly", systemOfDevice<Admin>, ofDevice}),
                         rowName);

template <typename Exception> void expectSystemException(const SystemRow &row, const char *name, unsigned long number)
{
    const Exception thrown;
    for (const Names &names : {plain, awkward})
        expectLogged([&] { return row.log(thrown, names); }, sentence(row.form, names, QLatin1String(name)), number);
}

TEST_P(LoggedSystemException, Is210OnlyWhenTheServerCannotBeReached)
{
    expectSystemException<CORBA::TRANSIENT>(GetParam(), "TRANSIENT", 210);
    expectSystemException<CORBA::COMM_FAILURE>(GetParam(), "COMM_FAILURE", 211);
    expectSystemException<CORBA::OBJECT_NOT_EXIST>(GetParam(), "OBJECT_NOT_EXIST", 211);
    expectSystemException<CORBA::INV_OBJREF>(GetParam(), "INV_OBJREF", 211);
    expectSystemException<CORBA::TIMEOUT>(GetParam(), "TIMEOUT", 211);
    expectSystemException<CORBA::BAD_OPERATION>(GetParam(), "BAD_OPERATION", 211);
    expectSystemException<CORBA::UNKNOWN>(GetParam(), "UNKNOWN", 211);
}

class LoggedOtherError : public testing::TestWithParam<OtherRow>
{
};

const char *const failedForRecord = "{op} for Device/Record '{object}'/'{record}' failed";
const char *const failedForDevice = "{op} for Device'{object}' failed"; // contract: no blank

INSTANTIATE_TEST_SUITE_P(Loggers, LoggedOtherError,
                         testing::Values(OtherRow{"DeviceRecord", otherOfRecord<Device>, failedForRecord},
                                         OtherRow{"DeviceOnly", otherOfDevice<Device>, failedForDevice},
                                         OtherRow{"Channel", otherOfDevice<Channel>,
                                                  "{op} for Channel '{object}' failed"},
                                         OtherRow{"AdminRecord", otherOfRecord<Admin>, failedForRecord},
                                         OtherRow{"AdminOnly", otherOfDevice<Admin>, failedForDevice}),
                         rowName);

TEST_P(LoggedOtherError, IsAlways7000)
{
    for (const Names &names : {plain, awkward, Names{}})
        expectLogged([&] { return GetParam().log(names); }, sentence(GetParam().form, names), 7000);
}

TEST(ErrorLog, ReadsAsItIsWritten)
{
    const Admin logger;
    const QString text = QStringLiteral("getRecord"), device = QStringLiteral("D"), record = QStringLiteral("R");
    CapturedTraces traces;
    const TQ_KRV::IF_KRV_c_Chan::exChan thrown(TQ_KRV::IF_KRV_c_Chan::Channel_Is_Not_Active, "why");
    EXPECT_EQ(logger.userException(thrown, text, device, record), 802u);
    EXPECT_EQ(logger.systemException(CORBA::TRANSIENT(), text, device), 210u);
    EXPECT_EQ(logger.unspecifiedError(text, device), 7000u);
    EXPECT_EQ(logger.unspecifiedError(text, device, record), 7000u);
    EXPECT_THAT(traces.texts(),
                ElementsAre("getRecord for Device/Record D/R failed with exception: User exception: undefined",
                            "getRecord for Device D failed with exception: TRANSIENT", "getRecord for Device'D' failed",
                            "getRecord for Device/Record 'D'/'R' failed"));
}
} // namespace
