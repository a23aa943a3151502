#include "installation/recorder/file.h"
#include "installation/recorder/recordingformat.h"
#include "tests/installation/recorder/sessionfixture.h"

#include <QFile>

using namespace installation::recorder;

namespace
{

constexpr quint64 hugeBytes = 4ull << 30;
constexpr qint64 mostGrowthKib = 8 << 10;

class StreamedMemory : public SessionTest
{
public:
    // All send the samples of a record, and return how many bytes came.
    quint64 replay(const char *id) { return replayed(id, false); }
    quint64 replaySwapped(const char *id) { return replayed(id, true); }
    quint64 exportSamples(const char *id)
    {
        SamplePeer peer(SamplePeer::Transport::Tcp, lease.address());
        const QString url = QStringLiteral("tcp://%1:%2/%3.sigmf-data?offset=0&size=%4")
                                .arg(lease.address(), QString::number(peer.port()), QLatin1String(id),
                                     QString::number(hugeBytes));
        control->copyRecordToArchDevEx(id, url.toLatin1().constData(), TQ_KORVE_IT::IF_Korve_IT::_nil());
        return peer.accept().discardToEnd();
    }

protected:
    quint64 replayed(const char *id, bool isSwapped)
    {
        SamplePeer peer(SamplePeer::Transport::Tcp, lease.address());
        const TQ_KORVE::IF_ReplaySession_var session =
            control->getReplaySessionById(id, TQ_KORVE_IT::IF_Korve_IT::_nil());
        session->setConvertHostToNetByteOrder(isSwapped);
        const auto link = LLDCmodule::LLDC_Interface_Transmitter_var(LLDCmodule::LLDC_Interface_Transmitter::_narrow(session));
        link->startDataTransfer(static_cast<CORBA::ULong>(link->waitForConnectionOnIf(tcp(peer), fullSpeed).parameter));
        return peer.accept().discardToEnd();
    }
    /// A record of four gibibytes that take no room on the disk.
    QString storeHugeRecord()
    {
        RecordStore store(directory.filePath("state"));
        const RecordStore::Reservation place = store.reserve();
        File::create(place.samplesPath).truncate(hugeBytes);
        Record record = newRecording({}, 1'700'000'000'000'000);
        record.status = KORVE_XML::KORVE_RecordData::IDLE;
        record.id = place.id;
        record.sizeBytes = record.stopPosition = hugeBytes;
        store.adopt(record);
        return record.id;
    }
    /// A figure of the recorder's process, in KiB.
    qint64 memory(const QByteArray &name) const
    {
        QFile file(QStringLiteral("/proc/%1/status").arg(recorder->processId()));
        EXPECT_TRUE(file.open(QIODevice::ReadOnly));
        for (const QByteArray &line : file.readAll().split('\n'))
            if (line.startsWith(name + ':'))
                return line.mid(name.size() + 1).trimmed().split(' ').first().toLongLong();
        ADD_FAILURE() << "no " << name.constData();
        return 0;
    }
};

struct Way {
    const char *name;
    quint64 (StreamedMemory::*stream)(const char *id);
};

class StreamedMemoryBy : public StreamedMemory, public testing::WithParamInterface<Way>
{
};

TEST_P(StreamedMemoryBy, OfTheRecorderStaysFlat)
{
    const QByteArray id = storeHugeRecord().toUtf8();
    serve({});
    const qint64 before = memory("VmHWM");
    const qint64 ownBefore = memory("RssAnon");
    EXPECT_EQ((this->*GetParam().stream)(id), hugeBytes);
    EXPECT_LE(memory("VmHWM"), before + mostGrowthKib);
    EXPECT_LE(memory("RssAnon"), ownBefore + mostGrowthKib);
}

INSTANTIATE_TEST_SUITE_P(Ways, StreamedMemoryBy,
                         testing::Values(Way{"Replay", &StreamedMemory::replay},
                                         Way{"ReplayWithOtherByteOrder", &StreamedMemory::replaySwapped},
                                         Way{"Export", &StreamedMemory::exportSamples}),
                         [](const auto &info) { return std::string(info.param.name); });

} // namespace
