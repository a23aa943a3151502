#include "installation/recorder/spectrum/sampleconverter.h"

#include "installation/recorder/recordererror.h"
#include "installation/recorder/spectrum/vectorised.h"

#include <QtEndian>

#include <array>
#include <bit>
#include <cstring>
#include <type_traits>

namespace installation::recorder
{

namespace
{

using Function = SampleConverter::Function;

template <std::size_t size> struct UnsignedOf;
template <> struct UnsignedOf<1> {
    using Type = quint8;
};
template <> struct UnsignedOf<2> {
    using Type = quint16;
};
template <> struct UnsignedOf<4> {
    using Type = quint32;
};
template <> struct UnsignedOf<8> {
    using Type = quint64;
};

template <typename Number, bool swapped> KORVE_LOOP float numberAt(const char *place)
{
    using Bits = typename UnsignedOf<sizeof(Number)>::Type;
    Bits bits;
    std::memcpy(&bits, place, sizeof bits);
    if constexpr (swapped)
        bits = qbswap(bits);
    if constexpr (std::is_floating_point_v<Number>)
        return static_cast<float>(std::bit_cast<Number>(bits));
    else if constexpr (std::is_signed_v<Number>)
        return static_cast<float>(static_cast<Number>(bits));
    else // half of the range stands for 0
        return static_cast<float>(
            static_cast<std::make_signed_t<Number>>(bits ^ Bits(Bits(1) << (8 * sizeof bits - 1))));
}

template <typename Number, bool swapped, std::size_t components>
KORVE_LOOP void convertSamples(const char *__restrict samples, std::size_t count, std::size_t sampleBytes,
                               const float *__restrict weights, float *__restrict numbers)
{
    if (sampleBytes == components * sizeof(Number)) {
        for (std::size_t i = 0; i < count * components; ++i)
            numbers[i] = numberAt<Number, swapped>(samples + i * sizeof(Number)) * weights[i];
        return;
    }
    for (std::size_t i = 0; i < count; ++i)
        for (std::size_t c = 0; c < components; ++c)
            numbers[i * components + c] =
                numberAt<Number, swapped>(samples + i * sampleBytes + c * sizeof(Number)) * weights[i * components + c];
}

template <typename Number, bool swapped, std::size_t components>
KORVE_WIDE void convertWide(const char *samples, std::size_t count, std::size_t sampleBytes, const float *weights,
                            float *numbers)
{
    convertSamples<Number, swapped, components>(samples, count, sampleBytes, weights, numbers);
}

template <typename Number, bool swapped, std::size_t components>
void convertAny(const char *samples, std::size_t count, std::size_t sampleBytes, const float *weights, float *numbers)
{
    convertSamples<Number, swapped, components>(samples, count, sampleBytes, weights, numbers);
}

template <typename Number, bool swapped> Function functionFor(bool complex)
{
    const bool isWide = hasWideVectors();
    if (complex)
        return isWide ? convertWide<Number, swapped, 2> : convertAny<Number, swapped, 2>;
    return isWide ? convertWide<Number, swapped, 1> : convertAny<Number, swapped, 1>;
}

/// A kind of numbers by its word in SigMF, without byte order.
struct Kind {
    const char *name;
    double unit;
    Function (*native)(bool complex);
    Function (*swapped)(bool complex);
};

template <typename Number> constexpr Kind kind(const char *name)
{
    const double unit = std::is_floating_point_v<Number> ? 1 : 1.0 / (quint64(1) << (8 * sizeof(Number) - 1));
    return {name, unit, functionFor<Number, false>, functionFor<Number, true>};
}

constexpr std::array kinds{kind<double>("f64"), kind<float>("f32"),   kind<qint32>("i32"), kind<quint32>("u32"),
                           kind<qint16>("i16"), kind<quint16>("u16"), kind<qint8>("i8"),   kind<quint8>("u8")};

} // namespace

SampleConverter::SampleConverter(const SampleLayout &layout) : sampleBytes(layout.sampleBytes())
{
    constexpr bool isBigEndianHost = std::endian::native == std::endian::big;
    const QString &datatype = layout.format.datatype;
    const bool isBigEndian = datatype.endsWith(QLatin1String("_be"));
    for (const Kind &kind : kinds)
        if (datatype.midRef(1, static_cast<int>(std::strlen(kind.name))) == QLatin1String(kind.name)) {
            function = (isBigEndian == isBigEndianHost ? kind.native : kind.swapped)(layout.format.complex);
            greatest = kind.unit;
            return;
        }
    throw RecorderError(TQ_KORVE::ekINVALID_VALUE, QStringLiteral("samples of \"%1\" have no spectrum").arg(datatype));
}

} // namespace installation::recorder
