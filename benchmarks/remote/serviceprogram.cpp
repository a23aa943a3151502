#include "benchmarks/remote/addedvalue.h"
#include "benchmarks/remote/baresource.h"
#include "benchmarks/remote/briefcommands.h"
#include "benchmarks/remote/mixedvalues.h"
#include "benchmarks/remote/recordmanager.h"
#include "benchmarks/remote/service.h"
#include "benchmarks/remote/snapshotsocket.h"
#include "benchmarks/remote/textvalues.h"

#include "installation/cco/centralobjectservice.h"
#include "orbconnection/vtserver.h"
#include "tests/connectionmanagement/keyedservant.h"
#include "tests/support/commandinput.h"

#include <iostream>

using namespace CorbaCommon;
using namespace values;

namespace
{

/// The server's side of `mirror.conflict`: tells a client that both have made all their updates. Whoever hears it has
/// heard before what became of them.
class Conflict : public IObserver
{
public:
    Conflict() { clientsEnd->AddObserver(this); }
    ~Conflict() override { clientsEnd->DeleteObserver(this); }

    void begin(int from, int to)
    {
        end = to;
        updates.begin(from, to);
    }
    QString contents() const { return mixedValues.contents(); }
    void Update(Observable *, TChangeCode) override { tellEnd(); }

private:
    void tellEnd()
    {
        if (!updates.isRunning() && clientsEnd->GetValue() == end)
            bothEnd->SetValue(end, nullptr);
    }

    MixedValues mixedValues{QStringLiteral("/Conflict/Values")};
    Value<int> *const clientsEnd = addedValue<int>(QStringLiteral("/Conflict"), QStringLiteral("ClientsEnd"), false);
    Value<int> *const bothEnd = addedValue<int>(QStringLiteral("/Conflict"), QStringLiteral("BothEnd"), false);
    SteadyUpdates updates{mixedValues, [this] { tellEnd(); }};
    int end = 0;
};

void addTexts()
{
    for (int n = 0; n < texts::count; ++n)
        addedValue<QString>(QLatin1String(texts::top) + texts::nodePath(n), texts::name(n), true, texts::content(n));
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
    addedValue<QString>(QStringLiteral("/KORVE/Device/many"), QStringLiteral("Name"), true);
    addedValue<QString>(QStringLiteral("/KORVE/Command"), QStringLiteral("Name"), true);
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
/// to, not with, the other; `conflict FROM TO` begins to make such updates of the values that the client updates, too, and
/// `contents` prints these; `stamp` and `barestamp` send the time by one value, or by the bare source.
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
    MixedValues::add(QStringLiteral("/Updates"), false);
    MixedValues mixedValues(QStringLiteral("/Updates"));
    MixedValues::add(QStringLiteral("/Conflict/Values"), true);
    Conflict conflict;
    Value<qint64> *const stamp = addedValue<qint64>(QStringLiteral("/Latency"), QStringLiteral("Stamp"), false);
    addTexts();
    BareSource source;
    const SnapshotSocket socket(settings.address);
    const CommandInput input([&](const QStringList &words) {
        for (int n = words.value(1).toInt(); words[0] == QLatin1String("update") && n < words.value(2).toInt(); ++n)
            mixedValues.set(n);
        if (words[0] == QLatin1String("conflict"))
            conflict.begin(words.value(1).toInt(), words.value(2).toInt());
        if (words[0] == QLatin1String("contents"))
            std::cout << conflict.contents().toStdString() << std::endl;
        if (words[0] == QLatin1String("stamp"))
            stamp->SetValue(nowNs(), nullptr);
        if (words[0] == QLatin1String("barestamp"))
            source.put(nowNs());
    });
    std::cout << "ready benchmark " << referenceOf(source, orb) << ' ' << socket.serverPort() << std::endl;
    return QCoreApplication::exec();
}
