#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

/// Names in order, below the heading that they belong to.
using NamesByHeading = std::map<std::string, std::vector<std::string>>;

/// What the compiled interface files say of themselves, read from the stubs that omniidl wrote.
namespace generatedstubs
{

std::set<std::string> repositoryIds();

/// Each interface ("TQ_KRV::IF_KRV_c_KRV") with the operations that its skeleton dispatches, without inherited ones.
NamesByHeading operations();

/// Each enumeration ("korvemanager eGenKind") with its literals.
NamesByHeading enumerations();

} // namespace generatedstubs

/// The lists kept by hand.
namespace contractlists
{

/// A list file: a heading is a line at the margin, its names are indented below it. '#' opens a comment.
/// An empty result means that the file cannot be read.
NamesByHeading read(const std::string &fileName);

} // namespace contractlists
