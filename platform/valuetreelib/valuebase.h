#pragma once

#include "valuetreelib/bytecursor.h"
#include "valuetreelib/ivalue.h"
#include "valuetreelib/treeitem.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace values
{
class ICommandListOptimizer;

/// A leaf of the tree: a typed content with a state, observed and transmitted.
///
/// Setters with an equal content tell nobody. The originator of a change is not called back.
/// Thread: main; never blocks.
class VALUETREELIB_EXPORT ValueBase : public TreeItem, public IValue
{
public:
    class CommandOnValue;
    using CommandList = std::vector<std::unique_ptr<CommandOnValue>>;

    ValueBase();
    ValueBase(const ValueBase &) = delete;

    // contract: slot order, to the end of CreateNextCommand; derived classes continue with their typed operations
    ~ValueBase() override;
    void SetStringValue(QString text, IObserver *originator) override = 0;
    QString GetStringValue() const override = 0;
    TValueState GetState() const override;
    /// A code below 0 or above greatestState is traced and changes nothing.
    void SetState(TValueState state, IObserver *originator) override;
    /// Tells observers and mirrors of @p code although nothing need have changed.
    virtual void HasChanged(TChangeCode code, IObserver *originator);
    /// The content as one frame, see commandframe.h.
    virtual std::string GetCommandStringForTransmission() const;
    /// Applies frames in their order. False, with a trace, at the first that is malformed or not for this class.
    virtual bool SetCommandString(std::string_view frames, IObserver *originator);
    /// Applies one command, all or nothing; @p command may carry forcedCommandFlag. A content that is well-formed but
    /// refused, such as a key that cannot be selected, is traced and counts as applied.
    virtual bool SetCommandString(quint8 command, ByteCursor payload, IObserver *originator);
    virtual ValueType GetType() const = 0;
    virtual QString GetTypeName() const = 0;
    /// Takes over content and state without telling anybody. Throws std::bad_cast when @p other is of another class.
    virtual void Assign(const ValueBase &other) = 0;
    /// False when @p other is null or of another class.
    virtual bool Compare(const ValueBase *other) const = 0;
    virtual std::string GetCommandStringForRecording() const;
    /// For a class that paces its own changes; others ignore the pace.
    virtual void SetUpdateTimerTime(int intervalMs);
    virtual void OverrideTimer();
    virtual void KillOverrideTimer();
    /// Null: the commands of this class are not merged.
    virtual std::unique_ptr<ICommandListOptimizer> CreateCommandListOptimizer() const;
    virtual void OptimizeCommandList(CommandList &commands) const;
    virtual void OptimizeCommandList(CommandList &commands, ICommandListOptimizer &optimizer) const;
    /// A chance to complete @p commands before they are executed.
    virtual void PreWorkCommandList(CommandList &commands);
    /// Appends the frames that give a new value of this class content and state of this one.
    virtual void AddObjectStateStringForTransmission(std::string &out) const;
    virtual void AddObjectStateStringForRecording(std::string &out) const;
    /// Appends @p command as a frame.
    virtual void AddCommand(const CommandOnValue &command, std::string &out) const;
    /// Appends the frame that carries the change @p code as it is now; nothing, for a code without a command.
    virtual void AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const;
    /// Makes the object for a command that this class tells by objects. Null, when the command is unknown or malformed.
    virtual std::unique_ptr<CommandOnValue> CreateNextCommand(quint8 command, ByteCursor &payload,
                                                              IObserver *originator, unsigned flags);

    void StartTransaction(IObserver *originator) override;
    void EndTransaction(TChangeCode code, IObserver *originator) override;
    bool IsTransactionActive() const override;
    void setOptimized(bool on) override;
    bool isOptimized() const override;

    /// Before the value is added to a tree; afterwards it is traced and changes nothing.
    void SetName(const QString &newName, IObserver *originator);
    /// As HasChanged(). Within a transaction the notification is held back, except ChangeCodeDeleted.
    void NotifyObservers(TChangeCode code, IObserver *originator);
    /// Whether somebody wants to hear of commands: the value stands below the path of a listener.
    bool Record() const;
    void RecordCommand(const CommandOnValue &command);

    /// Equal states; derived classes compare their content too.
    bool operator==(const ValueBase &other) const { return GetState() == other.GetState(); }

protected:
    ValueBase &operator=(const ValueBase &other);
    /// To be called after each change of what is stored.
    void changed(TChangeCode code, IObserver *originator) { notify(code, originator, false); }
    /// Traces that @p command is malformed or not for this class; false.
    bool refuseCommand(quint8 command) const;
    /// Traces why a setter changes nothing.
    void refuseContent(const QString &content) const;

private:
    void notify(TChangeCode code, IObserver *originator, bool forced);
    void hold(TChangeCode code, bool forced);
    void tellListeners(TChangeCode code, IObserver *originator, bool forced);
    void tellListenersOfHeld(unsigned held, TChangeCode endCode, IObserver *originator);
    bool applyState(ByteCursor payload, bool forced, IObserver *originator);
};
} // namespace values
