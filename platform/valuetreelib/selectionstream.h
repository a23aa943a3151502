#pragma once

#include "valuetreelib/bytecursor.h"
#include "valuetreelib/selitemdesc.h"

#include <string>
#include <vector>

namespace values
{
/// The payloads of a selection's commands. A reader returns false when the bytes are none, and memory is only taken for
/// items that are there.
void appendKey(std::string &out, qint64 key);
bool readKey(ByteCursor &in, qint64 &key);
void appendItems(std::string &out, const std::vector<SelItemDesc> &items);
bool readItems(ByteCursor &in, std::vector<SelItemDesc> &items);
} // namespace values
