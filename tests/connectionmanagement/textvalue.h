#pragma once

#include "valuetreelib/value.h"
#include "valuetreelib/valueptr.h"

/// A text in the process's tree, for as long as this lives.
class TextValue
{
public:
    TextValue(const QString &path, const QString &text) : path(path)
    {
        value.getOrCreate(path);
        value->SetValue(text, nullptr);
    }
    TextValue(const TextValue &) = delete;
    ~TextValue() { values::Tree::Instance().removeValue(path); }

    void set(const QString &text) { value->SetValue(text, nullptr); }

private:
    const QString path;
    values::ValuePtr<values::Value<QString>> value;
};
