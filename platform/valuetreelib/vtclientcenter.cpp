#include "valuetreelib/vtclientcenter.h"

#include "valuetreelib/treepath.h"

#include <algorithm>

VtClientCenter &VtClientCenter::Instance()
{
    static VtClientCenter center;
    return center;
}

void VtClientCenter::addClient(IVtClient *client)
{
    if (std::find(clients.begin(), clients.end(), client) == clients.end())
        clients.push_back(client);
}

void VtClientCenter::removeClient(IVtClient *client)
{
    std::erase(clients, client);
}

IVtClient *VtClientCenter::GetVtClientForPath(const QString &path) const
{
    const QString wanted = values::normalizedPath(path);
    IVtClient *closest = nullptr;
    int closestSize = 0;
    for (IVtClient *const client : clients) {
        const QString served = values::normalizedPath(client->clientPath());
        if ((served == wanted || values::isPathBelow(wanted, served)) && served.size() > closestSize) {
            closest = client;
            closestSize = served.size();
        }
    }
    return closest;
}
