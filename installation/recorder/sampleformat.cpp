#include "installation/recorder/sampleformat.h"

#include <sndfile.h>

#include <array>

namespace installation::recorder
{

namespace
{

using KORVE_XML::KORVE_RecordData;

struct Number {
    const char *name;
    unsigned bytes;
};
constexpr std::array numbers{
    Number{"f64", 8}, Number{"f32", 4}, Number{"i32", 4}, Number{"u32", 4},
    Number{"i16", 2}, Number{"u16", 2}, Number{"i8", 1},  Number{"u8", 1},
};

struct SoundFormat {
    int subtype;
    const char *datatype;
};
constexpr std::array soundFormats{
    SoundFormat{SF_FORMAT_PCM_U8, "ru8"},     SoundFormat{SF_FORMAT_PCM_16, "ri16_le"},
    SoundFormat{SF_FORMAT_PCM_32, "ri32_le"}, SoundFormat{SF_FORMAT_FLOAT, "rf32_le"},
    SoundFormat{SF_FORMAT_DOUBLE, "rf64_le"},
};

/// Only a single byte needs no order.
bool isByteOrder(const QString &ending, unsigned bytes)
{
    return ending == QLatin1String("_le") || ending == QLatin1String("_be") || (ending.isEmpty() && bytes == 1);
}

} // namespace

std::optional<SampleFormat> SampleFormat::ofSigmf(const QString &datatype)
{
    const bool complex = datatype.startsWith(QLatin1Char('c'));
    if (!complex && !datatype.startsWith(QLatin1Char('r')))
        return {};
    for (const auto &[name, bytes] : numbers) {
        const QLatin1String number(name);
        if (datatype.midRef(1).startsWith(number) && isByteOrder(datatype.mid(1 + number.size()), bytes))
            return SampleFormat{datatype, complex ? 2 * bytes : bytes, complex};
    }
    return {};
}

std::optional<SampleFormat> SampleFormat::ofSound(int subtype)
{
    for (const SoundFormat &format : soundFormats)
        if (format.subtype == subtype)
            return ofSigmf(QLatin1String(format.datatype));
    return {};
}

DataFormat SampleFormat::dataFormat() const
{
    return complex ? KORVE_RecordData::RAW : KORVE_RecordData::TIMEDOMAIN_DATA;
}

} // namespace installation::recorder
