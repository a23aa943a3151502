#include "benchmarks/recorder/samplefile.h"
#include "benchmarks/recorder/samplesink.h"
#include "benchmarks/support/require.h"

#include "installation/recorder/replaysender.h"

#include <benchmark/benchmark.h>

#include <QFile>

#include <fcntl.h>
#include <netinet/in.h>
#include <sys/sendfile.h>
#include <sys/socket.h>
#include <unistd.h>

using namespace installation::recorder;

namespace
{

const SampleFile &samples()
{
    static const SampleFile file;
    return file;
}

void playTo(SampleSink &sink)
{
    ReplaySender sender(std::make_unique<ReplaySource>(samples().record(), samples().path()), {[](bool) {}, [] {}});
    sender.start(sender.connectTo({LLDCmodule::ifTCP, SampleSink::host, sink.port()}, ReplaySender::fullSpeed).id);
    require(sink.received() == SampleFile::sizeBytes, "the replay sends every byte");
}

/// The fastest that the system offers: one call copies all from the file to the socket.
void copyTo(SampleSink &sink)
{
    const int file = ::open(QFile::encodeName(samples().path()).constData(), O_RDONLY | O_CLOEXEC);
    const int connection = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    sockaddr_in name{};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(SampleSink::host);
    name.sin_port = htons(sink.port());
    require(::connect(connection, reinterpret_cast<sockaddr *>(&name), sizeof name) == 0, "the sink takes a connection");
    for (off_t position = 0; position < off_t(SampleFile::sizeBytes);)
        require(::sendfile(connection, file, &position, SampleFile::sizeBytes - position) > 0, "the file can be sent");
    ::close(connection);
    ::close(file);
    require(sink.received() == SampleFile::sizeBytes, "the copy sends every byte");
}

template <typename Stream> void streamAll(benchmark::State &state, const Stream &stream)
{
    {
        SampleSink checked(true);
        stream(checked);
        require(checked.checksum() == samples().checksum(), "the samples arrive as they are");
    }
    for (auto _ : state) {
        SampleSink sink;
        stream(sink);
    }
    state.SetBytesProcessed(int64_t(state.iterations() * SampleFile::sizeBytes));
}

void streamOurs(benchmark::State &state)
{
    streamAll(state, playTo);
}

void streamFloor(benchmark::State &state)
{
    streamAll(state, copyTo);
}

BENCHMARK(streamOurs)->Name("replay.stream/ours")->UseRealTime();
BENCHMARK(streamFloor)->Name("replay.stream/floor")->UseRealTime();

} // namespace
