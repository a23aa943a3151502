#pragma once

#include "installation/calls/activation.h"
#include "tests/installation/manager/fakerecorder.h"

#include <QStringList>

#include <atomic>
#include <mutex>

/// A recorder in this process that writes down which managers look at it.
class VisitedRecorder
{
public:
    VisitedRecorder();

    /// At the central object service of @p host.
    void registerAs(const char *name, const QString &host) const;
    /// The hosts of those who want to be told of changes, each once.
    QStringList visitors() const;
    /// How often anybody has asked how it is.
    int looks() const;

private:
    class Servant;

    Servant *const servant; ///< the activation's
    const installation::Activation activation;
};
