#include "idl/cco.hh"
#include "orbconnection/orbhandler.h"

#include <QCoreApplication>
#include <QSemaphore>

#include <iostream>

using namespace CorbaCommon;

namespace
{
/// Answers slowly, or with very much.
class Trouble : public POA_CCO::IF_CCO_c_NamingCorba
{
public:
    /// Comes back after that many milliseconds.
    CORBA::Object_ptr Resolve(const char *milliseconds, CCO::eResolveType) override
    {
        QSemaphore().tryAcquire(1, QByteArray(milliseconds).toInt());
        return CORBA::Object::_nil();
    }
    /// One text of that many bytes.
    CCO::seqString *ResolveValues(const char *bytes, CCO::eResolveType) override
    {
        CCO::seqString_var values = new CCO::seqString;
        values->length(1);
        values[0u] = QByteArray(QByteArray(bytes).toInt(), 'x').constData();
        return values._retn();
    }
    /// Refuses texts whose size is not @p bytes.
    void RegisterValues(const char *bytes, const CCO::seqString &values, CORBA::ULong) override
    {
        if (values.length() != 1 || qstrlen(values[0]) != QByteArray(bytes).toUInt())
            throw CCO::IF_CCO_c_Naming::RedundancyTypeNotSupported();
    }
    void Register(const char *, CORBA::Object_ptr, CORBA::ULong) override {}
    CORBA::Object_ptr Unregister(const char *, CORBA::ULong) override { return CORBA::Object::_nil(); }
    void UnregisterValues(const char *, CORBA::ULong) override {}
};
} // namespace

/// ADDRESS PORT [PUBLISHED ADDRESS [KEY]]: serves the object "Trouble" there; prints its reference too.
int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    OrbSettings settings = OrbSettings::fromEnvironment();
    settings.address = QString::fromLocal8Bit(argc > 1 ? argv[1] : "127.0.0.1");
    settings.ports = {static_cast<unsigned short>(QByteArray(argc > 2 ? argv[2] : "0").toUShort())};
    settings.publishedAddress = QString::fromLocal8Bit(argc > 3 ? argv[3] : "");
    OrbHandler::configure(settings);
    const OrbHandler &orb = OrbHandler::Instance();
    if (!orb.isRunning())
        return 1;
    const PortableServer::ServantBase_var servant = new Trouble;
    const PortableServer::ObjectId_var id = PortableServer::string_to_ObjectId(argc > 4 ? argv[4] : "Trouble");
    orb.keyedPoa()->activate_object_with_id(id, servant.in());
    const CORBA::Object_var object = orb.keyedPoa()->id_to_reference(id);
    const CORBA::String_var reference = orb.orb()->object_to_string(object);
    std::cout << "ready trouble " << reference.in() << std::endl;
    return QCoreApplication::exec();
}
