#include "orbconnection/orbhandler.h"
#include "tests/connectionmanagement/fakecommands.h"
#include "tests/connectionmanagement/fakemanager.h"
#include "tests/connectionmanagement/keyedservant.h"

#include <QCoreApplication>

#include <iostream>

using namespace CorbaCommon;

/// ADDRESS: a recorder manager at port 8004 of ADDRESS, the same object in each run, which administers records and
/// replays on device "D1"; prints its reference.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.address = QCoreApplication::arguments().value(1);
    settings.ports = {8004};
    OrbHandler::configure(settings);
    const OrbHandler &orb = OrbHandler::Instance();
    if (!orb.isRunning())
        return 1;
    const PortableServer::Servant_var<FakeManager> manager = new FakeManager(orb.keyedPoa());
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId("KorveManager");
    orb.keyedPoa()->activate_object_with_id(id, manager);
    const KeyedServant<FakeAdmin> admin{"admin"};
    const KeyedServant<FakeReplay> replay{"replay D1"};
    const CORBA::Object_var object = orb.keyedPoa()->id_to_reference(id);
    const CORBA::String_var reference = orb.orb()->object_to_string(object);
    std::cout << "ready manager " << reference.in() << std::endl;
    return QCoreApplication::exec();
}
