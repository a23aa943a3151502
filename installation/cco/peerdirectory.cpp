#include "installation/cco/peerdirectory.h"

#include "installation/cco/textsequence.h"

#include <set>

namespace installation
{

namespace
{

bool mayServe(const Peer::State &state, const std::string &subsystem)
{
    return !state.asked || (state.answers && sameName(state.subsystem, subsystem));
}

} // namespace

PeerDirectory::PeerDirectory(CORBA::ORB_ptr orb, const CentralObjectConfiguration &configuration)
{
    std::set<std::string> names;
    for (const CentralObjectConfiguration::Peer &address : configuration.peers) {
        auto peer = std::make_unique<Peer>(orb, address, configuration.timing.answerLimit);
        if (names.insert(peer->name()).second)
            peers.push_back(std::move(peer));
    }
}

std::vector<Prober::Target> PeerDirectory::targets() const
{
    std::vector<Prober::Target> all;
    for (const auto &peer : peers)
        all.push_back({"peer " + peer->name(), [peer = peer.get()] { peer->ask(); }});
    return all;
}

std::vector<Peer::State> PeerDirectory::answering() const
{
    std::vector<Peer::State> states;
    for (const auto &peer : peers)
        if (Peer::State state = peer->state(); state.answers)
            states.push_back(std::move(state));
    return states;
}

template <typename Ask> void PeerDirectory::askInTurn(const std::string &subsystem, Ask ask) const
{
    for (const auto &peer : peers) {
        if (!mayServe(peer->state(), subsystem))
            continue;
        try {
            if (ask(peer->service()))
                return;
        } catch (const CORBA::SystemException &) {
            peer->setLost(); // the next caller does not wait for it again
        }
    }
}

CORBA::Object_ptr PeerDirectory::resolve(const NamePath &path) const
{
    CORBA::Object_var found;
    askInTurn(path.subsystem, [&](CCO::IF_CCO_c_ptr service) {
        found = service->Resolve(fullPath(path).c_str(), CCO::rtThisServiceOnly);
        return !CORBA::is_nil(found);
    });
    return found._retn();
}

std::vector<std::string> PeerDirectory::resolveValues(const NamePath &path) const
{
    std::vector<std::string> found;
    askInTurn(path.subsystem, [&](CCO::IF_CCO_c_ptr service) {
        found =
            fromSequence(CCO::seqString_var(service->ResolveValues(fullPath(path).c_str(), CCO::rtThisServiceOnly)));
        return !found.empty();
    });
    return found;
}

} // namespace installation
