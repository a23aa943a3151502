#include "installation/recorder/deviceclock.h"
#include "installation/recorder/recordcopier.h"
#include "installation/recorder/recorderservice.h"
#include "installation/recorder/recordererror.h"
#include "installation/recorder/storethread.h"
#include "tests/installation/recorder/storedrecords.h"

#include <QCoreApplication>

#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <iostream>

// A recorder in a process of its own: recorderprocess write STATE | copy STATE ID | serve STATE [FILE...]
// `write` changes its records without end and says before and after each step what it does; `copy` copies one; `serve`
// takes in the files, prints the files it refuses and the reference of its control object, and serves until its input
// ends.

using namespace installation::recorder;

namespace
{

/// One line, in one piece also when the process is killed.
void say(const QString &line)
{
    const QByteArray bytes = line.toUtf8() + '\n';
    if (::write(STDOUT_FILENO, bytes.constData(), bytes.size()) != bytes.size())
        ::_exit(2);
}

/// Makes, changes and removes records in turn.
class Writer
{
public:
    explicit Writer(const QString &statePath) : store(statePath)
    {
        for (const RecordSummary &record : store.ask([](RecordStore &records) { return records.records(); }))
            ids.append(record.id);
    }

    void step(int number)
    {
        if (ids.size() < 4 || number % 7 == 0)
            add(number);
        else if (ids.size() > 8)
            remove(ids.takeFirst());
        else
            change(ids.at(number % ids.size()), QStringLiteral("n%1").arg(number));
    }

private:
    void add(int number)
    {
        const QString name = QStringLiteral("n%1").arg(number);
        say(QStringLiteral("try add"));
        const QString id = store.ask([name](RecordStore &records) { return storeRecord(records, name, "abcd"); });
        ids.append(id);
        say(QStringLiteral("done add %1 %2").arg(id, name));
    }
    void change(const QString &id, const QString &name)
    {
        say(QStringLiteral("try change %1 %2").arg(id, name));
        store.ask([id, name](RecordStore &records) {
            records.change(id, [name](Record &record) {
                record.name = name;
                record.bookmarks = {{1, name}};
            });
        });
        say(QStringLiteral("done change %1 %2").arg(id, name));
    }
    void remove(const QString &id)
    {
        say(QStringLiteral("try remove %1").arg(id));
        store.ask([id](RecordStore &records) { return records.remove(id); });
        say(QStringLiteral("done remove %1").arg(id));
    }

    StoreThread store;
    QStringList ids;
};

void writeOn(const QString &statePath)
{
    Writer writer(statePath);
    for (int number = 1;; ++number)
        writer.step(number);
}

void copyWhole(const QString &statePath, const QString &id)
{
    const auto store = std::make_shared<StoreThread>(statePath);
    const DeviceClock clock(statePath + QLatin1String("/clock"));
    RecordCopier copier(store, clock, {}, {std::chrono::hours(1)});
    const Record record = store->ask([id](RecordStore &records) { return records.record(id); });
    copier.copy(id, {{0, record.sizeBytes}}, QStringLiteral("copy"));
}

/// A POA under @p orb whose user chooses the keys, serving.
PortableServer::POA_ptr servingPoa(CORBA::ORB_ptr orb)
{
    const CORBA::Object_var object = orb->resolve_initial_references("omniINSPOA");
    const PortableServer::POA_var poa = PortableServer::POA::_narrow(object);
    const PortableServer::POAManager_var manager = poa->the_POAManager();
    manager->activate();
    return PortableServer::POA::_duplicate(poa);
}

void serve(const QStringList &arguments)
{
    const char *options[][2] = {{"endPoint", "giop:tcp:127.0.0.1:"}, {nullptr, nullptr}};
    int none = 0;
    const CORBA::ORB_var orb = CORBA::ORB_init(none, nullptr, "omniORB4", options);
    {
        const PortableServer::POA_var poa = servingPoa(orb);
        RecorderService service({arguments.at(2)}, poa);
        for (const QString &file : arguments.mid(3))
            service.importFile(file);
        for (const RefusedFile &file : service.refusedFiles())
            say(QStringLiteral("refused %1").arg(file.name));
        const CORBA::Object_var control = service.reference();
        const CORBA::String_var reference = orb->object_to_string(control);
        say(QStringLiteral("ready %1").arg(QLatin1String(reference)));
        std::cin.get(); // the end of the input
    }
    orb->destroy();
}

} // namespace

int main(int argc, char **argv)
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    try {
        if (arguments.size() >= 3 && arguments.at(1) == QLatin1String("write"))
            writeOn(arguments.at(2));
        if (arguments.size() >= 4 && arguments.at(1) == QLatin1String("copy"))
            copyWhole(arguments.at(2), arguments.at(3));
        if (arguments.size() >= 3 && arguments.at(1) == QLatin1String("serve"))
            serve(arguments);
    } catch (const RecorderError &error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
    return 0;
}
