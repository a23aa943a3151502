#pragma once

#include "coresupport/coresupport_export.h"

#include <QByteArray>

#include <atomic>

/// The importance of a trace: one bit of the level mask.
enum class TraceLevel : unsigned {
    Normal = 32, ///< errors and information, nearly everything
    Debug = 64,  ///< debugging, and warnings about input
};

/// Decides which traces are wanted. The mask begins as the number in KORVE_TRACE (also hexadecimal, 0x60), else 32.
///
/// Thread: any; never blocks.  Errors: an unreadable KORVE_TRACE is traced and counts as absent.
class CORESUPPORT_EXPORT ErrorHandler
{
public:
    static ErrorHandler &Instance();
    /// The mask that a text such as that of KORVE_TRACE stands for.
    static unsigned maskFromText(const QByteArray &text);

    void setTraceMask(unsigned mask) { bits.store(mask, std::memory_order_relaxed); }

    unsigned traceMask() const { return bits.load(std::memory_order_relaxed); }
    bool isTraced(TraceLevel level) const { return traceMask() & static_cast<unsigned>(level); }

private:
    ErrorHandler();

    std::atomic<unsigned> bits;
};
