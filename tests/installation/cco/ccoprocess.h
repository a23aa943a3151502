#pragma once

#include "idl/cco.hh"

#include <QProcess>

#include <chrono>
#include <cstdint>
#include <string>
#include <vector>

/// A central object service in a process of its own, on a free port of 127.0.0.1. It ends with this object.
class CcoProcess
{
public:
    /// Waits until it answers.
    CcoProcess(const std::string &subsystem, const std::string &workstation,
               const std::vector<std::uint16_t> &peerPorts = {});
    ~CcoProcess();

    std::uint16_t port() const { return servedPort; }
    /// A full reference; the caller releases it.
    CCO::IF_CCO_c_ptr service() const;
    /// One whose calls end after @p limit.
    CCO::IF_CCO_c_ptr service(std::chrono::milliseconds limit) const;
    CCO::IF_CCO_c_Update_ptr update() const;
    /// The one that answers at that port of 127.0.0.1; the caller releases it.
    static CCO::IF_CCO_c_ptr serviceAt(std::uint16_t port);
    /// It may not open more than @p most descriptors from now on.
    void limitDescriptors(unsigned most);
    std::size_t descriptors() const; ///< that it has open
    void kill();
    void suspend();
    void resume();

private:
    QProcess process;
    std::uint16_t servedPort = 0;
    std::string fullReference;
};
