#pragma once

#include "idl/korvemanager.hh"
#include "tests/installation/manager/callbackclient.h"
#include "tests/installation/manager/filesink.h"

#include <atomic>
#include <functional>
#include <map>
#include <memory>

/// An exporter that takes each file over TCP, and writes down what it is told.
class FakeExporter : public POA_TQ_KRV::IF_ExportCallback
{
public:
    char *exportID() override;
    char *deviceID() override { return CORBA::string_dup(device.c_str()); }
    char *recordID() override { return CORBA::string_dup(record.c_str()); }
    void exportStarted() override { notes.take("started"); }
    void exportFileList(const TQ_KRV::seqString &files) override;
    void exportFinished(CORBA::Boolean success, const char *text) override;
    char *startFileStream(const char *fileName, CORBA::ULongLong size) override;
    void fileStreamFinished(const char *fileName, CORBA::Boolean success) override;

    /// The end of the export, as soon as it comes; empty if it does not.
    std::string end();
    /// From now on calls fail, but for that of the end.
    void die() { isDead = true; }
    /// Done while it hears of the end of the export, the first time.
    std::function<void()> atEnd;
    /// Done while it hears of the end of a file.
    std::function<void()> atEndOfFile = [] {};

    std::string id = "EXPORTER@R1@a@b@c";
    std::string device = "EXPORTER";
    std::string record = "R1";
    /// What startFileStream answers instead of the address of a sink: by name.
    std::map<std::string, std::string> answers;
    std::map<std::string, int> offsets;
    std::map<std::string, std::unique_ptr<FileSink>> sinks; ///< by name
    Notes notes;

private:
    std::atomic<bool> isDead = false;
};
