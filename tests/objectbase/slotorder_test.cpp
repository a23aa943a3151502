#include "tests/support/note.h"
#include "tests/support/virtualslot.h"

#include <gtest/gtest.h>

#include <QDateTime>

namespace
{

using REPORTGENERATOR::IRGObject;

/// Gives access to the protected slots.
class Slots : public Note
{
public:
    static std::ptrdiff_t setObjectName() { return virtualSlot(&Slots::SetObjectName); }
    static std::ptrdiff_t processXmlStartElement() { return virtualSlot(&Slots::ProcessXmlStartElement); }
};

template <class... Arguments> std::ptrdiff_t checkPlace()
{
    return virtualSlot(static_cast<void (IRGObject::*)(Arguments...) const>(&IRGObject::Check));
}

template <class Argument> std::ptrdiff_t isValidPlace()
{
    return virtualSlot(static_cast<bool (IRGObject::*)(Argument) const>(&IRGObject::IsValid));
}

template <class Argument> std::ptrdiff_t setInvalidPlace()
{
    return virtualSlot(static_cast<void (IRGObject::*)(Argument &) const>(&IRGObject::SetInvalid));
}

// The destructor is the first operation and takes two places in the table: operation n stands at place n.
TEST(VirtualOperation, OfContentStandsInItsPublishedPlace)
{
    EXPECT_EQ(virtualSlot(&IRGObject::HasData), 2);
    EXPECT_EQ(virtualSlot(&IRGObject::Reset), 3);
    EXPECT_EQ(checkPlace<bool>(), 4);
    EXPECT_EQ(checkPlace<>(), 5);
    EXPECT_EQ(isValidPlace<float>(), 6);
    EXPECT_EQ(isValidPlace<bool>(), 7);
    EXPECT_EQ(isValidPlace<unsigned>(), 8);
    EXPECT_EQ(isValidPlace<qint64>(), 9);
    EXPECT_EQ(isValidPlace<const QDateTime &>(), 10);
    EXPECT_EQ(isValidPlace<const QString &>(), 11);
    EXPECT_EQ(isValidPlace<double>(), 12);
    EXPECT_EQ(isValidPlace<int>(), 13);
    EXPECT_EQ(setInvalidPlace<float>(), 14);
    EXPECT_EQ(setInvalidPlace<unsigned>(), 15);
    EXPECT_EQ(setInvalidPlace<qint64>(), 16);
    EXPECT_EQ(setInvalidPlace<QString>(), 17);
    EXPECT_EQ(setInvalidPlace<double>(), 18);
    EXPECT_EQ(setInvalidPlace<int>(), 19);
}

TEST(VirtualOperation, OfAFormStandsInItsPublishedPlace)
{
    EXPECT_EQ(virtualSlot(&IRGObject::GetXml), 20);
    EXPECT_EQ(virtualSlot(&IRGObject::GetBinary), 21);
    EXPECT_EQ(virtualSlot(&IRGObject::SetBinary), 22);
    EXPECT_EQ(virtualSlot(&IRGObject::SetXmlString), 23);
    EXPECT_EQ(virtualSlot(&IRGObject::SetBinaryRepresentation), 24);
    EXPECT_EQ(virtualSlot(&IRGObject::MergeRGObject), 25);
    EXPECT_EQ(virtualSlot(&IRGObject::ProcessXml), 28);
    EXPECT_EQ(virtualSlot(&IRGObject::GetXmlString), 29);
    EXPECT_EQ(virtualSlot(&IRGObject::GetBinaryRepresentation), 30);
    EXPECT_EQ(virtualSlot(&IRGObject::GetBinaryRepresentationAsQByteArray), 31);
    EXPECT_EQ(virtualSlot(&IRGObject::GetCompressedBinaryRepresentation), 32);
    EXPECT_EQ(virtualSlot(&IRGObject::GetCompressedBinaryRepresentationAsQByteArray), 33);
    EXPECT_EQ(virtualSlot(static_cast<bool (IRGObject::*)(const QString &)>(&IRGObject::LoadXml)), 34);
    EXPECT_EQ(virtualSlot(static_cast<bool (IRGObject::*)(QFile *)>(&IRGObject::LoadXml)), 35);
    EXPECT_EQ(virtualSlot(&IRGObject::LoadBinary), 36);
    EXPECT_EQ(virtualSlot(&IRGObject::SaveXml), 37);
}

TEST(VirtualOperation, OfSettingsAndIdentityStandsInItsPublishedPlace)
{
    EXPECT_EQ(virtualSlot(&IRGObject::GetObjectType), 26);
    EXPECT_EQ(virtualSlot(&IRGObject::GetObjectName), 27);
    EXPECT_EQ(virtualSlot(&IRGObject::SetValidate), 38);
    EXPECT_EQ(virtualSlot(&IRGObject::GetValidate), 39);
    EXPECT_EQ(virtualSlot(&IRGObject::SetLogger), 40);
    EXPECT_EQ(virtualSlot(&IRGObject::ResetLogger), 41);
    EXPECT_EQ(virtualSlot(&IRGObject::GetVersion), 42);
    EXPECT_EQ(virtualSlot(&IRGObject::SetObjectType), 43);
    EXPECT_EQ(Slots::setObjectName(), 44);
    EXPECT_EQ(Slots::processXmlStartElement(), 45);
}

TEST(VirtualOperations, AreNoMoreThanPublished)
{
    EXPECT_EQ(slotBehind<IRGObject>(), 46);
}

} // namespace
