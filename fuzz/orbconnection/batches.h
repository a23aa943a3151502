#pragma once

#include "fuzz/support/require.h"
#include "orbconnection/mirrorclient.h"
#include "orbconnection/mirrorsession.h"
#include "valuetreelib/tree.h"
#include "valuetreelib/valuenumeric.h"
#include "valuetreelib/valueselection.h"

#include <QtEndian>

#include <cstdint>

/// The batches of an input, each with its length in 16 bits before it; the last may be shorter than it says.
inline std::vector<std::string_view> batchesIn(const uint8_t *data, std::size_t size)
{
    std::vector<std::string_view> batches;
    while (size >= 2) {
        const std::size_t length = std::min<std::size_t>(qFromLittleEndian<quint16>(data), size - 2);
        batches.emplace_back(reinterpret_cast<const char *>(data + 2), length);
        data += 2 + length;
        size -= 2 + length;
    }
    return batches;
}

template <typename T> T *addNew(values::Tree &tree, const QString &name)
{
    auto value = std::make_unique<T>();
    value->SetName(name, nullptr);
    T *const borrowed = value.get();
    return tree.addValue(QStringLiteral("/K/Device"), std::move(value)) ? borrowed : nullptr;
}

/// "/K/Device" with a value of several kinds each.
inline void fill(values::Tree &tree)
{
    addNew<values::Value<QString>>(tree, QStringLiteral("State"))->SetValue(QStringLiteral("idle"), nullptr);
    addNew<values::ValueNumeric<int>>(tree, QStringLiteral("Number"))->SetMinMax(1, 9, 2, nullptr);
    auto *const mode = addNew<values::ValueSelection>(tree, QStringLiteral("Mode"));
    mode->addItem(QStringLiteral("On"), 1.5, 7, nullptr);
    mode->selectKey(7, nullptr);
    tree.addNode(QStringLiteral("/K/Device/D1/Admin"));
}

/// Takes batches, and is never full.
inline mirror::Outlet outlet(std::function<void(std::string bytes)> take = [](const std::string &) {})
{
    mirror::Outlet outlet;
    outlet.put = [take = std::move(take)](quint64, std::string bytes) { take(std::move(bytes)); };
    outlet.waiting = [] { return std::size_t(0); };
    outlet.wantsFlush = [] {};
    return outlet;
}

/// All of the value that travels; unlike a comparison, also where it holds a number that is none.
inline std::string stateOf(const values::ValueBase &value)
{
    std::string frames;
    value.AddObjectStateStringForTransmission(frames);
    return frames;
}

/// Takes "/K/Device" of @p server over to "/C/Device" of @p client, which must end as the server says.
inline void takeOver(values::Tree &server, values::Tree &client, mirror::MirrorClient &receiver)
{
    using Outcome = mirror::MirrorClient::Outcome;
    receiver.begin();
    mirror::MirrorSession session(server, QStringLiteral("/K/Device"), {}, outlet([&](const std::string &bytes) {
                                      require(receiver.receive(bytes) != Outcome::Malformed);
                                  }));
    session.flush();
    require(receiver.isSettled());
    for (values::TreeItem *const item : server.subtree(QStringLiteral("/K/Device"))) {
        const QString path = QStringLiteral("/C") + item->GetPathName().mid(int(qstrlen("/K")));
        const values::ValueBase *const value = client.findValue(path);
        require(item->isNode() ? client.findNode(path) != nullptr
                               : value && stateOf(*value) == stateOf(*static_cast<values::ValueBase *>(item)));
    }
}
