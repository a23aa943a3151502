#pragma once

#include "valuetreelib/ivaluenumeric.h"
#include "valuetreelib/value.h"

#include <limits>

namespace values
{
/// A number with limits and step, for those who let people edit it; unlimited, step 0 (any), unless they are set.
///
/// Limits describe: they neither change the content nor refuse one. Instances: int, qint64, double.
template <typename T, typename Format = typename ScalarType<T>::Format, typename Stream = StreamFormat<T>>
class ValueNumeric : public Value<T, Format, Stream>, public IValueNumeric
{
    using Base = Value<T, Format, Stream>;

public:
    using Base::SetCommandString;
    bool SetCommandString(quint8 command, ByteCursor payload, IObserver *originator) override;
    ValueType GetType() const override { return ScalarType<T>::numericType; }
    QString GetTypeName() const override { return QLatin1String(ScalarType<T>::numericName); }
    void Assign(const ValueBase &other) override { *this = dynamic_cast<const ValueNumeric &>(other); }
    bool Compare(const ValueBase *other) const override;
    void AddObjectStateStringForTransmission(std::string &out) const override;
    void AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const override;

    // contract: slot order
    /// A minimum above the maximum, or what is not a number, is traced and changes nothing. So for the next three.
    virtual void SetMinMax(T min, T max, T step, IObserver *originator);
    virtual void SetMin(T min, IObserver *originator) { SetMinMax(min, limits.max, limits.step, originator); }
    virtual void SetMax(T max, IObserver *originator) { SetMinMax(limits.min, max, limits.step, originator); }
    virtual void SetStep(T step, IObserver *originator) { SetMinMax(limits.min, limits.max, step, originator); }

    void setNumericValue(double number, IObserver *originator) override;
    double numericValue() const override { return static_cast<double>(this->GetValue()); }
    double numericMin() const override { return static_cast<double>(limits.min); }
    double numericMax() const override { return static_cast<double>(limits.max); }
    double numericStep() const override { return static_cast<double>(limits.step); }

    T min() const { return limits.min; }
    T max() const { return limits.max; }
    T step() const { return limits.step; }

    ValueNumeric &operator=(const ValueNumeric &other) = default;
    bool operator==(const ValueNumeric &other) const { return limits == other.limits && Base::operator==(other); }

private:
    struct Limits {
        T min = std::numeric_limits<T>::lowest();
        T max = std::numeric_limits<T>::max();
        T step = 0;
        bool operator==(const Limits &) const = default;
    };

    Limits limits;
};

template <typename T, typename Format, typename Stream>
void ValueNumeric<T, Format, Stream>::SetMinMax(T min, T max, T step, IObserver *originator)
{
    if (!(min <= max) || step != step) {
        this->refuseContent(QStringLiteral("%1..%2/%3").arg(Format::toText(min), Format::toText(max), Format::toText(step)));
        return;
    }
    const Limits newLimits{min, max, step};
    if (limits == newLimits)
        return;
    limits = newLimits;
    this->changed(ChangeCodeLimits, originator);
}

template <typename T, typename Format, typename Stream>
void ValueNumeric<T, Format, Stream>::setNumericValue(double number, IObserver *originator)
{
    if constexpr (std::is_integral_v<T>) {
        // The greatest 64-bit number has no double of its own; the next power of two has.
        const double end = -static_cast<double>(std::numeric_limits<T>::min());
        if (!(number >= -end && number < end)) {
            this->refuseContent(QString::number(number));
            return;
        }
    }
    this->SetValue(static_cast<T>(number), originator);
}

template <typename T, typename Format, typename Stream>
bool ValueNumeric<T, Format, Stream>::SetCommandString(quint8 command, ByteCursor payload, IObserver *originator)
{
    if ((command & ~forcedCommandFlag) != SetLimitsCommand)
        return Base::SetCommandString(command, payload, originator);
    const char *const content = payload.take(1);
    Limits received;
    if (!content || *content != Stream::command || !Stream::read(payload, received.min)
        || !Stream::read(payload, received.max) || !Stream::read(payload, received.step) || !payload.isAtEnd())
        return this->refuseCommand(command);
    if ((command & forcedCommandFlag) && limits == received)
        this->NotifyObservers(ChangeCodeLimits, originator);
    else
        SetMinMax(received.min, received.max, received.step, originator);
    return true;
}

template <typename T, typename Format, typename Stream>
bool ValueNumeric<T, Format, Stream>::Compare(const ValueBase *other) const
{
    const auto *const sameClass = dynamic_cast<const ValueNumeric *>(other);
    return sameClass && *this == *sameClass;
}

template <typename T, typename Format, typename Stream>
void ValueNumeric<T, Format, Stream>::AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const
{
    if (code != ChangeCodeLimits)
        return Base::AddCommandForTransmission(code, forced, out);
    appendFrame(out, SetLimitsCommand | (forced ? forcedCommandFlag : 0), [this](std::string &payload) {
        payload.push_back(static_cast<char>(Stream::command));
        for (const T number : {limits.min, limits.max, limits.step})
            Stream::append(payload, number);
    });
}

template <typename T, typename Format, typename Stream>
void ValueNumeric<T, Format, Stream>::AddObjectStateStringForTransmission(std::string &out) const
{
    ValueNumeric::AddCommandForTransmission(ChangeCodeLimits, false, out);
    Base::AddObjectStateStringForTransmission(out);
}

extern template class VALUETREELIB_EXPORT ValueNumeric<int>;
extern template class VALUETREELIB_EXPORT ValueNumeric<qint64>;
extern template class VALUETREELIB_EXPORT ValueNumeric<double>;
} // namespace values
