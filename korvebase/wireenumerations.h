#pragma once

#include "korvebase/korvedatatypes.h"

#include "objectmodel/korve_recorddata.h"
#include "objectmodel/netifparams.h"

#include <algorithm>
#include <array>
#include <optional>

/// The enumerations of the object model in the numbering of a remote contract. Wire is the like-named enumeration of
/// the manager (TQ_KRV) or of the device (TQ_KORVE), whose literals have the same names and other numbers.
namespace KorveCommon::wire
{

using Record = KORVE_XML::KORVE_RecordData;
using KORVE_XML::NetIfParams;

template <class Wire> constexpr std::optional<Wire> toWire(Record::DataRate rate)
{
    switch (rate) {
    case Record::HF_20k: return Wire::drHF_20k;
    case Record::HF_4M: return Wire::drHF_4M;
    case Record::VUHF_200k: return Wire::drVUHF_200k;
    case Record::VUHF_20M: return Wire::drVUHF_20M;
    case Record::VUHF_40M: return Wire::drVUHF_40M;
    case Record::VUHF_80M: return Wire::drVUHF_80M;
    case Record::RESULT_DATA: return Wire::drRESULT_DATA;
    case Record::VUHF_300k: return Wire::drVUHF_300k;
    case Record::VUHF_10M: return Wire::drVUHF_10M;
    case Record::VUHF_125M: return Wire::drVUHF_125M;
    case Record::VUHF_250M: return Wire::drVUHF_250M;
    case Record::VUHF_500M: return Wire::drVUHF_500M;
    case Record::VUHF_1M: return Wire::drVUHF_1M;
    // contract: these pass no remote interface, although the manager's has literals for them
    case Record::HF_8M:
    case Record::HF_12M:
    case Record::VUHF_60M: break;
    }
    return {};
}

template <class Wire> constexpr std::optional<Wire> toWire(Record::DataFormat format)
{
    switch (format) {
    case Record::RAW: return Wire::dfRAW;
    case Record::CONTENT: return Wire::dfCONTENT;
    case Record::SPECTRUM: return Wire::dfSPECTRUM;
    case Record::DECODED_TEXT: return Wire::dfDECODED_TEXT;
    case Record::IMAGE: return Wire::dfIMAGE;
    case Record::INSTANTANEOUS: return Wire::dfINSTANTANEOUS;
    case Record::SYMBOL: return Wire::dfSYMBOL;
    case Record::TUNER_SPECTRUM: return Wire::dfTUNER_SPECTRUM;
    case Record::TRANSMISSION_SYSTEM_RESULT: return Wire::dfTRANSMISSION_SYSTEM_RESULT;
    case Record::ANALOG_AUDIO: return Wire::dfANALOG_AUDIO;
    case Record::EMISSION_LIST_DATA: return Wire::dfEMISSION_LIST_DATA;
    case Record::BURST_EMISSION_LIST: return Wire::dfBURST_EMISSION_LIST;
    case Record::TIMEDOMAIN_DATA: return Wire::dfTIMEDOMAIN_DATA;
    case Record::HISTOGRAM_DATA: return Wire::dfHISTOGRAM_DATA;
    case Record::PULSE_DESCRIPTION_WORD_DATA: return Wire::dfPULSE_DESCRIPTION_WORD_DATA;
    case Record::PULSE_REPETITION_WORD_DATA: return Wire::dfPULSE_REPETITION_WORD_DATA;
    case Record::HOP_DENSITY_WATERFALL_DATA: return Wire::dfHOP_DENSITY_WATERFALL_DATA;
    case Record::TUNER_PIFPAN_DATA: return Wire::dfTUNER_PIFPAN_DATA;
    case Record::IQ_BURST: return Wire::dfIQ_BURST;
    case Record::DIGITAL_AUDIO: return Wire::dfDIGITAL_AUDIO;
    case Record::ANALYSED_BURST_INFO: return Wire::dfANALYSED_BURST_INFO;
    case Record::MR200: return Wire::dfMR200;
    case Record::IQDW: return Wire::dfIQDW;
    case Record::IQBW: return Wire::dfIQBW;
    // No remote interface has these.
    case Record::SPECIAL:
    case Record::TUNER_POLYCHROME_SPECTRUM:
    case Record::SEGMENTATION_SPECTRUM:
    case Record::DETECTOR_SPECTRUM:
    case Record::DETECTOR_THRESHOLD: break;
    }
    return {};
}

template <class Wire> constexpr std::optional<Wire> toWire(Record::RecordStatus status)
{
    switch (status) {
    case Record::READY_FOR_REPLAY: return Wire::rsREADY_FOR_REPLAY;
    case Record::REPLAYING: return Wire::rsREPLAYING;
    case Record::READY_FOR_RECORDING: return Wire::rsREADY_FOR_RECORDING;
    case Record::RECORDING: return Wire::rsRECORDING;
    case Record::INDEXING: return Wire::rsINDEXING;
    case Record::IDLE: return Wire::rsIDLE;
    case Record::COPYING: return Wire::rsCOPYING;
    case Record::RESTORING: return Wire::rsRESTORING;
    case Record::ACTIVE:
        if constexpr (requires { Wire::rsACTIVE; }) // the device has no such status
            return Wire::rsACTIVE;
        break;
    }
    return {};
}

template <class Wire> constexpr std::optional<Wire> toWire(NetIfParams::KorveInterfaceType type)
{
    switch (type) {
    case NetIfParams::TCP_IF: return Wire::TCP_IF;
    case NetIfParams::UDP_IF: return Wire::UDP_IF;
    case NetIfParams::FPDP_SERIAL_IF: return Wire::FPDP_SERIAL_IF;
    case NetIfParams::TQXG_IF: return Wire::TQXG_IF;
    case NetIfParams::SIGIQ_IF: return Wire::SIGIQ_IF;
    }
    return {};
}

template <class Wire> constexpr std::optional<Wire> toWire(KorveDataTypes::eFFT_Window window)
{
    using Window = KorveDataTypes::eFFT_Window;
    switch (window) {
    case Window::Rectangle: return Wire::wmRectangle;
    case Window::Hamming: return Wire::wmHamming;
    case Window::Hanning: return Wire::wmHanning;
    case Window::Kaiser: return Wire::wmKaiser;
    case Window::Blackman: return Wire::wmBlackman;
    }
    return {};
}

/// The way back, computed from the way there so that the two cannot disagree: codes of Xml by wire number, else -1.
template <class Xml, class Wire>
inline constexpr auto codesByNumber = [] {
    std::array<signed char, 32> codes{};
    codes.fill(-1);
    for (signed char code = 0; code < 32; ++code) {
        if (const std::optional<Wire> number = toWire<Wire>(static_cast<Xml>(code)))
            codes[*number] = code;
    }
    return codes;
}();

/// Takes a number, since the device's structures carry any; what the contract does not know yields nothing.
template <class Xml, class Wire> std::optional<Xml> fromWire(unsigned int number)
{
    constexpr auto &codes = codesByNumber<Xml, Wire>;
    return number < codes.size() && codes[number] >= 0 ? std::optional(static_cast<Xml>(codes[number])) : std::nullopt;
}

/// How many values pass between Xml and Wire.
template <class Xml, class Wire>
inline constexpr auto passing = std::ranges::count_if(codesByNumber<Xml, Wire>, [](int code) { return code >= 0; });

} // namespace KorveCommon::wire
