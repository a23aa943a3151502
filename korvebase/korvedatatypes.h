#pragma once

/// What callers choose from that is no member of an object class.
namespace KorveDataTypes
{

/// The window of an overview spectrum.
enum class eFFT_Window { Rectangle, Hamming, Hanning, Kaiser, Blackman };

} // namespace KorveDataTypes
