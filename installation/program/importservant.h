#pragma once

#include "installation/program/import.hh"
#include "installation/recorder/recordimport.h"

#include <condition_variable>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <thread>

namespace installation
{

/// Imports files into a recorder, each on a thread of its own, for callers that ask how far they are.
///
/// An import whose caller has gone is finished all the same. At most four run at a time.
/// Thread: any.  Errors: `exImport`.
class ImportServant : public POA_KORVE_INSTALLATION::IF_Import
{
public:
    static constexpr std::size_t mostAtATime = 4;

    /// Imports one file and returns the id of the new record; see recorder::importFile().
    using Import = std::function<QString(const QString &path, const recorder::ImportControl &)>;

    explicit ImportServant(Import import) : import(std::move(import)) {}
    ~ImportServant() override;

    char *begin(const char *path) override;
    KORVE_INSTALLATION::struImportState *await(const char *importId) override;
    void cancel(const char *importId) override;
    /// Cancels all imports and waits for their ends; whoever owns the recorder calls it before that goes.
    void stop();

private:
    class Job;

    std::shared_ptr<Job> jobOf(const char *importId);
    void forgetFinished();

    const Import import;
    std::mutex mutex; // guards the rest
    std::map<std::string, std::shared_ptr<Job>> jobs;
    unsigned lastNumber = 0;
    bool isStopped = false;
};

} // namespace installation
