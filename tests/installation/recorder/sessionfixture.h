#pragma once

#include "tests/installation/recorder/notifiedreceiver.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/samplepeer.h"
#include "tests/installation/recorder/servingprocess.h"
#include "tests/installation/recorder/storedrecords.h"
#include "tests/support/countedservant.h"
#include "tests/support/loopbacklease.h"

#include <gtest/gtest.h>

/// Talks to a recorder in another process that has taken in a recording of 16-bit complex samples, 1 MHz.
class SessionTest : public testing::Test
{
protected:
    static constexpr CORBA::ULong fullSpeed = 0xffffffff;
    static constexpr CORBA::ULong ownRate = 0;

    static void SetUpTestSuite() { orb = new ClientOrb; }
    static void TearDownTestSuite() { delete std::exchange(orb, nullptr); }

    /// Bytes in which no section looks like another.
    static QByteArray pattern(int size)
    {
        QByteArray bytes(size, Qt::Uninitialized);
        for (int i = 0; i < size; ++i)
            bytes[i] = static_cast<char>(i % 251 + i / 251);
        return bytes;
    }
    void start(const QByteArray &samplesOfAir, const QJsonObject &global = {{"core:sample_rate", 1e6}})
    {
        samples = samplesOfAir;
        writeFile(directory.filePath("air.sigmf-data"), samples);
        writeFile(directory.filePath("air.sigmf-meta"), sigmfMeta(global));
        serve({directory.filePath("air.sigmf-meta")});
        air = CORBA::string_dup(TQ_KORVE::seqMETA_DATA_var(control->listAllRecords())[0].recordID);
    }
    void serve(const QStringList &files)
    {
        recorder.reset();
        recorder = std::make_unique<ServingProcess>(directory.filePath("state"), files);
        control = TQ_KORVE::IF_Control::_narrow(CORBA::Object_var(orb->object(recorder->reference())));
    }
    /// A receiver of notifications; a call under way may outlive the test.
    NotifiedReceiver &announced()
    {
        if (CORBA::is_nil(receiver))
            receiver = orb->activate(*notified);
        control->announceNotificationReceiver(receiver);
        return *notified;
    }
    CORBA::ULong statusOf(const char *id)
    {
        return TQ_KORVE::struMETA_DATA_var(control->getMetaData(id))->recordStatus;
    }

    static LLDCmodule::struConnectionParams tcp(const SamplePeer &peer) { return to(LLDCmodule::ifTCP, peer); }
    static LLDCmodule::struConnectionParams udp(const SamplePeer &peer) { return to(LLDCmodule::ifUDP, peer); }
    static LLDCmodule::struConnectionParams params(LLDCmodule::eINTERFACE_KIND kind, CORBA::ULong host, CORBA::ULong port)
    {
        LLDCmodule::struConnectionParams params;
        params.interfaceKind = kind;
        params.address = host;
        params.port = port;
        params.parameter = 0;
        return params;
    }

    template <typename Exception = TQ_KORVE::exKorve, typename Action> static auto kindOf(Action action)
    {
        try {
            action();
        } catch (const Exception &failure) {
            EXPECT_STRNE(failure.text, "");
            return failure.kind;
        }
        throw std::logic_error("nothing was raised");
    }
    template <typename Action> static LLDCmodule::eLLDCKind linkKindOf(Action action)
    {
        return kindOf<LLDCmodule::exLLDC>(action);
    }

    static inline ClientOrb *orb = nullptr;
    const LoopbackLease lease;
    QTemporaryDir directory;
    QByteArray samples;
    std::unique_ptr<ServingProcess> recorder;
    TQ_KORVE::IF_Control_var control;
    CORBA::String_var air;
    NotifiedReceiver *const notified = new CountedServant<NotifiedReceiver>;
    TQ_KORVE_IT::IF_Korve_IT_var receiver;

    ~SessionTest() override
    {
        recorder.reset();
        if (!CORBA::is_nil(receiver))
            orb->deactivate(receiver);
        notified->_remove_ref();
    }

private:
    static LLDCmodule::struConnectionParams to(LLDCmodule::eINTERFACE_KIND kind, const SamplePeer &peer)
    {
        return params(kind, peer.host(), peer.port());
    }
};
