#pragma once

#include "valuetreelib/commandframe.h"
#include "valuetreelib/scalartype.h"
#include "valuetreelib/streamformat.h"
#include "valuetreelib/valuebase.h"

namespace values
{
/// One number, flag or text. Instances: QString, bool, int, unsigned int, qint64, double.
template <typename T, typename Format = typename ScalarType<T>::Format, typename Stream = StreamFormat<T>>
class Value : public ValueBase
{
public:
    void SetStringValue(QString text, IObserver *originator) override;
    QString GetStringValue() const override { return Format::toText(content); }
    using ValueBase::SetCommandString;
    bool SetCommandString(quint8 command, ByteCursor payload, IObserver *originator) override;
    ValueType GetType() const override { return ScalarType<T>::type; }
    QString GetTypeName() const override { return QLatin1String(ScalarType<T>::name); }
    void Assign(const ValueBase &other) override { *this = dynamic_cast<const Value &>(other); }
    bool Compare(const ValueBase *other) const override;
    void AddObjectStateStringForTransmission(std::string &out) const override;
    void AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const override;

    // contract: slot order
    virtual void SetValue(T newContent, IObserver *originator);
    virtual T GetValue() const { return content; }

    Value &operator=(const Value &other) = default;
    bool operator==(const Value &other) const;

private:
    static bool same(const T &a, const T &b);

    T content{};
};

template <typename T, typename Format, typename Stream>
bool Value<T, Format, Stream>::same(const T &a, const T &b)
{
    if constexpr (std::is_floating_point_v<T>)
        return a == b || (a != a && b != b); // not a number, again, is no change
    else
        return a == b;
}

template <typename T, typename Format, typename Stream>
void Value<T, Format, Stream>::SetValue(T newContent, IObserver *originator)
{
    if (same(content, newContent))
        return;
    content = std::move(newContent);
    changed(ChangeCodeValue, originator);
}

template <typename T, typename Format, typename Stream>
void Value<T, Format, Stream>::SetStringValue(QString text, IObserver *originator)
{
    T parsed{};
    if (Format::fromText(text, parsed))
        SetValue(std::move(parsed), originator);
    else
        refuseContent(text);
}

template <typename T, typename Format, typename Stream>
bool Value<T, Format, Stream>::SetCommandString(quint8 command, ByteCursor payload, IObserver *originator)
{
    const bool forced = command & forcedCommandFlag;
    if (command != (Stream::command | (forced ? forcedCommandFlag : 0)))
        return ValueBase::SetCommandString(command, payload, originator);
    T received{};
    if (!Stream::read(payload, received) || !payload.isAtEnd())
        return refuseCommand(command);
    if (forced && same(content, received))
        NotifyObservers(ChangeCodeValue, originator);
    else
        SetValue(std::move(received), originator);
    return true;
}

template <typename T, typename Format, typename Stream>
bool Value<T, Format, Stream>::Compare(const ValueBase *other) const
{
    const auto *const sameClass = dynamic_cast<const Value *>(other);
    return sameClass && *this == *sameClass;
}

template <typename T, typename Format, typename Stream>
bool Value<T, Format, Stream>::operator==(const Value &other) const
{
    return same(content, other.content) && ValueBase::operator==(other);
}

template <typename T, typename Format, typename Stream>
void Value<T, Format, Stream>::AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const
{
    if (code != ChangeCodeValue)
        return ValueBase::AddCommandForTransmission(code, forced, out);
    appendFrame(out, Stream::command | (forced ? forcedCommandFlag : 0),
                [this](std::string &payload) { Stream::append(payload, content); });
}

template <typename T, typename Format, typename Stream>
void Value<T, Format, Stream>::AddObjectStateStringForTransmission(std::string &out) const
{
    Value::AddCommandForTransmission(ChangeCodeValue, false, out);
    ValueBase::AddObjectStateStringForTransmission(out); // last: a content is believed by its state
}

extern template class VALUETREELIB_EXPORT Value<QString>;
extern template class VALUETREELIB_EXPORT Value<bool>;
extern template class VALUETREELIB_EXPORT Value<int>;
extern template class VALUETREELIB_EXPORT Value<unsigned int>;
extern template class VALUETREELIB_EXPORT Value<qint64>;
extern template class VALUETREELIB_EXPORT Value<double>;
} // namespace values
