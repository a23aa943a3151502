#pragma once

#include "apps/korvectl/mirroredpart.h"
#include "apps/korvectl/treerow.h"

#include <functional>
#include <set>
#include <vector>

namespace korvectl
{

/// Something that happened in a mirrored part.
struct TreeEvent {
    enum class Kind {
        Connected, ///< the values follow, as they are now
        Value,     ///< one of these
        Change,    ///< a value is new, is another, or has gone
        Lost,      ///< no more changes until it is connected again
    };

    Kind kind;
    std::vector<TreeRow> rows; ///< one of a change; all at once of values
};

/// Tells what happens in a mirrored part, in the order in which it happens, from the event loop: first that it is
/// connected, and its values.
///
/// Thread: main.
class TreeWatch : public QObject, private IObserver
{
    Q_OBJECT
public:
    using Tell = std::function<void(const TreeEvent &)>;

    /// Borrows @p part.
    TreeWatch(const MirroredPart &part, Tell tell);
    ~TreeWatch() override;

private:
    void begin();
    void lose();
    void Update(Observable *subject, TChangeCode code) override;
    void observe(values::TreeItem &item);
    bool isWatched(const values::TreeItem &item) const;
    void takeNew(values::TreeItem &item);
    void noteChange(const values::ValueBase &value, TChangeCode code);
    void note(const values::ValueBase &value);
    void tellNotes();

    const MirroredPart &part;
    const Tell tell;
    std::set<values::TreeItem *> observed;
    std::vector<TreeRow> notes; ///< changes that have not been told yet
    bool isLive = false;
};

} // namespace korvectl
