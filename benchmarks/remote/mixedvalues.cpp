#include "benchmarks/remote/mixedvalues.h"

#include "benchmarks/remote/addedvalue.h"
#include "benchmarks/remote/mixedcontent.h"

#include <QStringList>

using values::Tree;
using values::Value;
using values::ValueBase;

namespace
{
constexpr int updatesPerTurn = 10;

bool isOfType(const ValueBase *value, int type)
{
    switch (type) {
    case 0: return dynamic_cast<const Value<QString> *>(value);
    case 1: return dynamic_cast<const Value<int> *>(value);
    case 2: return dynamic_cast<const Value<double> *>(value);
    case 3: return dynamic_cast<const Value<bool> *>(value);
    case 4: return dynamic_cast<const Value<qint64> *>(value);
    default: return dynamic_cast<const Value<unsigned> *>(value);
    }
}
} // namespace

void MixedValues::add(const QString &top, bool optimized)
{
    for (int n = 0; n < mixed::valueCount; n += mixed::typeCount) {
        const auto name = [n](int type) { return QString::number(n + type); };
        addedValue<QString>(top, name(0), optimized);
        addedValue<int>(top, name(1), optimized);
        addedValue<double>(top, name(2), optimized);
        addedValue<bool>(top, name(3), optimized);
        addedValue<qint64>(top, name(4), optimized);
        addedValue<unsigned>(top, name(5), optimized);
    }
}

MixedValues::MixedValues(const QString &top)
{
    for (int n = 0; n < mixed::valueCount; ++n) {
        values.push_back(Tree::Instance().findValue(top + u'/' + QString::number(n)));
        require(isOfType(values.back(), n % mixed::typeCount), "each value is there");
    }
}

template <typename T> Value<T> &MixedValues::to(int update) const
{
    return static_cast<Value<T> &>(*values[static_cast<std::size_t>(update % mixed::valueCount)]);
}

void MixedValues::set(int update)
{
    switch (update % mixed::typeCount) {
    case 0: return to<QString>(update).SetValue(mixed::text(update), nullptr);
    case 1: return to<int>(update).SetValue(mixed::number(update), nullptr);
    case 2: return to<double>(update).SetValue(mixed::real(update), nullptr);
    case 3: return to<bool>(update).SetValue(mixed::flag(update), nullptr);
    case 4: return to<qint64>(update).SetValue(mixed::stamp(update), nullptr);
    default: return to<unsigned>(update).SetValue(mixed::count(update), nullptr);
    }
}

bool MixedValues::isAsSet(int update) const
{
    switch (update % mixed::typeCount) {
    case 0: return to<QString>(update).GetValue() == mixed::text(update);
    case 1: return to<int>(update).GetValue() == mixed::number(update);
    case 2: return to<double>(update).GetValue() == mixed::real(update);
    case 3: return to<bool>(update).GetValue() == mixed::flag(update);
    case 4: return to<qint64>(update).GetValue() == mixed::stamp(update);
    default: return to<unsigned>(update).GetValue() == mixed::count(update);
    }
}

QString MixedValues::contents() const
{
    QStringList contents;
    for (const ValueBase *value : values)
        contents.append(value->GetStringValue());
    return contents.join(u'|');
}

SteadyUpdates::SteadyUpdates(MixedValues &values, std::function<void()> done) : values(values), done(std::move(done))
{
    QObject::connect(&turn, &QTimer::timeout, &turn, [this] { takeTurn(); });
}

void SteadyUpdates::begin(int from, int to)
{
    next = from;
    end = to;
    turn.start(0);
}

void SteadyUpdates::takeTurn()
{
    for (int count = 0; count < updatesPerTurn && next < end; ++count)
        values.set(next++);
    if (next < end)
        return;
    turn.stop();
    done();
}
