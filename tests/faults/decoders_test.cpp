#include "common/errorlogging.h"
#include "idl/lumbalandatacom.hh"
#include "tests/appruntime/capturedtraces.h"
#include "tests/faults/faultyinstallation.h"

#include <QFile>

#include <functional>

using testing::Contains;

namespace
{

struct Kind {
    QString word;
    unsigned long number; ///< of the error
};

/// As tests/data/exceptions tells them, in their order on the wire.
std::vector<Kind> kindsOf(const char *exception)
{
    QFile file(QStringLiteral(EXCEPTION_KINDS "/%1.txt").arg(QString::fromLatin1(exception).toLower()));
    if (!file.open(QIODevice::ReadOnly))
        throw std::runtime_error("no kinds of " + std::string(exception));
    std::vector<Kind> kinds;
    for (const QString &line : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts))
        if (!line.startsWith(u'#'))
            kinds.push_back({line.section(u'\t', 2, 2), line.section(u'\t', 3, 3).toULong()});
    return kinds;
}

/// A client that decodes by itself what the calls of a service raise.
class Decoders : public FaultyInstallation
{
protected:
    using Log = std::function<unsigned long(const CORBA::UserException &)>;

    static unsigned long deviceLog(const CORBA::UserException &exception)
    {
        return KorveDevice::ErrorLogging().userException(exception, QStringLiteral("Comment"), QStringLiteral("REC1"),
                                                         QStringLiteral("R1"));
    }
    static unsigned long channelLog(const CORBA::UserException &exception)
    {
        return KorveChannel::ErrorLogging().userException(exception, QStringLiteral("Flag"), QStringLiteral("C1"));
    }
    /// Of one call for each, with the traces that belong to it; @p scope stands before the words of the kinds.
    static void expectEachKind(const char *exception, const std::string &what, const std::string &scope,
                               const std::function<void()> &call)
    {
        const bool isOfDevice = what.find("Channel") == what.npos;
        for (const Kind &kind : kindsOf(exception)) {
            CapturedTraces traces(32);
            EXPECT_EQ(numberOf(call, isOfDevice ? deviceLog : channelLog), kind.number);
            EXPECT_THAT(traces.texts(), Contains(what + " failed with exception: User exception: " + scope +
                                                 kind.word.toStdString() + ": why"));
        }
    }
    /// One line for each kind, with the text "why".
    static QByteArray scriptOf(const char *operation, const char *exception)
    {
        QByteArray script;
        for (const Kind &kind : kindsOf(exception))
            script += QStringLiteral("on %1 raise %2 %3 \"why\" once\n")
                          .arg(QLatin1String(operation), QLatin1String(exception), kind.word)
                          .toUtf8();
        return script;
    }
    /// The number that @p log makes of what @p call raises; 0 when that is nothing.
    static unsigned long numberOf(const std::function<void()> &call, const Log &log)
    {
        try {
            call();
        } catch (const CORBA::UserException &exception) {
            return log(exception);
        }
        return 0;
    }
};

} // namespace

TEST_F(Decoders, KnowEachKindThatARecorderRaises)
{
    start(scriptOf("recorder setRecordComment", "exKorve"));
    const TQ_KORVE::IF_Control_var control = recorder();
    expectEachKind("exKorve", "Comment for Device/Record REC1/R1", "TQ_KORVE::exKorve::",
                   [&] { control->setRecordComment("R1", TQ_KORVE::wideText()); });
}

TEST_F(Decoders, KnowEachKindThatALinkRaises)
{
    start(scriptOf("recorder waitForConnectionOnIf", "exLLDC"));
    const std::string id = importRecord();
    const TQ_KORVE::IF_Control_var control = recorder();
    const TQ_KORVE::IF_ReplaySession_var session =
        control->getReplaySessionById(id.c_str(), TQ_KORVE_IT::IF_Korve_IT::_nil());
    const LLDCmodule::LLDC_Interface_Transmitter_var link = LLDCmodule::LLDC_Interface_Transmitter::_narrow(session);
    expectEachKind("exLLDC", "Comment for Device/Record REC1/R1", "LLDCmodule::exLLDC::",
                   [&] { link->waitForConnectionOnIf(LLDCmodule::struConnectionParams{}, 0); });
}

TEST_F(Decoders, KnowEachKindThatChannelsAreRefusedWith)
{
    start(scriptOf("registerChannel", "exGen"));
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    expectEachKind("exGen", "Flag for Channel 'C1'", "TQ_KRV::exGen::", [&] {
        CORBA::String_var id;
        main->registerChannel(TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::eDATARATE_CLASS(), TQ_KRV::eDATA_FORMAT(), true,
                              true, "C1", id.out());
    });
}

TEST_F(Decoders, KnowEachKindThatAChannelRaises)
{
    start(scriptOf("setRecordFlag", "exChan"));
    importRecord();
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    CORBA::String_var id;
    const TQ_KRV::IF_KRV_c_Chan_var channel = main->registerReceiverChannel(
        TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::eDATARATE_CLASS(), TQ_KRV::eDATA_FORMAT(), true, true, "C1", "REC1",
        TQ_KRV::TCP_IF, "127.0.0.1:9", id.out());
    expectEachKind("exChan", "Flag for Channel 'C1'", "TQ_KRV::IF_KRV_c_Chan::exChan::",
                   [&] { channel->setRecordFlag(true); });
}

TEST_F(Decoders, KnowEachKindThatAdministrationRaises)
{
    start(scriptOf("manager getRecord", "exAdmin"));
    const TQ_KRV::IF_KORVE_Admin_var remote = admin();
    expectEachKind("exAdmin", "Flag for Channel 'C1'", "TQ_KRV::IF_KORVE_Admin::exAdmin::", [&] {
        TQ_KRV::struRECORD_DATA_var record;
        remote->getRecord("REC1", "R1", record.out());
    });
}

TEST_F(Decoders, HaveANumberForExceptionsOfNoFamily)
{
    start("on getAllRecords raise exKRV 3 \"why\"\n");
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    const Log log = [](const CORBA::UserException &exception) {
        return KorveAdmin::ErrorLogging().userException(exception, QStringLiteral("List"), QStringLiteral("REC1"));
    };
    CapturedTraces traces(32);
    EXPECT_EQ(numberOf([&] { TQ_KRV::seqRECORD_DATA_var(main->getAllRecords("REC1")); }, log), 212u);
    EXPECT_THAT(traces.texts(), Contains("List for Device REC1 failed with exception: User exception: undefined"));
}
