#pragma once

#include "korvebase/korvebase_export.h"
#include "korvebase/toolbarhelper.h"
#include "korvebase/traceerror.h"

#include <QString>
#include <QVector>

#include <variant>

namespace KorveManagement
{
/// All that this library knows of error numbers: the sentences that it has for one, and who answers it.
///
/// Thread: any.
class KORVEBASE_EXPORT ErrorCatalogue
{
public:
    /// What words numbers: a work flow of TraceError, or a context of ToolbarHelper.
    using Table = std::variant<TraceError::MethodCallType, KorveCommon::ToolbarHelper::errorIdContext>;
    struct NamedTable {
        const char *name; ///< such as "StartReplay"
        Table table;
    };

    /// All tables, the work flows first.
    static const QVector<NamedTable> &tables();
    /// Whether the table has a sentence for just this number, rather than one for all that it does not know.
    static bool isKnown(unsigned long number, const Table &table);
    /// What the table says of the number, known or not. @p text stands where the sentence speaks of something
    /// particular, such as a record. Empty for a number that is too large for the table.
    static QString sentence(unsigned long number, const Table &table, const QString &text);
    /// Whose number it is, in a few words: the kind of an exception by its name, or what answers it. Empty for a number
    /// of which nothing is known.
    static QString origin(unsigned long number);
};
} // namespace KorveManagement
