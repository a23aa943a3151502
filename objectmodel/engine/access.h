#pragma once

#include "objectmodel/engine/typeinfo.h"

#include "objectbase/irgobject.h"

#include <QVector>

namespace KORVE_XML::engine
{

/// The one friend of every class: reaches the storage behind an object.
struct Access {
    template <class T> static RecordPtr &handle(const IRGObject &object) { return static_cast<const T &>(object).d; }
};

/// An object as the engine's functions take it. Storage is mutable in const objects: looking at an object may detach it
/// from its copies or make its record.
struct Self {
    const IRGObject &object;
    RecordPtr &d;
    const TypeInfo &type;
};

template <class T> Self selfOf(const T &object)
{
    return {object, Access::handle<T>(object), typeOf<T>()};
}

template <class R> Record *createRecord()
{
    return new R;
}

/// Address of the field @p member of the record class R.
template <class R, auto member> void *fieldOf(Record &record)
{
    return &(static_cast<R &>(record).*member);
}

template <class T>
inline constexpr ObjectAccess objectAccess{
    &typeOf<T>,
    [](void *field) -> IRGObject & { return *static_cast<T *>(field); },
    [](void *field) -> RecordPtr & { return Access::handle<T>(*static_cast<T *>(field)); },
    [](void *field) { *static_cast<T *>(field) = T(); },
    [](const void *a, const void *b) { return *static_cast<const T *>(a) == *static_cast<const T *>(b); },
};

template <class T> const QVector<T> &listAt(const void *list)
{
    return *static_cast<const QVector<T> *>(list);
}

template <class T> QVector<T> &listAt(void *list)
{
    return *static_cast<QVector<T> *>(list);
}

template <class T> Items itemsOf(const QVector<T> &list)
{
    return {reinterpret_cast<const char *>(list.constData()), list.size(), int(sizeof(T))};
}

template <class T>
inline constexpr ListAccess listAccess{
    [](const void *list) { return itemsOf(listAt<T>(list)); },
    [](void *list) {
        listAt<T>(list).detach();
        return itemsOf(listAt<T>(list));
    },
    [](void *list) -> void * {
        listAt<T>(list).resize(listAt<T>(list).size() + 1);
        return &listAt<T>(list).last();
    },
    [](void *list) { listAt<T>(list).removeLast(); },
    [](void *list, int size) { listAt<T>(list).reserve(size); },
    [](void *list) { listAt<T>(list).clear(); },
    [](const void *a, const void *b) { return listAt<T>(a) == listAt<T>(b); },
};

} // namespace KORVE_XML::engine
