#include "fuzz/objectmodel/objectbytes.h"

#include "objectbase/exceptions.h"

/// Reads a payload that claims to be as long as it is; what is accepted can be written.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < ObjectBytes::headerSize)
        return 0;
    const ObjectBytes input(data, size);
    QDataStream in(input.bytes);
    try {
        input.object->SetBinary(in, input.bytes.size());
        QByteArray written;
        QDataStream out(&written, QIODevice::WriteOnly);
        if (input.object->GetBinary(out, 1, true))
            require(written.size() >= 8);
    } catch (const REPORTGENERATOR::RGException &) {
        // Refused with a reason.
    }
    return 0;
}
