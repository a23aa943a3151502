#pragma once

#include "valuetreelib/value.h"

#include <QTimer>

#include <functional>

/// The values of mixedcontent.h, as they stand in the tree of this process.
class MixedValues
{
public:
    /// Adds them below @p top.
    static void add(const QString &top, bool optimized);

    /// Takes those that stand below @p top.
    explicit MixedValues(const QString &top);

    void set(int update);
    /// Whether the value that @p update goes to is as that makes it.
    bool isAsSet(int update) const;
    /// All contents as one line of text.
    QString contents() const;
    const std::vector<values::ValueBase *> &all() const { return values; }

private:
    template <typename T> values::Value<T> &to(int update) const;

    std::vector<values::ValueBase *> values;
};

/// Makes updates, some in each turn of the event loop, as a program does that has more to do.
class SteadyUpdates
{
public:
    /// @p done is called when the last update has been made.
    SteadyUpdates(MixedValues &values, std::function<void()> done);

    /// Makes the updates from one number up to, not with, the other.
    void begin(int from, int to);
    bool isRunning() const { return turn.isActive(); }

private:
    void takeTurn();

    MixedValues &values;
    const std::function<void()> done;
    QTimer turn;
    int next = 0;
    int end = 0;
};
