#include "installation/cco/textsequence.h"

namespace installation
{

CCO::seqString *toSequence(const std::vector<std::string> &texts)
{
    CCO::seqString_var sequence = new CCO::seqString;
    sequence->length(static_cast<CORBA::ULong>(texts.size()));
    for (std::size_t i = 0; i < texts.size(); ++i)
        sequence[static_cast<CORBA::ULong>(i)] = texts[i].c_str();
    return sequence._retn();
}

std::vector<std::string> fromSequence(const CCO::seqString &sequence)
{
    std::vector<std::string> texts;
    for (CORBA::ULong i = 0; i < sequence.length(); ++i)
        texts.emplace_back(sequence[i].in());
    return texts;
}

} // namespace installation
