#include "installation/recorder/recordcopier.h"

#include "installation/recorder/deviceclock.h"
#include "installation/recorder/file.h"
#include "installation/recorder/reservedrecord.h"

#include <algorithm>
#include <future>
#include <tuple>

namespace installation::recorder
{

namespace
{

constexpr quint64 stepBytes = 1 << 20;
constexpr int sectionsNamed = 8;

RecorderError fault(const QString &reason)
{
    return {TQ_KORVE::ekCOPY_FAULT, reason};
}

void copyPart(const File &from, const FilePart &part, File &to, const std::stop_token &cancellation)
{
    for (quint64 position = part.begin; position < part.end;) {
        if (cancellation.stop_requested())
            throw fault(QStringLiteral("cancelled"));
        const QByteArray step = from.readAt(position, static_cast<qint64>(std::min(stepBytes, part.end - position)));
        if (step.isEmpty())
            throw fault(QStringLiteral("the samples became shorter while they were read"));
        to.write(step);
        position += step.size();
    }
}

QString origin(const Record &source, const QVector<FilePart> &parts)
{
    QStringList sections;
    for (const FilePart &part : parts.mid(0, sectionsNamed))
        sections.append(QStringLiteral("%1-%2").arg(QString::number(part.begin), QString::number(part.end)));
    if (parts.size() > sectionsNamed)
        sections.append(QStringLiteral("%1 more").arg(parts.size() - sectionsNamed));
    return QStringLiteral("Copied from record %1, bytes %2").arg(source.id, sections.join(QStringLiteral(", ")));
}

} // namespace

/// One copy under way. Its file of samples is open from the beginning: a removal of the source does not harm it.
struct RecordCopier::Copy {
    explicit Copy(StoreThread &store) : reserved(store) {}

    ReservedRecord reserved;
    std::shared_ptr<void> claimed;
    std::optional<File> from;
    QVector<FilePart> parts;
    Record record;
    Ended ended;
    std::promise<std::optional<RecorderError>> outcome; ///< a value: what is thrown belongs to one thread alone
};

RecordCopier::RecordCopier(std::shared_ptr<StoreThread> store, const DeviceClock &clock, Claim claim, Timing timing)
    : store(std::move(store)), clock(clock), claim(std::move(claim)), timing(timing),
      jobs(QStringLiteral("copies"), maximumCopies)
{
}

RecordCopier::RecordCopier(std::shared_ptr<StoreThread> store, const DeviceClock &clock, Claim claim)
    : RecordCopier(std::move(store), clock, std::move(claim), {})
{
}

std::shared_ptr<RecordCopier::Copy> RecordCopier::prepare(const QString &sourceId, const QVector<FilePart> &parts,
                                                          const QString &name)
{
    const auto copy = std::make_shared<Copy>(*store);
    // Without the copy itself: its end asks the store, which must not happen on the store's own thread.
    const auto [source, path, claimed] = store->ask([claim = claim, sourceId, id = copy->reserved.id()](RecordStore &records) {
        const Record record = records.recordInOrder(sourceId);
        return std::tuple(record, records.samplesPath(sourceId), claim ? claim(record, id) : nullptr);
    });
    copy->claimed = claimed;
    copy->parts = checkedParts(source, parts);
    copy->record = recordOfParts(source, copy->parts);
    copy->record.name = name;
    copy->record.history = {{clock.nowUs(), origin(source, copy->parts)}};
    requireRoom(*store, copy->record.sizeBytes);
    copy->from.emplace(File::openForReading(path));
    return copy;
}

QString RecordCopier::copy(const QString &sourceId, const QVector<FilePart> &parts, const QString &name,
                           const Ended &ended)
{
    Jobs::Place place = jobs.takePlace();
    const std::shared_ptr<Copy> copy = prepare(sourceId, parts, name);
    copy->ended = ended;
    const QString copyId = copy->reserved.id();
    std::future<std::optional<RecorderError>> outcome = copy->outcome.get_future();
    jobs.start(std::move(place), [this, copy](const std::stop_token &cancellation) { perform(*copy, cancellation); });
    if (outcome.wait_for(timing.patience) == std::future_status::ready)
        if (const std::optional<RecorderError> failure = outcome.get())
            throw RecorderError(*failure);
    return copyId;
}

/// Makes the record, and tells everybody how it went.
void RecordCopier::perform(Copy &copy, const std::stop_token &cancellation) const
{
    const std::optional<RecorderError> failure = make(copy, cancellation);
    if (failure)
        copy.reserved.giveBack();
    copy.claimed.reset(); // whoever hears of it may go on with either record
    if (copy.ended)
        copy.ended(copy.reserved.id(), failure ? failure->text() : QString());
    copy.outcome.set_value(failure);
}

/// What it failed of, whatever that is: somebody waits for the end of it.
std::optional<RecorderError> RecordCopier::make(Copy &copy, const std::stop_token &cancellation)
{
    try {
        File to = File::create(copy.reserved.samplesPath());
        for (const FilePart &part : copy.parts)
            copyPart(*copy.from, part, to, cancellation);
        to.sync();
        copy.reserved.adopt(copy.record);
        return std::nullopt;
    } catch (const RecorderError &error) {
        return error;
    } catch (const std::exception &error) {
        return fault(QString::fromUtf8(error.what()));
    }
}

} // namespace installation::recorder
