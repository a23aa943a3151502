#pragma once

#include "valuetreelib/node.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/value.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>

/// A server's tree and this process's tree, one path of which mirrors the other's. A program is linked with one way to
/// join them: joinedpair.cpp or orbpair.cpp.
class MirrorPair
{
public:
    /// Unconnected. Several of one server's tree may live at a time.
    static std::unique_ptr<MirrorPair> make(values::Tree &serverTree, const QString &serverPath,
                                            const QString &clientPath);
    virtual ~MirrorPair() = default;

    /// Returns when the client is as the server says.
    virtual void connect() = 0;
    /// Returns when the client has noticed.
    virtual void disconnect() = 0;
    /// Returns when each side has made what the other did until now. The mirrored node must be there.
    virtual void carry() = 0;
    /// Carries until @p condition holds; false when it does not come to that.
    virtual bool carryUntil(const std::function<bool()> &condition) = 0;
    virtual bool isConnected() const = 0;
};

template <typename T>
T *addNew(values::Tree &tree, const QString &parent, const QString &name)
{
    auto value = std::make_unique<T>();
    value->SetName(name, nullptr);
    T *const borrowed = value.get();
    return tree.addValue(parent, std::move(value)) ? borrowed : nullptr;
}

using TextValue = values::Value<QString>;

inline TextValue *addText(values::Tree &tree, const QString &parent, const QString &name, const QString &content)
{
    auto *const value = addNew<TextValue>(tree, parent, name);
    value->SetValue(content, nullptr);
    return value;
}

/// "/K/Device" with "State" = "idle", whose mirror is to be "/Sub/A/Device".
class TwoTrees : public testing::Test
{
protected:
    ~TwoTrees() override { clientTree.removeNode(QStringLiteral("/")); }

    QString at(const char *path) const { return contentIn(clientTree, path); }
    QString atServer(const char *path) const { return contentIn(serverTree, path); }
    TextValue *text(values::Tree &tree, const char *path) const
    {
        return dynamic_cast<TextValue *>(tree.findValue(QLatin1String(path)));
    }

    values::Tree serverTree;
    values::Tree &clientTree = values::Tree::Instance();
    TextValue *const state = addText(serverTree, QStringLiteral("/K/Device/"), QStringLiteral("State"),
                                     QStringLiteral("idle"));

private:
    static QString contentIn(const values::Tree &tree, const char *path)
    {
        const values::ValueBase *const value = tree.findValue(QLatin1String(path));
        return value ? value->GetStringValue() : QStringLiteral("(absent)");
    }
};
