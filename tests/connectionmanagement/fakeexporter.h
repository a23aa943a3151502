#pragma once

#include "idl/korvemanager.hh"

#include <string>

/// An exporter that has an id and takes nothing.
class FakeExporter : public POA_TQ_KRV::IF_ExportCallback
{
public:
    std::string id;

    char *exportID() override { return CORBA::string_dup(id.c_str()); }
    char *deviceID() override { return CORBA::string_dup(""); }
    char *recordID() override { return CORBA::string_dup(""); }
    void exportStarted() override {}
    void exportFileList(const TQ_KRV::seqString &) override {}
    void exportFinished(CORBA::Boolean, const char *) override {}
    char *startFileStream(const char *, CORBA::ULongLong) override { return CORBA::string_dup(""); }
    void fileStreamFinished(const char *, CORBA::Boolean) override {}
};
