#include "tests/support/note.h"

#include <gtest/gtest.h>

#include <QDateTime>

#include <cstring>

namespace {

using REPORTGENERATOR::IRGObject;

/// Gives access to the protected slots.
class Slots : public Note
{
public:
    template <class Function> static std::ptrdiff_t of(Function function)
    {
        // A pointer to a virtual member function begins with one plus its offset in the table.
        std::ptrdiff_t offset;
        std::memcpy(&offset, &function, sizeof offset);
        return (offset - 1) / std::ptrdiff_t(sizeof(void *));
    }
    static std::ptrdiff_t setObjectName() { return of(&Slots::SetObjectName); }
    static std::ptrdiff_t processXmlStartElement() { return of(&Slots::ProcessXmlStartElement); }
};

template <class... Arguments> std::ptrdiff_t constSlot(bool (IRGObject::*function)(Arguments...) const)
{
    return Slots::of(function);
}

// The destructor is the first operation and takes two places in the table: operation n stands at place n.
TEST(VirtualOperation, StandsInItsPublishedPlace)
{
    EXPECT_EQ(Slots::of(&IRGObject::HasData), 2);
    EXPECT_EQ(Slots::of(&IRGObject::Reset), 3);
    EXPECT_EQ(Slots::of(static_cast<void (IRGObject::*)(bool) const>(&IRGObject::Check)), 4);
    EXPECT_EQ(Slots::of(static_cast<void (IRGObject::*)() const>(&IRGObject::Check)), 5);
    EXPECT_EQ(constSlot<float>(&IRGObject::IsValid), 6);
    EXPECT_EQ(constSlot<int>(&IRGObject::IsValid), 13);
    EXPECT_EQ(Slots::of(static_cast<void (IRGObject::*)(float &) const>(&IRGObject::SetInvalid)), 14);
    EXPECT_EQ(Slots::of(static_cast<void (IRGObject::*)(int &) const>(&IRGObject::SetInvalid)), 19);
    EXPECT_EQ(Slots::of(&IRGObject::GetXml), 20);
    EXPECT_EQ(Slots::of(&IRGObject::GetBinary), 21);
    EXPECT_EQ(Slots::of(&IRGObject::SetBinary), 22);
    EXPECT_EQ(Slots::of(&IRGObject::SetXmlString), 23);
    EXPECT_EQ(Slots::of(&IRGObject::SetBinaryRepresentation), 24);
    EXPECT_EQ(Slots::of(&IRGObject::MergeRGObject), 25);
    EXPECT_EQ(Slots::of(&IRGObject::GetObjectType), 26);
    EXPECT_EQ(Slots::of(&IRGObject::GetObjectName), 27);
    EXPECT_EQ(Slots::of(&IRGObject::ProcessXml), 28);
    EXPECT_EQ(Slots::of(&IRGObject::GetXmlString), 29);
    EXPECT_EQ(Slots::of(&IRGObject::GetBinaryRepresentation), 30);
    EXPECT_EQ(Slots::of(&IRGObject::GetCompressedBinaryRepresentation), 32);
    EXPECT_EQ(Slots::of(static_cast<bool (IRGObject::*)(const QString &)>(&IRGObject::LoadXml)), 34);
    EXPECT_EQ(Slots::of(static_cast<bool (IRGObject::*)(QFile *)>(&IRGObject::LoadXml)), 35);
    EXPECT_EQ(Slots::of(&IRGObject::LoadBinary), 36);
    EXPECT_EQ(Slots::of(&IRGObject::SaveXml), 37);
    EXPECT_EQ(Slots::of(&IRGObject::SetValidate), 38);
    EXPECT_EQ(Slots::of(&IRGObject::GetValidate), 39);
    EXPECT_EQ(Slots::of(&IRGObject::SetLogger), 40);
    EXPECT_EQ(Slots::of(&IRGObject::ResetLogger), 41);
    EXPECT_EQ(Slots::of(&IRGObject::GetVersion), 42);
    EXPECT_EQ(Slots::of(&IRGObject::SetObjectType), 43);
    EXPECT_EQ(Slots::setObjectName(), 44);
    EXPECT_EQ(Slots::processXmlStartElement(), 45);
}

} // namespace
