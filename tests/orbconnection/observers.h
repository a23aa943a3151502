#pragma once

#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuebase.h"

#include <functional>
#include <stdexcept>
#include <string>
#include <vector>

/// Writes down what it is told by @p subject, which must outlive it.
class Diary : public IObserver
{
public:
    explicit Diary(Observable *subject) : subject(subject) { subject->AddObserver(this); }
    ~Diary() override { subject->DeleteObserver(this); }
    void Update(Observable *teller, TChangeCode code) override
    {
        codes.push_back(code);
        if (auto *const value = dynamic_cast<values::ValueBase *>(teller))
            contents.push_back(value->GetStringValue().toStdString());
    }
    std::vector<int> codes;
    std::vector<std::string> contents;

private:
    Observable *const subject;
};

/// In trouble whenever it is told something.
class Thrower : public IObserver
{
public:
    void Update(Observable *, TChangeCode) override { throw std::runtime_error("an observer's trouble"); }
};

/// Does something whenever the item at a path is told @p code. The item may go before it.
class Answer : public IObserver
{
public:
    Answer(values::Tree &tree, const char *path, TChangeCode code, std::function<void()> action)
        : tree(tree), path(QLatin1String(path)), code(code), action(std::move(action))
    {
        if (values::TreeItem *const item = subject())
            item->AddObserver(this);
    }
    ~Answer() override
    {
        if (values::TreeItem *const item = subject())
            item->DeleteObserver(this);
    }
    void Update(Observable *, TChangeCode told) override
    {
        if (told == code)
            action();
    }

private:
    /// The value, or else the node.
    values::TreeItem *subject() const
    {
        if (values::TreeItem *const value = tree.findValue(path))
            return value;
        return tree.findNode(path);
    }

    values::Tree &tree;
    const QString path;
    const TChangeCode code;
    const std::function<void()> action;
};
