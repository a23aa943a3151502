#include "tests/idl/generatedstubs.h"

#include <fstream>
#include <regex>
#include <sstream>

namespace
{

const std::vector<std::string> interfaceFiles{"lumbalandatacom", "korvemanager", "korve", "cco"};

std::string contentOf(const std::string &path)
{
    std::ifstream file(path);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::string skeleton(const std::string &name)
{
    return contentOf(std::string(GENERATED_STUBS "/") + name + "SK.cc");
}

std::string header(const std::string &name)
{
    return contentOf(std::string(GENERATED_STUBS "/") + name + ".hh");
}

std::vector<std::smatch> allMatches(const std::string &text, const std::regex &pattern)
{
    return {std::sregex_iterator(text.begin(), text.end(), pattern), std::sregex_iterator()};
}

std::vector<std::string> firstGroups(const std::string &text, const std::regex &pattern)
{
    std::vector<std::string> groups;
    for (const std::smatch &match : allMatches(text, pattern))
        groups.push_back(match[1]);
    return groups;
}

} // namespace

std::set<std::string> generatedstubs::repositoryIds()
{
    static const std::regex definition(R"(::_PD_repoId = "(IDL:[^"]+)\")");
    std::set<std::string> ids;
    for (const std::string &file : interfaceFiles)
        ids.merge([&] {
            const auto found = firstGroups(skeleton(file), definition);
            return std::set<std::string>(found.begin(), found.end());
        }());
    return ids;
}

NamesByHeading generatedstubs::operations()
{
    static const std::regex dispatcher(R"((\w+)::_impl_(\w+)::_dispatch\(omniCallHandle& _handle\)\n)");
    static const std::regex operation(R"(strMatch\(op, "(\w+)\"\))");
    NamesByHeading interfaces;
    for (const std::string &file : interfaceFiles) {
        const std::string text = skeleton(file);
        for (const std::smatch &match : allMatches(text, dispatcher)) {
            const auto begin = static_cast<std::size_t>(match.position() + match.length());
            const std::string body = text.substr(begin, text.find("\n}\n", begin) - begin);
            interfaces[match[1].str() + "::" + match[2].str()] = firstGroups(body, operation);
        }
    }
    return interfaces;
}

NamesByHeading generatedstubs::enumerations()
{
    static const std::regex enumeration(R"(enum (\w+) \{ ([\w, ]+) /\*)");
    static const std::regex literal(R"((\w+))");
    NamesByHeading enumerations;
    for (const std::string &file : interfaceFiles) {
        const std::string text = header(file);
        for (const std::smatch &match : allMatches(text, enumeration))
            enumerations[file + " " + match[1].str()] = firstGroups(match[2], literal);
    }
    return enumerations;
}

NamesByHeading contractlists::read(const std::string &fileName)
{
    std::ifstream file(std::string(CONTRACT_LISTS "/") + fileName);
    NamesByHeading lists;
    std::string heading;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.front() == '#')
            continue;
        if (line.front() == ' ')
            lists.at(heading).push_back(line.substr(line.find_first_not_of(' ')));
        else
            lists[heading = line];
    }
    return lists;
}
