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

/// Each interface ("TQ_KRV::IF_KRV_c_KRV") with the operations of its stub, without inherited ones: "RESULT NAME(TYPE,
/// out TYPE) raises EXCEPTION, EXCEPTION", in the words of IDL.
NamesByHeading operations();

/// Each structure ("korve struMETA_DATA") with its members, "TYPE NAME", and each sequence with "sequence TYPE".
NamesByHeading structures();

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
