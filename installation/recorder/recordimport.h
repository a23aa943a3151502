#pragma once

#include <QString>

#include <functional>
#include <stop_token>

namespace installation::recorder
{

class StoreThread;

/// What the caller of an import may hear of it and say to it.
struct ImportControl {
    /// Is told on the caller's thread how many bytes of the samples are copied, at last all.
    std::function<void(quint64 doneBytes, quint64 totalBytes)> progress;
    std::stop_token cancellation;
};

/// Makes a record of a WAV file or a SigMF pair, and returns its id. The samples are kept byte for byte.
///
/// Copies on the caller's thread, and blocks it meanwhile. The record exists when this returns, and not before.
/// @throws RecorderError when the file is refused, when the disk is full, when the copying fails or is cancelled;
/// nothing stays behind then. The caller says which file it was.
QString importFile(StoreThread &store, const QString &path, const ImportControl &control = {});

} // namespace installation::recorder
