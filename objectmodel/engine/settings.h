#pragma once

#include "objectmodel/engine/access.h"

#include <memory>

namespace REPORTGENERATOR
{
class Logger;
}

/// Validation flag and logger, which an object hands down to all that is nested in it.
namespace KORVE_XML::engine
{

void pushValidate(const Self &self, bool validate);
void pushLogger(const Self &self, const std::shared_ptr<REPORTGENERATOR::Logger> &logger);
/// Both settings of the object at once, into its record @p record.
void pushSettings(const Self &self, Record &record);
/// Gives a fresh item the settings of the object that it goes to.
void copySettings(const IRGObject &from, IRGObject &to);

} // namespace KORVE_XML::engine
