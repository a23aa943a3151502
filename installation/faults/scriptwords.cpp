#include "installation/faults/scriptwords.h"

#include <QString>

#include <algorithm>
#include <stdexcept>

namespace installation::faults
{

namespace
{

bool isBlank(char character)
{
    return character == ' ' || character == '\t';
}

void requireText(std::string_view line)
{
    const QByteArray bytes(line.data(), static_cast<int>(line.size()));
    const auto isControl = [](char character) {
        return static_cast<unsigned char>(character) < 0x20 && character != '\t';
    };
    if (std::any_of(line.begin(), line.end(), isControl) || line.find('\x7f') != std::string_view::npos)
        throw std::invalid_argument("a control character");
    if (QString::fromUtf8(bytes).toUtf8() != bytes) // which would end at a NUL
        throw std::invalid_argument("not UTF-8");
}

/// Takes the text from the line, which begins with its quotation mark.
ScriptWord takeQuoted(std::string_view &line)
{
    ScriptWord word{{}, true};
    for (std::size_t position = 1; position < line.size(); ++position) {
        if (line[position] == '"') {
            line.remove_prefix(position + 1);
            if (!line.empty() && !isBlank(line.front()))
                throw std::invalid_argument("a blank is missing behind a quotation mark");
            return word;
        }
        if (line[position] == '\\' && ++position == line.size())
            break;
        word.text += line[position];
    }
    throw std::invalid_argument("a quotation mark has no end");
}

ScriptWord takePlain(std::string_view &line)
{
    const std::size_t length = std::min(line.find_first_of(" \t"), line.size());
    const ScriptWord word{std::string(line.substr(0, length))};
    if (word.text.find('"') != std::string::npos)
        throw std::invalid_argument("a quotation mark within a word");
    line.remove_prefix(length);
    return word;
}

} // namespace

std::vector<ScriptWord> scriptWords(std::string_view line)
{
    requireText(line);
    std::vector<ScriptWord> words;
    while (true) {
        while (!line.empty() && isBlank(line.front()))
            line.remove_prefix(1);
        if (line.empty() || line.front() == '#')
            return words;
        words.push_back(line.front() == '"' ? takeQuoted(line) : takePlain(line));
    }
}

} // namespace installation::faults
