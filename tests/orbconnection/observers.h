#pragma once

#include "valuetreelib/valuebase.h"

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
