#pragma once

#include "installation/recorder/record.h"

#include <optional>

namespace installation::recorder
{

/// How the samples of a recording are laid out. The tables stand in docs/dataformats.md.
struct SampleFormat {
    QString datatype; ///< the word for it in SigMF
    unsigned bytes = 0; ///< of one sample of one channel
    bool complex = false;

    /// None for a word that is not known.
    static std::optional<SampleFormat> ofSigmf(const QString &datatype);
    /// By libsndfile's number for the samples of a WAV file; none for those that SigMF has no word for.
    static std::optional<SampleFormat> ofSound(int subtype);

    DataFormat dataFormat() const;
};

} // namespace installation::recorder
