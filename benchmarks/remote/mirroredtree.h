#pragma once

#include "orbconnection/vtconnectionobserver.h"

#include <memory>

/// A new client of the other process's tree: mirrors @p path below "/Mirror" and returns when the snapshot is there.
std::unique_ptr<VtConnectionObserver> mirrored(const QString &path);

/// Where the mirrored @p path stands here.
QString mirrorOf(const QString &path);
