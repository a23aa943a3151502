#pragma once

// What the generated sources call; nobody else includes this.
#include "objectmodel/engine/assign.h"
#include "objectmodel/engine/check.h"
#include "objectmodel/engine/compactform.h"
#include "objectmodel/engine/object.h"
#include "objectmodel/engine/settings.h"
#include "objectmodel/engine/taggedform.h"
#include "objectmodel/engine/xmlform.h"

#include <limits>

namespace KORVE_XML::engine
{

/// The literals as @p translate words them, in their order.
template <class Translate> QStringList translated(const Enumeration &enumeration, Translate translate)
{
    QStringList texts = enumeration.names();
    for (QString &text : texts)
        text = translate(text.toLatin1().constData());
    return texts;
}

} // namespace KORVE_XML::engine
