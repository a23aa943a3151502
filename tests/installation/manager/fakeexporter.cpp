#include "tests/installation/manager/fakeexporter.h"

#include <utility>

char *FakeExporter::exportID()
{
    if (isDead)
        throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO);
    return CORBA::string_dup(id.c_str());
}

void FakeExporter::exportFileList(const TQ_KRV::seqString &files)
{
    std::string text = "files";
    for (CORBA::ULong position = 0; position < files.length(); ++position)
        text += std::string(" ") + static_cast<const char *>(files[position]);
    notes.take(text);
}

void FakeExporter::exportFinished(CORBA::Boolean success, const char *text)
{
    if (const auto act = std::exchange(atEnd, {}))
        act();
    notes.take(std::string("end ") + (success ? "well" : "badly: ") + text);
}

char *FakeExporter::startFileStream(const char *fileName, CORBA::ULongLong size)
{
    const auto answer = answers.find(fileName);
    std::string address = answer == answers.end() ? std::string() : answer->second;
    if (answer == answers.end()) {
        auto &sink = sinks[fileName];
        sink = std::make_unique<FileSink>();
        address = "127.0.0.1:" + std::to_string(sink->port());
        if (offsets.contains(fileName))
            address += "/" + std::to_string(offsets[fileName]);
    }
    notes.take(std::string("stream ") + fileName + " " + std::to_string(size));
    return CORBA::string_dup(address.c_str());
}

void FakeExporter::fileStreamFinished(const char *fileName, CORBA::Boolean success)
{
    if (isDead)
        throw CORBA::TRANSIENT(0, CORBA::COMPLETED_NO);
    atEndOfFile();
    notes.take(std::string(success ? "good " : "bad ") + fileName);
}

std::string FakeExporter::end()
{
    for (std::size_t heard = 1; notes.have(heard); ++heard)
        if (const std::string text = notes.all()[heard - 1]; text.starts_with("end "))
            return text;
    return {};
}
