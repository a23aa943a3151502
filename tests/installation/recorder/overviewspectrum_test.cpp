#include "apps/spectrum/spectrumreader.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/recordimport.h"
#include "installation/recorder/spectrumsender.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/receiver.h"
#include "tests/installation/recorder/recordingfiles.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"
#include "tests/support/patience.h"

#include <gtest/gtest.h>

#include <QDeadlineTimer>
#include <QFile>

#include <sys/socket.h>

#include <cmath>
#include <numbers>

using namespace installation::recorder;
using apps::SpectrumReader;

namespace
{

constexpr quint64 sampleCount = 100'000;
constexpr quint64 recordBytes = 4 * sampleCount;

/// A tone that gets higher in its second half.
QByteArray steppedTone()
{
    QByteArray samples;
    for (quint64 i = 0; i < sampleCount; ++i) {
        const double turns = (i < sampleCount / 2 ? 0.125 : 0.25) * double(i);
        const double angle = 2 * std::numbers::pi * turns;
        samples += littleEndian(qint16(std::lround(32767 * std::cos(angle))));
        samples += littleEndian(qint16(std::lround(32767 * std::sin(angle))));
    }
    return samples;
}

class Spectrum : public testing::Test
{
protected:
    Spectrum()
    {
        writeFile(directory.filePath("air.sigmf-data"), steppedTone());
        writeFile(directory.filePath("air.sigmf-meta"), sigmfMeta());
        record = importFile(*store, directory.filePath("air.sigmf-meta"));
    }
    QString dataPath() const { return directory.filePath("state/recordings/" + record + ".sigmf-data"); }
    TQ_KORVE::eKorveKind refusalOf(const SpectrumRequest &request)
    {
        return kindOf([&] { sender.overview(record, request); });
    }
    /// Waits for the end of all that is sent.
    void waitUntilIdle()
    {
        for (QDeadlineTimer end(60'000); !end.hasExpired();) {
            try {
                hasty.stream(record, tiny, Receiver::address, deafPort());
            } catch (const RecorderError &error) {
                if (error.kind() == TQ_KORVE::ekCONNECTION_FAILURE)
                    return; // there was a place
            }
        }
        FAIL() << "no place is given back";
    }

    QTemporaryDir directory;
    const std::shared_ptr<StoreThread> store = std::make_shared<StoreThread>(directory.filePath("state"));
    SpectrumSender sender{store};
    /// For receivers that shall fail; a slow machine must not make others do so.
    SpectrumSender hasty{
        store, {std::chrono::milliseconds(2000), std::chrono::milliseconds(200), std::chrono::milliseconds(200)}};
    QString record;
    const SpectrumRequest tiny{0, 8, 1, 2, 0};
    const SpectrumRequest huge{0, recordBytes, 1'000'000, 4096, 2}; // more than any socket keeps
};

TEST_F(Spectrum, TellsWhatItIs)
{
    SpectrumReader reader;
    reader.add(sender.overview(record, {400, recordBytes - 400, 10, 1024, 4}));
    const apps::SpectrumHead expected{1024, 4, 1024, 10, 400, recordBytes - 400, 20'000'000, 98'500'000};
    EXPECT_EQ(reader.head(), expected);
}

TEST_F(Spectrum, HasItsLinesEvenlyBetweenStartAndStop)
{
    SpectrumReader reader;
    reader.add(sender.overview(record, {400, 400 + 4 * 1024 + 4 * 90, 10, 1024, 2}));
    for (quint64 i = 0; i < 10; ++i) {
        const std::optional<apps::SpectrumLine> line = reader.next();
        ASSERT_TRUE(line);
        EXPECT_EQ(line->position, 400 + i * 40);
        EXPECT_EQ(line->timestampUs, 1'700'000'000'250'000 + quint64(std::llround((100 + i * 10) / 20.0)));
    }
    reader.requireComplete();
}

TEST_F(Spectrum, ShowsWhatIsInEachPlaceOfTheRecord)
{
    SpectrumReader reader;
    reader.add(sender.overview(record, {0, recordBytes, 2, 1024, 2}));
    const apps::SpectrumLine first = *reader.next();
    EXPECT_NEAR(first.levels[512 + 128], 0, 0.01);
    EXPECT_LT(first.levels[512 + 256], -80);
    const apps::SpectrumLine last = *reader.next();
    EXPECT_EQ(last.position, recordBytes - 4 * 1024);
    EXPECT_NEAR(last.levels[512 + 256], 0, 0.01);
    EXPECT_LT(last.levels[512 + 128], -80);
}

TEST_F(Spectrum, OfOneLineOrOfManyOverTheSameSamples)
{
    SpectrumReader one;
    one.add(sender.overview(record, {0, recordBytes, 1, 65536, 0}));
    EXPECT_EQ(one.next()->position, 0u);
    SpectrumReader many;
    many.add(sender.overview(record, {0, 16, 1000, 4, 0}));
    while (const auto line = many.next())
        EXPECT_EQ(line->position, 0u);
    many.requireComplete();
}

TEST_F(Spectrum, RefusesWhatMakesNoSense)
{
    const auto invalid = TQ_KORVE::ekINVALID_VALUE;
    for (const quint32 fftSize : {0u, 1u, (1u << 20) + 1, ~0u})
        EXPECT_EQ(refusalOf({0, recordBytes, 1, fftSize, 0}), invalid) << fftSize;
    EXPECT_EQ(refusalOf({0, recordBytes, 1, 1024, 5}), invalid);
    for (const quint64 lines : {quint64(0), quint64(10'000'001), ~quint64(0)})
        EXPECT_EQ(refusalOf({0, recordBytes, lines, 1024, 0}), invalid) << lines;
    EXPECT_EQ(refusalOf({0, recordBytes + 4, 1, 1024, 0}), invalid);
    EXPECT_EQ(refusalOf({0, ~quint64(0), 1, 1024, 0}), invalid);
    EXPECT_EQ(refusalOf({2, recordBytes, 1, 1024, 0}), invalid);
    EXPECT_EQ(refusalOf({0, recordBytes - 1, 1, 1024, 0}), invalid);
    EXPECT_EQ(refusalOf({800, 800, 1, 2, 0}), invalid);
    EXPECT_EQ(refusalOf({800, 400, 1, 2, 0}), invalid);
    EXPECT_EQ(refusalOf({0, 4 * 1023, 1, 1024, 0}), invalid);         // fewer samples than the transform
    EXPECT_EQ(refusalOf({0, recordBytes, 10'000, 1024, 0}), invalid); // too long for one answer
    EXPECT_EQ(kindOf([&] { sender.overview("R0", tiny); }), TQ_KORVE::ekINVALID_RECORD_ID);
}

TEST_F(Spectrum, NoticesSamplesThatAreGone)
{
    QFile::resize(dataPath(), 4);
    EXPECT_EQ(refusalOf({0, recordBytes, 1, 1024, 0}), TQ_KORVE::ekRECORD_CORRUPTED);
}

TEST_F(Spectrum, IsStreamedAsItIsAnswered)
{
    Receiver receiver;
    const SpectrumRequest request{0, recordBytes, 2000, 512, 3};
    sender.stream(record, request, Receiver::address, receiver.port());
    EXPECT_EQ(receiver.takeAll(), sender.overview(record, request));
}

TEST_F(Spectrum, NeedsSomebodyWhoListens)
{
    const auto stream = [&](quint32 address, quint16 port) { sender.stream(record, tiny, address, port); };
    EXPECT_EQ(kindOf([&] { stream(Receiver::address, deafPort()); }), TQ_KORVE::ekCONNECTION_FAILURE);
    EXPECT_EQ(kindOf([&] { stream(Receiver::address, 0); }), TQ_KORVE::ekINVALID_VALUE);
    EXPECT_EQ(kindOf([&] { stream(0, 1); }), TQ_KORVE::ekINVALID_VALUE);
}

TEST_F(Spectrum, IsStreamedToAFewAtATime)
{
    Receiver receiver;
    std::vector<Descriptor> connections;
    for (unsigned i = 0; i < SpectrumSender::maximumSpectra; ++i) {
        sender.stream(record, huge, Receiver::address, receiver.port());
        connections.push_back(receiver.accept());
    }
    EXPECT_EQ(kindOf([&] { sender.stream(record, huge, Receiver::address, receiver.port()); }),
              TQ_KORVE::ekRESSOURCES_EXHAUSTED);
    EXPECT_EQ(kindOf([&] { sender.overview(record, tiny); }), TQ_KORVE::ekRESSOURCES_EXHAUSTED);
}

TEST_F(Spectrum, GivesUpAReceiverThatTakesNothing)
{
    Receiver receiver;
    std::vector<Descriptor> connections;
    for (unsigned i = 0; i < SpectrumSender::maximumSpectra; ++i) {
        hasty.stream(record, huge, Receiver::address, receiver.port());
        connections.push_back(receiver.accept());
    }
    waitUntilIdle();
}

TEST_F(Spectrum, SurvivesAReceiverThatGoes)
{
    Receiver receiver;
    for (unsigned i = 0; i < SpectrumSender::maximumSpectra; ++i) {
        hasty.stream(record, huge, Receiver::address, receiver.port());
        receiver.accept();
    }
    waitUntilIdle();
}

TEST_F(Spectrum, EndsAtOnceWithTheRecorder)
{
    SpectrumSender patient(store, {std::chrono::seconds(2), std::chrono::hours(1), std::chrono::hours(1)});
    Receiver receiver;
    patient.stream(record, huge, Receiver::address, receiver.port());
    const Descriptor connection = receiver.accept();
    Patience patience(std::chrono::seconds(30), [&] { ::shutdown(connection.get(), SHUT_RDWR); });
    patient.stop();
    patience.end();
    EXPECT_FALSE(patience.isOver());
    EXPECT_EQ(kindOf([&] { patient.overview(record, tiny); }), TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
}

} // namespace
