#include "installation/calls/servedobjects.h"

#include "coresupport/trace.h"

#include <QStringList>

#include <algorithm>
#include <condition_variable>
#include <map>
#include <mutex>

namespace installation
{

namespace
{
constexpr const char *sourceName = "installation/calls/servedobjects";
} // namespace

class ServedObjects::Ledger
{
public:
    struct Servant {
        std::string key;
        std::vector<const char *> operations{}; ///< in progress
    };

    std::mutex mutex; // guards the rest; not held while the POA is called, which may destroy servants
    std::condition_variable changed;
    std::map<const Entry *, Servant> servants;
    std::vector<std::weak_ptr<Activation>> activations;
    bool refusing = false;
};

ServedObjects::Entry::Entry(std::shared_ptr<Ledger> ledger, const std::string &key) : ledger(std::move(ledger))
{
    const std::scoped_lock lock(this->ledger->mutex);
    this->ledger->servants.emplace(this, Ledger::Servant{key});
}

ServedObjects::Entry::~Entry()
{
    const std::scoped_lock lock(ledger->mutex);
    ledger->servants.erase(this);
    ledger->changed.notify_all();
}

void ServedObjects::Entry::begin(const char *operation)
{
    const std::scoped_lock lock(ledger->mutex);
    // The ORB itself would go on to serve an object that is deactivated while one call overlaps the next.
    if (ledger->refusing)
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    ledger->servants.at(this).operations.push_back(operation);
}

void ServedObjects::Entry::end(const char *operation)
{
    const std::scoped_lock lock(ledger->mutex);
    std::vector<const char *> &operations = ledger->servants.at(this).operations;
    operations.erase(std::ranges::find(operations, operation));
}

ServedObjects::ServedObjects(PortableServer::POA_ptr poa)
    : poa(PortableServer::POA::_duplicate(poa)), ledger(std::make_shared<Ledger>())
{
}

std::shared_ptr<Activation> ServedObjects::activate(const std::string &key, PortableServer::Servant servant) const
{
    const auto activation = std::make_shared<Activation>(poa, key, servant);
    const std::scoped_lock lock(ledger->mutex);
    if (ledger->refusing)
        throw CORBA::OBJECT_NOT_EXIST(0, CORBA::COMPLETED_NO);
    std::erase_if(ledger->activations, [](const auto &known) { return known.expired(); });
    ledger->activations.push_back(activation);
    return activation;
}

void ServedObjects::refuseCalls() const
{
    std::vector<std::weak_ptr<Activation>> ending;
    {
        const std::scoped_lock lock(ledger->mutex);
        ledger->refusing = true;
        ending.swap(ledger->activations);
    }
    for (const auto &known : ending)
        if (const auto activation = known.lock())
            activation->end();
}

bool ServedObjects::waitForCalls(std::chrono::milliseconds patience) const
{
    {
        std::unique_lock lock(ledger->mutex);
        if (ledger->changed.wait_for(lock, patience, [this] { return ledger->servants.empty(); }))
            return true;
    }
    traceAt(TraceLevel::Normal, sourceName, [this] {
        QStringList calls;
        for (const std::string &call : callsInProgress())
            calls << QString::fromStdString(call);
        return QStringLiteral("The service ends although calls are in progress: %1").arg(calls.join(QLatin1String(", ")));
    });
    return false;
}

/// "OPERATION of KEY" each; the key alone where a caller in this process uses the servant, or only its end is missing.
std::vector<std::string> ServedObjects::callsInProgress() const
{
    const std::scoped_lock lock(ledger->mutex);
    std::vector<std::string> calls;
    for (const auto &[entry, servant] : ledger->servants) {
        for (const char *operation : servant.operations)
            calls.push_back(std::string(operation) + " of " + servant.key);
        if (servant.operations.empty())
            calls.push_back(servant.key);
    }
    return calls;
}

} // namespace installation
