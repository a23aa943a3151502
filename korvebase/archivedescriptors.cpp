#include "korvebase/archivedescriptors.h"

#include "korvebase/valuenames.h"
#include "korvebase/valuetreepaths.h"

#include "valuetreelib/value.h"
#include "valuetreelib/valueselection.h"

namespace korve
{

namespace
{

using values::SelItemDesc;
using values::ValueDescriptor;

/// What an archive can be told to do.
const std::array<SelItemDesc, 4> &actions()
{
    static const std::array items{
        SelItemDesc(name::AddArchive, 0.0, 0), SelItemDesc(name::CopyToArchive, 1.0, 1),
        SelItemDesc(name::CopyFromArchive, 2.0, 2), SelItemDesc(name::DeleteFromArchive, 3.0, 3)};
    return items;
}

template <class T> ValueDescriptor plain(QLatin1String name)
{
    static const values::Value<T> prototype;
    return {name, path::archive, &prototype, QString(), QString()};
}

ValueDescriptor selection(QLatin1String name, const SelItemDesc *items, int count, const QString &defaultText)
{
    static const values::ValueSelection prototype;
    return {name, path::archive, &prototype, items, count, defaultText, QString()};
}

} // namespace

const std::array<ValueDescriptor, 9> &archiveDescriptors()
{
    static const std::array descriptors{
        selection(name::ArchiveCommand, values::g_svdCommand, values::svdCommandCount,
                  values::g_svdCommand[2].String()),
        selection(literal("ArchvieCmdResult"), // contract: spelled so on both sides
                  values::g_svdResult, values::svdResultCount, values::g_svdResult[0].String()),
        selection(name::ArchiveAction, actions().data(), int(actions().size()), name::CopyToArchive),
        plain<QString>(name::IdList),
        plain<QString>(name::ArchiveURL),
        plain<bool>(name::AllRecordsHaveChanged),
        plain<QString>(name::OneRecordHasChanged),
        plain<QString>(name::CurrentItem),
        plain<QString>(name::ProcessedItem)};
    return descriptors;
}

} // namespace korve
