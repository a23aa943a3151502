#include "idl/cco.hh"
#include "idl/korve.hh"
#include "idl/korvemanager.hh"

#include <gtest/gtest.h>

#include <QString>

#include <functional>
#include <memory>

namespace
{

/// Whether a decoder takes a wire value of one enumeration.
template <typename Enumeration> bool isDecoded(CORBA::ULong wireValue)
{
    cdrMemoryStream stream;
    wireValue >>= stream;
    Enumeration decoded;
    try {
        decoded <<= stream;
    } catch (const CORBA::MARSHAL &) {
        return false;
    }
    return static_cast<CORBA::ULong>(decoded) == wireValue;
}

struct EnumerationCase {
    const char *name;
    std::function<bool(CORBA::ULong)> isDecoded;
    CORBA::ULong literals;
};

class Enumeration : public testing::TestWithParam<EnumerationCase>
{
};

TEST_P(Enumeration, TakesItsLiteralsAndRefusesTheNextValue)
{
    for (CORBA::ULong value = 0; value < GetParam().literals; ++value)
        EXPECT_TRUE(GetParam().isDecoded(value)) << value;
    EXPECT_FALSE(GetParam().isDecoded(GetParam().literals));
    EXPECT_FALSE(GetParam().isDecoded(0xffffffff));
}

INSTANTIATE_TEST_SUITE_P(OnTheWire, Enumeration,
                         testing::Values(EnumerationCase{"ManagerDataRate", isDecoded<TQ_KRV::eDATARATE_CLASS>, 16},
                                         EnumerationCase{"ManagerDataFormat", isDecoded<TQ_KRV::eDATA_FORMAT>, 24},
                                         EnumerationCase{"ManagerRecordStatus", isDecoded<TQ_KRV::eRECORD_STATUS>, 9},
                                         EnumerationCase{"InterfaceType", isDecoded<TQ_KRV::interfaceTypeEnum>, 5},
                                         EnumerationCase{"ManagerWindow", isDecoded<TQ_KRV::eFFT_WINDOWING_MODES>, 5},
                                         EnumerationCase{"ChannelFault", isDecoded<TQ_KRV::eCHANNEL_FAULT>, 4},
                                         EnumerationCase{"GeneralKind", isDecoded<TQ_KRV::eGenKind>, 5},
                                         EnumerationCase{"ChannelManagerKind",
                                                         isDecoded<TQ_KRV::IF_KRV_c_ChanMan::eChanManKind>, 9},
                                         EnumerationCase{"ChannelKind", isDecoded<TQ_KRV::IF_KRV_c_Chan::eChanKind>, 6},
                                         EnumerationCase{"AdminKind", isDecoded<TQ_KRV::IF_KORVE_Admin::eAdminKind>, 1},
                                         EnumerationCase{"ManagerKind", isDecoded<TQ_KRV::IF_KRV_c_KRV::eKRVKind>, 4},
                                         EnumerationCase{"DeviceDataRate", isDecoded<TQ_KORVE::eDATARATE_CLASS>, 13},
                                         EnumerationCase{"DeviceDataFormat", isDecoded<TQ_KORVE::eDATA_FORMAT>, 24},
                                         EnumerationCase{"DeviceRecordStatus", isDecoded<TQ_KORVE::eRECORD_STATUS>, 8},
                                         EnumerationCase{"DeviceWindow", isDecoded<TQ_KORVE::eFFT_WINDOWING_MODES>, 5},
                                         EnumerationCase{"DeviceKind", isDecoded<TQ_KORVE::eKorveKind>, 35},
                                         EnumerationCase{"DataLinkKind", isDecoded<LLDCmodule::eLLDCKind>, 8},
                                         EnumerationCase{"ResolveType", isDecoded<CCO::eResolveType>, 2}),
                         [](const auto &info) { return std::string(info.param.name); });

void writeText(const char *text, cdrStream &stream)
{
    stream.marshalRawString(text);
}

void writeWideText(const wchar_t *text, cdrStream &stream)
{
    stream.marshalWString(text);
}

class WireForm : public testing::Test
{
protected:
    static void SetUpTestSuite()
    {
        int noArguments = 0;
        orb = CORBA::ORB_init(noArguments, nullptr); // the code sets are loaded with the ORB
    }
    static void TearDownTestSuite()
    {
        orb->destroy();
        orb = CORBA::ORB::_nil();
    }

    // Two ORBs agree on a code set for wide strings; a stream alone has none.
    WireForm() { stream.TCS_W(omni::omniCodeSet::getTCS_W(omni::omniCodeSet::ID_UTF_16, {1, 2})); }

    /// A record without entries, written member by member.
    void writeRecord(CORBA::ULong status, CORBA::ULong format, CORBA::ULong rate)
    {
        writeText("R1", stream);
        writeWideText(L"name", stream);
        for (const CORBA::ULongLong member : {11, 12, 13}) // size, start time, stop time
            member >>= stream;
        status >>= stream;
        format >>= stream;
        for (const CORBA::ULongLong member : {14, 15, 16}) // loop size, stop position, start position
            member >>= stream;
        rate >>= stream;
        stream.marshalBoolean(true);
        for (int list = 0; list < 3; ++list)
            CORBA::ULong(0) >>= stream;
    }

    /// The meta data of a record, written member by member.
    void writeMetaData(CORBA::ULong format, CORBA::ULong rate)
    {
        writeText("R1", stream);
        writeText("10.0.0.7", stream);
        writeWideText(L"name", stream);
        for (const CORBA::ULongLong member : {11, 12}) // size, loop size
            member >>= stream;
        format >>= stream;
        rate >>= stream;
        for (const CORBA::ULongLong member : {13, 14, 15, 16, 17, 18}) // times, positions, tuner frequencies
            member >>= stream;
        for (const CORBA::ULong member : {19, 20}) // bandwidths
            member >>= stream;
        for (const CORBA::ULongLong member : {21, 22}) // offsets
            member >>= stream;
    }

    static inline CORBA::ORB_var orb;
    cdrMemoryStream stream;
};

TEST_F(WireForm, OfARecordHasItsMembersInOrder)
{
    writeRecord(TQ_KRV::rsACTIVE, TQ_KRV::dfIQBW, TQ_KRV::drVUHF_1M);
    TQ_KRV::struRECORD_DATA record;
    record <<= stream;
    EXPECT_STREQ(record.recordID, "R1");
    EXPECT_EQ(QString::fromWCharArray(record.recordName), "name");
    EXPECT_EQ(record.size, 11u);
    EXPECT_EQ(record.startTime, 12u);
    EXPECT_EQ(record.stopTime, 13u);
    EXPECT_EQ(record.recordStatus, TQ_KRV::rsACTIVE);
    EXPECT_EQ(record.dataFormat, TQ_KRV::dfIQBW);
    EXPECT_EQ(record.recordingLoopSize, 14u);
    EXPECT_EQ(record.stopPosition, 15u);
    EXPECT_EQ(record.startPosition, 16u);
    EXPECT_EQ(record.dataRate, TQ_KRV::drVUHF_1M);
    EXPECT_TRUE(record.deletable);
}

TEST_F(WireForm, OfMetaDataHasItsMembersInOrder)
{
    writeMetaData(TQ_KRV::dfIQBW, TQ_KRV::drVUHF_1M);
    TQ_KRV::struMETA_DATA meta;
    meta <<= stream;
    EXPECT_STREQ(meta.recordID, "R1");
    EXPECT_STREQ(meta.korveAddress, "10.0.0.7");
    EXPECT_EQ(meta.size, 11u);
    EXPECT_EQ(meta.recordingLoopSize, 12u);
    EXPECT_EQ(meta.dataFormat, TQ_KRV::dfIQBW);
    EXPECT_EQ(meta.dataRate, TQ_KRV::drVUHF_1M);
    EXPECT_EQ(meta.startTime, 13u);
    EXPECT_EQ(meta.stopTime, 14u);
    EXPECT_EQ(meta.startPosition, 15u);
    EXPECT_EQ(meta.stopPosition, 16u);
    EXPECT_EQ(meta.tunerFrequency1, 17u);
    EXPECT_EQ(meta.tunerFrequency2, 18u);
    EXPECT_EQ(meta.bandwidth1, 19u);
    EXPECT_EQ(meta.bandwidth2, 20u);
    EXPECT_EQ(meta.recordOffset1, 21u);
    EXPECT_EQ(meta.recordOffset2, 22u);
}

TEST_F(WireForm, OfARecordIsRefusedWithAnUnknownStatus)
{
    writeRecord(9, TQ_KRV::dfRAW, TQ_KRV::drHF_20k);
    TQ_KRV::struRECORD_DATA record;
    EXPECT_THROW(record <<= stream, CORBA::MARSHAL);
}

TEST_F(WireForm, OfARecordIsRefusedWithAnUnknownFormat)
{
    writeRecord(TQ_KRV::rsIDLE, 24, TQ_KRV::drHF_20k);
    TQ_KRV::struRECORD_DATA record;
    EXPECT_THROW(record <<= stream, CORBA::MARSHAL);
}

TEST_F(WireForm, OfARecordIsRefusedWithAnUnknownRate)
{
    writeRecord(TQ_KRV::rsIDLE, TQ_KRV::dfRAW, 16);
    TQ_KRV::struRECORD_DATA record;
    EXPECT_THROW(record <<= stream, CORBA::MARSHAL);
}

TEST_F(WireForm, OfAnExceptionIsRefusedWithAnUnknownKind)
{
    CORBA::ULong(35) >>= stream;
    writeText("text", stream);
    TQ_KORVE::exKorve failure;
    EXPECT_THROW(failure <<= stream, CORBA::MARSHAL);
}

TEST_F(WireForm, OfAnExceptionIsKindThenText)
{
    CORBA::ULong(34) >>= stream;
    writeText("at 17", stream);
    TQ_KORVE::exKorve failure;
    failure <<= stream;
    EXPECT_EQ(failure.kind, TQ_KORVE::ekBOOKMARK_ALREADY_EXISTS);
    EXPECT_STREQ(failure.text, "at 17");
}

TEST_F(WireForm, OfAnUntouchedTextIsTheEmptyString)
{
    TQ_KRV::IF_KRV_c_KRV::exKRV failure;
    failure.kind = TQ_KRV::IF_KRV_c_KRV::Invalid_Address;
    ASSERT_NE(static_cast<const char *>(failure.text), nullptr);
    failure >>= stream;
    CORBA::ULong kind = 0;
    kind <<= stream;
    CORBA::ULong lengthWithEnd = 0;
    lengthWithEnd <<= stream;
    EXPECT_EQ(kind, 1u);
    EXPECT_EQ(lengthWithEnd, 1u);
    EXPECT_EQ(stream.unmarshalOctet(), 0);
}

TEST_F(WireForm, OfADefaultRecordHasNoNullTexts)
{
    const TQ_KRV::struRECORD_DATA record{};
    EXPECT_STREQ(record.recordID, "");
    EXPECT_STREQ(record.recordName, L"");
    const TQ_KRV::struMETA_DATA meta{};
    EXPECT_STREQ(meta.recordID, "");
    EXPECT_STREQ(meta.korveAddress, "");
}

TEST_F(WireForm, CarriesAWideTextAsUtf16Units)
{
    const QString text = QString::fromUtf8("Bö \xF0\x9F\x93\xBB");
    std::wstring units;
    for (const QChar unit : text)
        units.push_back(unit.unicode());
    writeWideText(units.c_str(), stream);
    const CORBA::WString_var received = stream.unmarshalWString();
    EXPECT_EQ(QString::fromWCharArray(received), text);
}

TEST_F(WireForm, RefusesAWideCharacterOutsideOneUnit)
{
    EXPECT_THROW(writeWideText(L"\U0001F4FB", stream), CORBA::BAD_PARAM);
}

TEST_F(WireForm, OfADeviceTextIsOneUnitPerCharacterWithoutAnEnd)
{
    TQ_KORVE::wideText text;
    text.length(2);
    text[0] = 'B';
    text[1] = 0xF6;
    text >>= stream;
    CORBA::ULong length = 0;
    length <<= stream;
    EXPECT_EQ(length, 2u);
    EXPECT_EQ(stream.unmarshalUShort(), 'B');
    EXPECT_EQ(stream.unmarshalUShort(), 0xF6);
}

TEST_F(WireForm, OfCopySectionsIsThatOfFileParts)
{
    static_assert(std::is_same_v<TQ_KRV::seqCopySection, TQ_KRV::seqFILE_PART>);
    TQ_KRV::seqCopySection sections;
    sections.length(1);
    sections[0].firstPosition = 3;
    sections[0].lastPosition = 9;
    sections >>= stream;
    CORBA::ULong count = 0;
    count <<= stream;
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(stream.unmarshalULongLong(), 3u);
    EXPECT_EQ(stream.unmarshalULongLong(), 9u);
}

} // namespace
