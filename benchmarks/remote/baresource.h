#pragma once

#include "benchmarks/remote/bare.hh"

#include <QtGlobal>

#include <condition_variable>
#include <mutex>

/// Answers pending calls with what the main thread puts: the least that a mirror by calls can do.
class BareSource : public POA_BARE::Source
{
public:
    void put(qint64 content);
    BARE::Delivery *pull(CORBA::ULongLong number) override;

private:
    std::mutex mutex; // guards all below
    std::condition_variable changed;
    quint64 last = 0;
    qint64 latest = 0;
};
