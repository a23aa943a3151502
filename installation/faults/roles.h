#pragma once

#include <string>
#include <string_view>

namespace installation::faults
{

bool isRole(std::string_view word);
/// Who serves the interfaces of an outermost module; empty, when that is nobody here.
std::string_view roleOfModule(std::string_view module);
/// The same of an interface by its repository id, such as "IDL:TQ_KRV/IF_KORVE_Admin:1.0".
std::string_view roleOfInterface(std::string_view repositoryId);

} // namespace installation::faults
