#include "fuzz/objectmodel/objectbytes.h"

namespace
{

QByteArray compactOf(const ObjectBytes &input, const REPORTGENERATOR::IRGObject &object)
{
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    input.type.writeCompact(object, out);
    return bytes;
}

} // namespace

/// Reads bare values; what was read is written, and the bytes stand still when they are read and written again. Only of
/// a date far out of range Qt writes others each time.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < ObjectBytes::headerSize)
        return 0;
    const ObjectBytes input(data, size);
    QDataStream in(input.bytes);
    input.type.readCompact(*input.object, in);
    const QByteArray bytes = compactOf(input, *input.object);
    const auto again = input.type.make();
    QDataStream back(bytes);
    input.type.readCompact(*again, back);
    require(back.status() == QDataStream::Ok && back.atEnd());
    require(input.type.name == QLatin1String("KORVE_Bite") || compactOf(input, *again) == bytes);
    return 0;
}
