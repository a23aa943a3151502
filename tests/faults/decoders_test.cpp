#include "common/errorlogging.h"
#include "tests/appruntime/capturedtraces.h"
#include "tests/faults/faultyinstallation.h"

#include <QFile>

#include <functional>

using testing::ElementsAre;

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
    const auto call = [&] { control->setRecordComment("R1", TQ_KORVE::wideText()); };
    for (const Kind &kind : kindsOf("exKorve")) {
        CapturedTraces traces(32);
        const Log log = [](const CORBA::UserException &exception) {
            return KorveDevice::ErrorLogging().userException(exception, QStringLiteral("Comment"),
                                                             QStringLiteral("REC1"), QStringLiteral("R1"));
        };
        EXPECT_EQ(numberOf(call, log), kind.number);
        EXPECT_THAT(traces.texts(), ElementsAre("Comment for Device/Record REC1/R1 failed with exception: User "
                                                "exception: TQ_KORVE::exKorve::" +
                                                kind.word.toStdString() + ": why"));
    }
}

TEST_F(Decoders, KnowEachKindThatChannelsAreRefusedWith)
{
    start(scriptOf("registerChannel", "exGen"));
    const TQ_KRV::IF_KRV_c_KRV_var main = manager();
    const auto call = [&] {
        CORBA::String_var id;
        main->registerChannel(TQ_KRV::IF_KRV_c_ChanMan::_nil(), TQ_KRV::eDATARATE_CLASS(), TQ_KRV::eDATA_FORMAT(), true,
                              true, "C1", id.out());
    };
    for (const Kind &kind : kindsOf("exGen")) {
        CapturedTraces traces(32);
        const Log log = [](const CORBA::UserException &exception) {
            return KorveChannel::ErrorLogging().userException(exception, QStringLiteral("Register"),
                                                              QStringLiteral("C1"));
        };
        EXPECT_EQ(numberOf(call, log), kind.number);
        EXPECT_THAT(traces.texts(), ElementsAre("Register for Channel 'C1' failed with exception: User exception: "
                                                "TQ_KRV::exGen::" +
                                                kind.word.toStdString() + ": why"));
    }
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
    EXPECT_THAT(traces.texts(), ElementsAre("List for Device REC1 failed with exception: User exception: undefined"));
}
