#include "installation/cco/peer.h"

#include "installation/cco/textsequence.h"

#include "coresupport/trace.h"

#include <stdexcept>

namespace installation
{

namespace
{

constexpr const char *sourceName = "installation/cco/peer";

std::string hostAndPort(const CentralObjectConfiguration::Peer &address)
{
    const bool isIPv6Literal = address.host.find(':') != std::string::npos;
    const std::string host = isIPv6Literal ? "[" + address.host + "]" : address.host;
    return host + ":" + std::to_string(address.port);
}

CCO::IF_CCO_c_ptr referenceTo(CORBA::ORB_ptr orb, const CentralObjectConfiguration::Peer &address)
{
    const std::string text = hostAndPort(address);
    if (address.host.empty() || address.port == 0 || address.host.find_first_of(" ,/#\t") != std::string::npos)
        throw std::invalid_argument("\"" + text + "\" is not the address of a central object service");
    try {
        const CORBA::Object_var object = orb->string_to_object(("corbaloc::1.2@" + text + "/CCO").c_str());
        return CCO::IF_CCO_c::_unchecked_narrow(object); // a checked one would call a peer that may be silent
    } catch (const CORBA::SystemException &e) {
        throw std::invalid_argument("\"" + text + "\" is not the address of a central object service: " + e._name());
    }
}

std::string subsystemOf(CCO::IF_CCO_c_ptr service)
{
    try {
        return CORBA::String_var(service->GetSubSystemName()).in();
    } catch (const CCO::IF_CCO_c::NameNotAvailable &) {
        return {};
    }
}

std::string workstationOf(CCO::IF_CCO_c_ptr service)
{
    try {
        return CORBA::String_var(service->GetWorkstationName()).in();
    } catch (const CCO::IF_CCO_c::NameNotAvailable &) {
        return {};
    }
}

Peer::State silent()
{
    Peer::State state;
    state.asked = true;
    return state;
}

} // namespace

Peer::Peer(CORBA::ORB_ptr orb, const CentralObjectConfiguration::Peer &address, std::chrono::milliseconds answerLimit)
    : displayName(hostAndPort(address)), reference(referenceTo(orb, address))
{
    omniORB::setClientCallTimeout(reference, static_cast<CORBA::ULong>(answerLimit.count()));
}

void Peer::ask()
{
    State next = silent();
    try {
        next.subsystem = subsystemOf(reference);
        next.workstation = workstationOf(reference);
        // Not what it has learned itself: two services would keep each other's dead workstations alive.
        next.workstations =
            fromSequence(CCO::seqString_var(reference->GetWorkStationsFromCCOConfig(next.subsystem.c_str())));
        next.answers = true;
    } catch (const CORBA::Exception &) {
        next = silent();
    }
    setState(std::move(next));
}

void Peer::setLost()
{
    setState(silent());
}

Peer::State Peer::state() const
{
    const std::scoped_lock lock(mutex);
    return current;
}

void Peer::setState(State next)
{
    const bool answers = next.answers;
    std::unique_lock lock(mutex);
    const bool isNews = !current.asked || answers != current.answers;
    current = std::move(next);
    lock.unlock();
    if (isNews)
        traceAt(TraceLevel::Normal, sourceName, [&] {
            return QStringLiteral("The central object service at %1 %2")
                .arg(QString::fromStdString(displayName), QLatin1String(answers ? "answers" : "does not answer"));
        });
}

} // namespace installation
