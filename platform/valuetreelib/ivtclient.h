#pragma once

#include "valuetreelib/valuetreelib_export.h"

#include <QString>

namespace values
{
class ValueBase;
}

/// The connection that feeds one path of the tree from another process. Made by the connection layer.
class VALUETREELIB_EXPORT IVtClient
{
public:
    virtual ~IVtClient() = default;
    /// The path of the tree, on this side, below which this connection mirrors.
    virtual QString clientPath() const = 0;
    /// Off: each change of @p value is sent by itself. An equal content is no change.
    virtual void setOptimized(values::ValueBase *value, bool on) = 0;
};
