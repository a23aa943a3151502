#include "installation/recorder/looporder.h"

#include "installation/recorder/file.h"
#include "installation/recorder/recordererror.h"
#include "tests/installation/recorder/refusal.h"
#include "tests/installation/recorder/storedrecords.h"

#include <gtest/gtest.h>

#include <QFileInfo>

#include <sys/resource.h>

#include <csignal>

using namespace installation::recorder;

namespace
{

constexpr quint64 mebibyte = 1 << 20;
constexpr quint64 begin = 3 * mebibyte + 4;
constexpr quint64 size = 21 * mebibyte + 12;

QByteArray numbers(quint64 bytes)
{
    QByteArray all(static_cast<int>(bytes), Qt::Uninitialized);
    for (int i = 0; i < all.size(); ++i)
        all[i] = static_cast<char>(quint32(i) * 2654435761u >> 24);
    return all;
}

/// Ends the process when the new place has @p most bytes, as a kill in that moment would.
void moveUntil(quint64 most, const QString &from, const QString &to, quint64 bytes)
{
    std::signal(SIGXFSZ, SIG_DFL);
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
    const rlimit small{most, RLIM_INFINITY};
    setrlimit(RLIMIT_FSIZE, &small);
    moveSection(from, begin, begin + bytes, to);
}

/// A loop whose file begins with a hole.
class MovedSection : public testing::Test
{
protected:
    MovedSection() { writeFile(from, QByteArray(int(begin), 0) + section); }

    void moveUntilKilled(quint64 most, quint64 bytes = size)
    {
        EXPECT_EXIT(moveUntil(most, from, to, bytes), testing::KilledBySignal(SIGXFSZ), "") << most;
    }
    void expectMoved(quint64 bytes = size)
    {
        moveSection(from, begin, begin + bytes, to);
        EXPECT_EQ(QFileInfo(to).size(), qint64(bytes));
        EXPECT_TRUE(readFile(to) == section.left(int(bytes)));
    }
    quint64 roomBytes() const
    {
        return 512 * quint64(fileStatus(from).st_blocks + (QFileInfo::exists(to) ? fileStatus(to).st_blocks : 0));
    }

    QTemporaryDir directory;
    const QString from = directory.filePath("loop");
    const QString to = directory.filePath("ordered");
    const QByteArray section = numbers(size);
};

TEST_F(MovedSection, HasEveryByte)
{
    expectMoved();
    expectMoved(); // also when that is done already
}

TEST_F(MovedSection, GoesOnWhereAKillHasEndedIt)
{
    for (quint64 most = 1; most < size; most += 3 * mebibyte / 2)
        moveUntilKilled(most);
    expectMoved();
}

TEST_F(MovedSection, GoesOnAfterKillsAtTheSamePlace)
{
    for (const quint64 most : {8 * mebibyte + 1, 8 * mebibyte + 1, 8 * mebibyte, 12 * mebibyte, 12 * mebibyte})
        moveUntilKilled(most);
    expectMoved();
}

TEST_F(MovedSection, TakesLittleMoreRoomThanItsBytes)
{
    File::openForChange(from).release(0, begin);
    moveUntilKilled(13 * mebibyte);
    EXPECT_LE(roomBytes(), size + moveRoomBytes + (1 << 16));
    expectMoved();
    EXPECT_LE(roomBytes(), size + (1 << 16));
}

TEST_F(MovedSection, MayEndEarlierThanBefore)
{
    moveUntilKilled(17 * mebibyte);
    moveUntilKilled(17 * mebibyte, 18 * mebibyte);
    expectMoved(16 * mebibyte - 8);
    expectMoved(5 * mebibyte);
    expectMoved(5 * mebibyte);
}

TEST_F(MovedSection, GoesOnWhereItWasCancelled)
{
    moveUntilKilled(9 * mebibyte);
    std::stop_source source;
    source.request_stop();
    EXPECT_EQ(kindOf([&] { moveSection(from, begin, begin + size, to, source.get_token()); }),
              TQ_KORVE::ekREQUEST_NOT_SUPPORTED_IN_CURRENT_STATE);
    EXPECT_EQ(QFileInfo(to).size(), qint64(9 * mebibyte));
    expectMoved();
}

TEST_F(MovedSection, NeedsAllOfItsBytes)
{
    EXPECT_THROW(moveSection(from, begin, begin + size + 4, to), RecorderError);
    EXPECT_TRUE(readFile(from).endsWith(section.right(4 << 20)));
}

} // namespace
