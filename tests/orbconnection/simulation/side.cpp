#include "tests/orbconnection/simulation/side.h"

#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorvalue.h"
#include "valuetreelib/node.h"
#include "valuetreelib/valuefactory.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <array>
#include <stdexcept>

using namespace values;

namespace simulation
{
namespace
{
// Some meet in one node, some stand beside nodes of their name; those with "one" are told change by change.
const std::array<QString, 12> paths{QStringLiteral("/a"),     QStringLiteral("/b"),      QStringLiteral("/c"),
                                    QStringLiteral("/one"),   QStringLiteral("/d/x"),    QStringLiteral("/d/y"),
                                    QStringLiteral("/d/one"), QStringLiteral("/d/e/z"),  QStringLiteral("/d/e"),
                                    QStringLiteral("/f/g/h"), QStringLiteral("/f/g/i"),  QStringLiteral("/j")};
constexpr std::array types{ValueTypeText,  ValueTypeBool,       ValueTypeInt,          ValueTypeUnsigned,
                           ValueTypeInt64, ValueTypeDouble,     ValueTypeNumericInt,   ValueTypeNumericInt64,
                           ValueTypeNumericDouble, ValueTypeSelection};
constexpr std::array states{0, 2, 3, 5, 15};

// What observers look for; none of their answers is another's question.
const QString tooMuch = QStringLiteral("51");
const QString clamped = QStringLiteral("50");
const QString stateWanted = QStringLiteral("7");
const QString nextWanted = QStringLiteral("17");
const QString next = QStringLiteral("18");
const QString trouble = QStringLiteral("33");
constexpr auto answeredState = static_cast<TValueState>(9);

QString content(Random &random)
{
    static const std::array special{tooMuch, clamped, stateWanted, nextWanted, trouble};
    return random.happens(30) ? random.oneOf(special) : QString::number(random.below(60));
}

std::vector<SelItemDesc> items(Random &random)
{
    std::vector<SelItemDesc> list;
    for (long key = 0; key < 4; ++key)
        if (random.happens(60))
            list.emplace_back(QString::number(key), double(random.below(3)), key);
    return list;
}

void changeContent(ValueBase &value, Random &random)
{
    if (value.GetType() == ValueTypeBool)
        return value.SetStringValue(random.happens(50) ? QStringLiteral("true") : QStringLiteral("false"), nullptr);
    value.SetStringValue(content(random), nullptr);
}

template <typename T> bool changeLimits(ValueBase &value, Random &random)
{
    auto *const number = dynamic_cast<ValueNumeric<T> *>(&value);
    if (number)
        number->SetMinMax(T(-random.below(9)), T(random.below(90)), T(random.below(3)), nullptr);
    return number;
}

bool isByMirror(const IObserver *originator)
{
    return dynamic_cast<const mirror::MirrorClient *>(originator);
}

void changeDescription(ValueBase &value, Random &random)
{
    if (auto *const selection = dynamic_cast<ValueSelection *>(&value))
        selection->setItems(items(random), nullptr);
    else if (!changeLimits<int>(value, random) && !changeLimits<qint64>(value, random))
        changeLimits<double>(value, random);
}
} // namespace

void changeAtRandom(ValueBase &value, Random &random)
{
    const int what = random.below(100);
    if (what < 55)
        changeContent(value, random);
    else if (what < 70)
        value.SetState(static_cast<TValueState>(random.oneOf(states)), nullptr);
    else if (what < 85)
        changeDescription(value, random);
    else if (what < 90)
        value.HasChanged(ChangeCodeValue, nullptr);
    else {
        value.StartTransaction(nullptr);
        changeContent(value, random);
        changeDescription(value, random);
        value.EndTransaction(ChangeCodeValue, nullptr);
    }
}

Side::Side(Tree &tree, const QString &top, bool isServer) : tree(tree), top(top), isServer(isServer)
{
    tree.addListener(QStringLiteral("/"), this);
}

Side::~Side()
{
    tree.removeNode(QStringLiteral("/")); // whose items know this as their observer
    tree.removeListener(this);
}

void Side::act(Random &random)
{
    const QString path = top + random.oneOf(paths);
    try {
        ValueBase *const value = tree.findValue(path);
        if (random.happens(2))
            tree.removeNode(path.left(path.lastIndexOf(u'/')) == top ? path : path.left(path.lastIndexOf(u'/')));
        else if (random.happens(2))
            tree.addNode(path);
        else if (!value)
            create(path, random);
        else if (random.happens(6))
            tree.removeValue(path);
        else
            changeAtRandom(*value, random);
    } catch (const std::runtime_error &) {
        // An observer's trouble is its own.
    }
}

void Side::create(const QString &path, Random &random)
{
    if (random.happens(50))
        return;
    std::unique_ptr<ValueBase> value = ValueFactory::Instance().create(random.oneOf(types));
    value->setOptimized(!path.endsWith(QStringLiteral("one")));
    tree.addValueAt(path, std::move(value));
    ValueBase *const added = tree.findValue(path);
    if (added && random.happens(50))
        changeAtRandom(*added, random); // its seed
}

void Side::Update(Observable *subject, TChangeCode code)
{
    auto *const value = dynamic_cast<ValueBase *>(subject);
    if (!value || code != ChangeCodeValue || value->GetType() == ValueTypeBool)
        return;
    if (value->GetStringValue() == trouble)
        throw std::runtime_error("an observer's trouble");
    isServer ? answerAsServer(*value) : answerAsClient(*value);
}

void Side::answerAsServer(ValueBase &value)
{
    if (value.GetStringValue() == tooMuch)
        value.SetStringValue(clamped, nullptr);
    else if (value.GetStringValue() == stateWanted)
        value.SetState(answeredState, nullptr);
}

void Side::answerAsClient(ValueBase &value)
{
    if (value.GetStringValue() == stateWanted)
        value.SetState(ValueStateSeeded, nullptr);
    else if (value.GetStringValue() == nextWanted)
        value.SetStringValue(next, nullptr);
}

void Side::itemAdded(TreeItem &item, IObserver *originator)
{
    item.AddObserver(this);
    const QString path = item.GetPathName();
    if (item.isNode() || isByMirror(originator))
        return;
    auto &value = static_cast<ValueBase &>(item);
    value.setOptimized(!path.endsWith(QStringLiteral("one")));
    if (dynamic_cast<const mirror::ClientOriginator *>(originator))
        return; // is to be passed on
    own.insert(path);
    fresh.insert(path);
}

void Side::itemRemoved(TreeItem &item, IObserver *)
{
    if (!item.isNode())
        own.erase(item.GetPathName());
}

void Side::valueChanged(const ValueChange &change)
{
    const QString path = change.value.GetPathName();
    if (isByMirror(change.originator) || change.forced || !fresh.contains(path))
        own.erase(path);
}

bool Side::isOwnNode(const QString &path) const
{
    const QString prefix = path + u'/';
    const auto below = own.lower_bound(prefix);
    return below != own.end() && below->startsWith(prefix);
}
} // namespace simulation
