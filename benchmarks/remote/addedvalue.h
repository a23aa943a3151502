#pragma once

#include "benchmarks/support/require.h"

#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

/// A new value of the tree of this process, of which each change is to arrive when it is not @p optimized.
template <typename T>
values::Value<T> *addedValue(const QString &parent, const QString &name, bool optimized, const T &content = {})
{
    auto value = std::make_unique<values::Value<T>>();
    values::Value<T> *const borrowed = value.get();
    value->SetName(name, nullptr);
    value->SetValue(content, nullptr);
    value->setOptimized(optimized);
    require(values::Tree::Instance().addValue(parent, std::move(value)), "a value can be added");
    return borrowed;
}
