#pragma once

#include "valuetreelib/ivtclient.h"

#include <vector>

/// Knows which connection serves which path of the process's tree.
///
/// Thread: main; never blocks.
class VALUETREELIB_EXPORT VtClientCenter
{
public:
    static VtClientCenter &Instance();

    /// Borrows @p client until it is removed.
    void addClient(IVtClient *client);
    void removeClient(IVtClient *client);

    /// The client whose path equals @p path or encloses it, the closest of several; null when there is none.
    IVtClient *GetVtClientForPath(const QString &path) const;

private:
    VtClientCenter() = default;

    std::vector<IVtClient *> clients;
};
