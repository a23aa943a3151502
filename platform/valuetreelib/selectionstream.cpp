#include "valuetreelib/selectionstream.h"

#include "valuetreelib/streamformat.h"

namespace values
{
namespace
{
void appendItem(std::string &out, const SelItemDesc &item)
{
    appendKey(out, item.key());
    StreamFormat<double>::append(out, item.number());
    std::string text;
    StreamFormat<QString>::append(text, item.String());
    StreamFormat<unsigned int>::append(out, static_cast<unsigned int>(text.size()));
    out += text;
}

bool readText(ByteCursor &in, QString &text)
{
    unsigned int length;
    const char *const bytes = StreamFormat<unsigned int>::read(in, length) ? in.take(length) : nullptr;
    ByteCursor own{bytes, bytes + (bytes ? length : 0)};
    return bytes && StreamFormat<QString>::read(own, text);
}
} // namespace

void appendKey(std::string &out, qint64 key)
{
    StreamFormat<qint64>::append(out, key);
}

bool readKey(ByteCursor &in, qint64 &key)
{
    return StreamFormat<qint64>::read(in, key);
}

void appendItems(std::string &out, const std::vector<SelItemDesc> &items)
{
    StreamFormat<unsigned int>::append(out, static_cast<unsigned int>(items.size()));
    for (const SelItemDesc &item : items)
        appendItem(out, item);
}

bool readItems(ByteCursor &in, std::vector<SelItemDesc> &items)
{
    unsigned int count;
    if (!StreamFormat<unsigned int>::read(in, count))
        return false;
    for (unsigned int i = 0; i < count; ++i) {
        qint64 key;
        double number;
        QString text;
        if (!readKey(in, key) || !StreamFormat<double>::read(in, number) || !readText(in, text))
            return false;
        items.emplace_back(text, number, key);
    }
    return true;
}
} // namespace values
