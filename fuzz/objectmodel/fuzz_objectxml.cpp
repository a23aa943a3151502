#include "fuzz/objectmodel/objectbytes.h"

#include "objectbase/exceptions.h"

namespace
{

/// The text that comes of reading @p text, which was written by an object as that of @p input is.
QString rewritten(const ObjectBytes &input, const QString &text)
{
    const auto object = input.type.make();
    object->SetValidate(input.object->GetValidate());
    require(object->SetXmlString(text, false));
    return object->GetXmlString();
}

} // namespace

/// Reads a document; what is accepted is written, read and written again, and from then on the text stands still. Before
/// that it may change once: of an unsigned number, a negative text is read as a huge one, and that text as 0.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    if (size < ObjectBytes::headerSize)
        return 0;
    const ObjectBytes input(data, size);
    try {
        if (!input.object->SetXmlString(QString::fromUtf8(input.bytes), false))
            return 0;
        const QString text = input.object->GetXmlString();
        const QString settled = text.isEmpty() ? text : rewritten(input, text);
        require(settled.isEmpty() || rewritten(input, settled) == settled);
    } catch (const REPORTGENERATOR::RGException &) {
        // Refused with a reason.
    }
    return 0;
}
