#include "programs/printable.h"

#include <algorithm>

namespace programs
{

QString printable(QString text)
{
    const auto movesCursor = [](QChar character) {
        const bool joinsLetters = character == QChar(0x200c) || character == QChar(0x200d); // or keeps them apart
        const QChar::Category category = character.category();
        return category == QChar::Other_Control || (category == QChar::Other_Format && !joinsLetters) ||
               category == QChar::Separator_Line || category == QChar::Separator_Paragraph;
    };
    std::replace_if(text.begin(), text.end(), movesCursor, QChar(u'?'));
    return text;
}

} // namespace programs
