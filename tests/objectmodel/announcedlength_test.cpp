#include "objectmodel/pelininfo.h"
#include "tests/support/objectmodel/failure.h"
#include "tests/support/objectmodel/forms.h"

#include <gtest/gtest.h>

#include <QBuffer>

#include <limits>

using namespace KORVE_XML;
using modeltest::bytes;

namespace
{

// What a reader may ask for without knowing whether it is there.
constexpr qint64 onePiece = 64 * 1024;

/// Remembers how many bytes it was asked for at most: for so many, the reader had made room.
class MeteredBuffer : public QBuffer
{
public:
    explicit MeteredBuffer(const QByteArray &content)
    {
        setData(content);
        open(QIODevice::ReadOnly);
    }
    qint64 mostWanted = 0;

protected:
    qint64 readData(char *to, qint64 count) override
    {
        mostWanted = qMax(mostWanted, count);
        return QBuffer::readData(to, count);
    }
};

} // namespace

TEST(AnnouncedLength, OfATaggedFormMakesNoRoomForWhatIsNotThere)
{
    MeteredBuffer device(bytes("2df731bf 7fffffff 7fffffff 5031"));
    QDataStream in(&device);
    PelinInfo info;
    EXPECT_NE(modeltest::failureOf([&] { info.SetBinary(in, std::numeric_limits<int>::max()); }), "");
    EXPECT_LE(device.mostWanted, onePiece);
}

TEST(AnnouncedLength, OfATextInTheCompactFormMakesNoRoomForWhatIsNotThere)
{
    for (const char *size : {"7ffffffe", "fffffffe", "00200000", "000007ff"}) {
        MeteredBuffer device(bytes("01") + bytes(size) + bytes("0041"));
        QDataStream in(&device);
        PelinInfo info;
        info.SetVersionSpecificBinaryWithoutValidation(in);
        EXPECT_NE(in.status(), QDataStream::Ok) << size;
        EXPECT_TRUE(info.GetPelinID().isNull()) << size;
        EXPECT_LE(device.mostWanted, onePiece) << size;
    }
}

TEST(AnnouncedLength, OfALongTextThatIsThereIsTaken)
{
    const QString text(100'000, 'x');
    PelinInfo info;
    info.SetPelinID(text);
    PelinInfo fromCompact;
    modeltest::readCompact(fromCompact, modeltest::compactForm(info));
    EXPECT_EQ(fromCompact.GetPelinID(), text);
    PelinInfo fromTagged;
    modeltest::readTagged(fromTagged, modeltest::taggedPayload(info));
    EXPECT_EQ(fromTagged.GetPelinID(), text);
}
