#include "benchmarks/remote/baresource.h"
#include "benchmarks/remote/briefcommands.h"
#include "benchmarks/remote/mixedcontent.h"
#include "benchmarks/remote/recordmanager.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/remote/snapshotsocket.h"
#include "benchmarks/remote/textvalues.h"
#include "benchmarks/support/require.h"

#include "installation/cco/centralobjectservice.h"
#include "orbconnection/vtserver.h"
#include "tests/connectionmanagement/keyedservant.h"
#include "tests/support/commandinput.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <iostream>

using namespace CorbaCommon;
using namespace values;

namespace
{

template <typename T> Value<T> *added(const QString &parent, const QString &name, const T &content = {})
{
    auto value = std::make_unique<Value<T>>();
    Value<T> *const borrowed = value.get();
    value->SetName(name, nullptr);
    value->SetValue(content, nullptr);
    value->setOptimized(false); // each change is to arrive
    require(Tree::Instance().addValue(parent, std::move(value)), "a value can be added");
    return borrowed;
}

/// The values of `mirror.updates`.
class MixedValues
{
public:
    MixedValues()
    {
        for (int n = 0; n < mixed::valueCount; n += mixed::typeCount) {
            const auto name = [n](int type) { return QString::number(n + type); };
            texts.push_back(added<QString>(top, name(0)));
            numbers.push_back(added<int>(top, name(1)));
            reals.push_back(added<double>(top, name(2)));
            flags.push_back(added<bool>(top, name(3)));
            stamps.push_back(added<qint64>(top, name(4)));
            counts.push_back(added<unsigned>(top, name(5)));
        }
    }

    void update(int n)
    {
        const auto place = static_cast<std::size_t>(n % mixed::valueCount / mixed::typeCount);
        switch (n % mixed::typeCount) {
        case 0: return texts[place]->SetValue(mixed::text(n), nullptr);
        case 1: return numbers[place]->SetValue(mixed::number(n), nullptr);
        case 2: return reals[place]->SetValue(mixed::real(n), nullptr);
        case 3: return flags[place]->SetValue(mixed::flag(n), nullptr);
        case 4: return stamps[place]->SetValue(mixed::stamp(n), nullptr);
        case 5: return counts[place]->SetValue(mixed::count(n), nullptr);
        }
    }

private:
    const QString top = QStringLiteral("/Updates");
    std::vector<Value<QString> *> texts;
    std::vector<Value<int> *> numbers;
    std::vector<Value<double> *> reals;
    std::vector<Value<bool> *> flags;
    std::vector<Value<qint64> *> stamps;
    std::vector<Value<unsigned> *> counts;
};

void addTexts()
{
    for (int n = 0; n < texts::count; ++n)
        added<QString>(QLatin1String(texts::top) + texts::nodePath(n), texts::name(n),
                       texts::content(n));
}

/// What a display station looks for before it calls the manager.
void announceManager(RecordManager &manager, const OrbHandler &orb)
{
    const PortableServer::ObjectId_var id = orb.rootPoa()->activate_object(&manager);
    const TQ_KRV::IF_KRV_c_KRV_var reference = manager._this();
    orb.GetCCO()->Register("KorveManager/IF_KRV_c_KRV", reference, 0);
    CCO::seqString here;
    here.length(1);
    here[0] = "here";
    orb.GetCCO()->RegisterValues("KorveManager/VTConnect", here, 0);
    added<QString>(QStringLiteral("/KORVE/Device/many"), QStringLiteral("Name"));
    added<QString>(QStringLiteral("/KORVE/Command"), QStringLiteral("Name"));
}

installation::CentralObjectConfiguration configuration(const std::string &address)
{
    installation::CentralObjectConfiguration configuration;
    configuration.subsystemName = "North";
    configuration.workstationName = address;
    configuration.subsystems = {{"North", {address}}};
    return configuration;
}

std::string referenceOf(BareSource &source, const OrbHandler &orb)
{
    const PortableServer::ObjectId_var id = orb.rootPoa()->activate_object(&source);
    const BARE::Source_var object = source._this();
    return orb.orb()->object_to_string(object);
}

} // namespace

/// ADDRESS: central object service, manager and value tree at ADDRESS, and the floors beside them. Prints the reference
/// of the bare source and the port of the snapshot socket. Input: `update FROM TO` makes the updates from one number up
/// to, not with, the other; `stamp` and `barestamp` send the time by one value, or by the bare source.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.address = settings.centralService = QCoreApplication::arguments().value(1);
    settings.ports = {OrbSettings::centralServicePort, VtServer::port};
    OrbHandler::configure(settings);
    OrbHandler &orb = OrbHandler::Instance();
    require(orb.isRunning(), "the ORB runs");
    const installation::CentralObjectService names(configuration(settings.address.toStdString()), orb.keyedPoa());
    require(orb.ConnectToCCO(20, 50), "the central object service answers");
    RecordManager manager(orb.keyedPoa());
    manager.workstation = settings.address.toStdString();
    announceManager(manager, orb);
    const KeyedServant<BriefAdmin> admin("admin");
    const KeyedServant<BriefReplay> replay("replay many");

    const VtServer server;
    MixedValues mixedValues;
    Value<qint64> *const stamp = added<qint64>(QStringLiteral("/Latency"), QStringLiteral("Stamp"));
    addTexts();
    BareSource source;
    const SnapshotSocket socket(settings.address);
    const CommandInput input([&](const QStringList &words) {
        for (int n = words.value(1).toInt(); words[0] == QLatin1String("update") && n < words.value(2).toInt(); ++n)
            mixedValues.update(n);
        if (words[0] == QLatin1String("stamp"))
            stamp->SetValue(nowNs(), nullptr);
        if (words[0] == QLatin1String("barestamp"))
            source.put(nowNs());
    });
    std::cout << "ready benchmark " << referenceOf(source, orb) << ' ' << socket.serverPort() << std::endl;
    return QCoreApplication::exec();
}
