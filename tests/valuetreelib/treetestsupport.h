#pragma once

#include "coresupport/trace.h"
#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"

#include <gmock/gmock.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

using Log = std::vector<std::string>;

/// Writes "name code" for each notification to a common log, then does what the test gave it to do, once.
class LoggingObserver : public IObserver
{
public:
    LoggingObserver(std::string name, Log &log) : name(std::move(name)), log(log) {}
    void Update(Observable *newSubject, TChangeCode code) override
    {
        subject = newSubject;
        log.push_back(name + " " + std::to_string(code));
        if (react)
            std::exchange(react, nullptr)();
    }

    std::string name;
    Log &log;
    std::function<void()> react;
    Observable *subject = nullptr;
};

/// Works on the tree of the process, which is empty before and after; keeps what is traced at the usual level.
class TreeTest : public testing::Test
{
protected:
    TreeTest()
    {
        ErrorHandler::Instance().setTraceMask(static_cast<unsigned>(TraceLevel::Normal));
        before = setTraceCapture([this](const TraceLine &line) { traces.push_back(line.text); });
    }
    ~TreeTest() override
    {
        for (values::TreeItem *item : tree.subtree(QStringLiteral("/")))
            item->DeleteObservers(); // those of the test are gone by now
        tree.removeNode(QStringLiteral("/"));
        setTraceCapture(before);
        ErrorHandler::Instance().setTraceMask(maskBefore);
    }

    template <typename T> T *add(const QString &parentPath, const QString &name, IObserver *originator = nullptr)
    {
        auto value = std::make_unique<T>();
        value->SetName(name, nullptr);
        T *const added = value.get();
        return tree.addValue(parentPath, std::move(value), originator) ? added : nullptr;
    }
    Log taken() { return std::exchange(log, {}); }

    values::Tree &tree = values::Tree::Instance();
    Log log;
    std::vector<QString> traces;
    TraceCapture before;
    const unsigned maskBefore = ErrorHandler::Instance().traceMask();
};

using TextValue = values::Value<QString>;
