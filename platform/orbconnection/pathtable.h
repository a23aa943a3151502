#pragma once

#include "orbconnection/numbertable.h"
#include "valuetreelib/itreelistener.h"

#include <QHash>

#include <vector>

namespace mirror
{
/// What of a path the peer has yet to hear; bits.
using Parts = quint32;
constexpr Parts statePart = 1 << 0;
constexpr Parts contentPart = 1 << 1;
constexpr Parts limitsPart = 1 << 2;
constexpr Parts itemsPart = 1 << 3;
constexpr Parts everyPart = statePart | contentPart | limitsPart | itemsPart;
constexpr Parts wholePart = 1 << 4; ///< whether there is a value, its class and all of it
constexpr Parts nodePart = 1 << 5;  ///< whether there is a node
constexpr Parts gonePart = 1 << 6;  ///< a value was there that is to go
/// A part's bit, shifted left by this, says that the part is forced: told although nothing need have changed.
constexpr unsigned forcedShift = 8;

/// The part that @p change is of, with its forced bit where it was forced; 0: none.
Parts partsOf(const values::ValueChange &change);
/// Appends the frames that make @p parts of another value of this class what they are here.
void appendParts(const values::ValueBase &value, Parts parts, std::string &out);

/// The paths that have come up in one session of a mirror, each with the value that both sides know there, and a list
/// of those that the peer has yet to hear of, in the order in which they changed last.
///
/// A path keeps its place for the life of the session. Values are borrowed: who uses this unbinds those that go.
class PathTable
{
public:
    /// Names an entry; 0 is none.
    using Place = quint32;

    /// What is called the client's, or the server's, is used by that side alone.
    struct Entry {
        QString path;
        values::ValueBase *value = nullptr;
        quint64 valueSent = 0; ///< the client's: the number of its last record about the value
        quint64 nodeSent = 0;  ///< the client's: the number of its last record about the node
        quint32 number = 0; ///< by which the peer knows the path; 0: it does not yet
        qint32 type = 0;    ///< the client's: the server's number of the value's class
        Parts dirty = 0;
        bool hasNode = false;    ///< the client's: its node is the server's, too
        bool valueNamed = false; ///< the client's: in the snapshot that is being received
        bool nodeNamed = false;  ///< the client's: in the snapshot that is being received
        bool isMadeByClient = false; ///< the server's: the value was made by this session's client
        bool isUnknown = false;      ///< the server's: the client has a value there of a class that is not known here
        bool isWithheld = false;     ///< the server's: the client has been told that the content is too large
        bool isListed = false;       ///< the server's: a part of the snapshot that is yet to be written

    private:
        friend class PathTable;
        Place previous = 0;
        Place next = 0;
    };

    /// The place of @p path, added if necessary.
    Place placeOf(const QString &path);
    /// Makes room for @p count paths in all.
    void reserve(std::size_t count);
    /// Adds a path that is known not to be here yet.
    Place add(const QString &path);
    /// 0, when the path has not come up.
    Place find(const QString &path);
    /// 0, when the value is bound to no path.
    Place find(const values::ValueBase *value);

    Entry &operator[](Place place) { return entries[place]; }
    const Entry &operator[](Place place) const { return entries[place]; }
    /// Places are 1 to this.
    Place last() const { return static_cast<Place>(entries.size() - 1); }
    void clear() { *this = PathTable(); }

    /// The value is now what stands at @p place for both sides.
    void bind(Place place, values::ValueBase *value);
    void unbind(Place place);

    /// Makes @p parts dirty, besides what is so already, and moves the path to the end of the list unless it is listed
    /// for a snapshot.
    void makeDirty(Place place, Parts parts);
    /// The path that has been dirty for longest; 0: none.
    Place firstDirty() const { return entries[0].next; }
    /// Takes the path off the list, and returns which of its parts were dirty.
    Parts takeDirty(Place place);
    void clearDirty();

private:
    void enterValues();
    void unlink(Entry &entry);

    // The first stands for the ends of the list of what is dirty.
    std::vector<Entry> entries = std::vector<Entry>(1);
    // A snapshot adds very many and looks none up: they are entered together for who asks.
    QHash<QString, Place> placesByPath;
    Place pathsEntered = 0;
    NumberTable<const values::ValueBase *, Place> placesByValue;
    std::vector<Place> valuesNotEntered;
};
} // namespace mirror
