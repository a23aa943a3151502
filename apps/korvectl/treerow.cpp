#include "apps/korvectl/treerow.h"

#include "valuetreelib/value.h"

namespace korvectl
{

namespace
{

/// The content of a value that stores a T.
template <typename T> bool isContent(const values::ValueBase &value, QJsonValue &content)
{
    const auto *const typed = dynamic_cast<const values::Value<T> *>(&value);
    if (typed)
        content = typed->GetValue();
    return typed;
}

QJsonValue contentOf(const values::ValueBase &value, const QString &text)
{
    if (QJsonValue content;
        isContent<bool>(value, content) || isContent<int>(value, content) || isContent<double>(value, content))
        return content;
    if (const auto *const number = dynamic_cast<const values::Value<unsigned> *>(&value))
        return static_cast<double>(number->GetValue());
    const auto *const number = dynamic_cast<const values::Value<qint64> *>(&value);
    constexpr qint64 mostExact = qint64{1} << 53; // of the numbers of JSON, as most programs read them
    if (number && number->GetValue() >= -mostExact && number->GetValue() <= mostExact)
        return number->GetValue();
    return text;
}

} // namespace

TreeRow::TreeRow(const values::ValueBase &value)
    : path(value.GetPathName()), type(value.GetTypeName()), text(value.GetStringValue()),
      content(contentOf(value, text)), state(value.GetState())
{
}

QJsonObject TreeRow::object() const
{
    return {{QStringLiteral("path"), path},
            {QStringLiteral("type"), type},
            {QStringLiteral("value"), content},
            {QStringLiteral("state"), wordsFor(state)}};
}

QString wordsFor(values::TValueState state)
{
    switch (state) {
    case values::ValueStateValid:
        return QStringLiteral("valid");
    case values::ValueStateDeleted:
        return QStringLiteral("deleted");
    case values::ValueStateSeeded:
        return QStringLiteral("seeded");
    case values::ValueStateConnectionLost:
        return QStringLiteral("connection lost");
    }
    return QStringLiteral("unknown state %1").arg(int{state}); // of a newer peer
}

} // namespace korvectl
