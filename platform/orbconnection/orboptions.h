#pragma once

#include "orbconnection/orbsettings.h"

#include <QStringList>

#include <array>
#include <deque>
#include <string>
#include <vector>

namespace CorbaCommon
{
/// Settings and program arguments in the form in which ORB_init takes them. Owns all texts.
class OrbOptions
{
public:
    OrbOptions(const OrbSettings &settings, const QStringList &programArguments);

    /// False when what the settings say is no address, and the arguments of the program give no other.
    bool haveCentralService() const { return namesCentralService; }
    /// Ends with a pair of nulls.
    const char *(*pairs())[2] { return reinterpret_cast<const char *(*)[2]>(options.data()); }
    int &argumentCount() { return count; }
    char **arguments() { return argumentList.data(); }

private:
    using Pair = std::array<const char *, 2>;

    void add(const char *name, const QString &value);
    void addEndpoints(const OrbSettings &settings);
    void addCentralService(const QString &hostAndPort);
    void addArguments(const QStringList &programArguments);

    std::deque<std::string> texts; // keeps its elements where they are
    std::vector<Pair> options;
    std::vector<char *> argumentList;
    int count = 0;
    bool namesCentralService = false;
};
} // namespace CorbaCommon
