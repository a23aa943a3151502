#include "fuzz/objectmodel/objectbytes.h"

#include "objectbase/exceptions.h"

/// Reads a document; what is accepted is written, and the text stands still when it is read and written again.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < ObjectBytes::headerSize)
        return 0;
    const ObjectBytes input(data, size);
    try {
        if (!input.object->SetXmlString(QString::fromUtf8(input.bytes), false))
            return 0;
        const QString text = input.object->GetXmlString();
        const auto again = input.type.make();
        again->SetValidate(input.object->GetValidate());
        if (!text.isEmpty())
            require(again->SetXmlString(text, false) && again->GetXmlString() == text);
    } catch (const REPORTGENERATOR::RGException &) {
        // Refused with a reason.
    }
    return 0;
}
