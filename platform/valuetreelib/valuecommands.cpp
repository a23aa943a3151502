// The command strings of ValueBase.
#include "coresupport/trace.h"
#include "valuetreelib/commandframe.h"
#include "valuetreelib/commandonvalue.h"
#include "valuetreelib/icommandlistoptimizer.h"
#include "valuetreelib/itemguard.h"

namespace values
{
namespace
{
constexpr char sourceName[] = "valuetreelib/valuecommands";

constexpr quint8 withoutFlag(quint8 command)
{
    return command & static_cast<quint8>(~forcedCommandFlag);
}
} // namespace

std::string ValueBase::GetCommandStringForTransmission() const
{
    std::string out;
    AddCommandForTransmission(ChangeCodeValue, false, out);
    return out;
}

std::string ValueBase::GetCommandStringForRecording() const
{
    return GetCommandStringForTransmission();
}

bool ValueBase::SetCommandString(std::string_view frames, IObserver *originator)
{
    ByteCursor in{frames.data(), frames.data() + frames.size()};
    std::optional<CommandFrame> frame = nextFrame(in);
    if (frame && in.isAtEnd()) // as nearly always: nothing to guard against
        return SetCommandString(frame->command, frame->payload, originator);

    // Nobody can end a value that nobody has seen yet, as those of a snapshot are.
    std::optional<ItemGuard> guard;
    if (parentNode || hasObservers())
        guard.emplace(*this);
    for (; frame; frame = nextFrame(in)) {
        if (!SetCommandString(frame->command, frame->payload, originator))
            return false;
        if (in.isAtEnd() || (guard && !guard->isAlive()))
            return true;
    }
    if (frames.empty())
        return true;
    traceAt(TraceLevel::Normal, sourceName, [this] { return path + QStringLiteral(": incomplete command frame"); });
    return false;
}

bool ValueBase::SetCommandString(quint8 command, ByteCursor payload, IObserver *originator)
{
    const quint8 id = withoutFlag(command);
    const bool forced = command & forcedCommandFlag;
    if (id == SetStateCommand)
        return applyState(payload, forced, originator) || refuseCommand(command);
    const std::unique_ptr<CommandOnValue> object =
        CreateNextCommand(id, payload, originator, forced ? forcedCommandFlag : 0);
    if (object && payload.isAtEnd()) {
        object->Execute();
        return true;
    }
    if (object || id < firstSkippableCommand)
        return refuseCommand(command);
    traceAt(TraceLevel::Debug, sourceName,
            [&] { return QStringLiteral("%1: command %2 skipped").arg(path, QString::number(id)); });
    return true;
}

bool ValueBase::applyState(ByteCursor payload, bool forced, IObserver *originator)
{
    const char *const byte = payload.take(1);
    // That a value is deleted is never told by its state.
    if (!byte || !payload.isAtEnd() || *byte < ValueStateValid || *byte > greatestState || *byte == ValueStateDeleted)
        return false;
    const auto state = static_cast<TValueState>(*byte);
    if (forced && state == GetState())
        NotifyObservers(ChangeCodeState, originator);
    else
        SetState(state, originator);
    return true;
}

bool ValueBase::refuseCommand(quint8 command) const
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 (%2): command %3 is malformed or of another class")
            .arg(path, GetTypeName(), QString::number(withoutFlag(command)));
    });
    return false;
}

void ValueBase::refuseContent(const QString &content) const
{
    traceAt(TraceLevel::Normal, sourceName, [&] {
        return QStringLiteral("%1 (%2) does not take \"%3\"").arg(path, GetTypeName(), content);
    });
}

void ValueBase::AddCommandForTransmission(TChangeCode code, bool forced, std::string &out) const
{
    if (code != ChangeCodeState || GetState() == ValueStateDeleted)
        return;
    appendFrame(out, SetStateCommand | (forced ? forcedCommandFlag : 0),
                [this](std::string &payload) { payload.push_back(static_cast<char>(GetState())); });
}

void ValueBase::AddObjectStateStringForTransmission(std::string &out) const
{
    AddCommandForTransmission(ChangeCodeState, false, out);
}

void ValueBase::AddObjectStateStringForRecording(std::string &out) const
{
    AddObjectStateStringForTransmission(out);
}

void ValueBase::AddCommand(const CommandOnValue &command, std::string &out) const
{
    const std::size_t start = out.size();
    out.push_back('\0');
    command.AddCommandString(out);
    closeFrame(out, start);
}

std::unique_ptr<ValueBase::CommandOnValue> ValueBase::CreateNextCommand(quint8, ByteCursor &, IObserver *, unsigned)
{
    return nullptr;
}

std::unique_ptr<ICommandListOptimizer> ValueBase::CreateCommandListOptimizer() const
{
    return nullptr;
}

void ValueBase::OptimizeCommandList(CommandList &commands) const
{
    if (const std::unique_ptr<ICommandListOptimizer> optimizer = CreateCommandListOptimizer())
        OptimizeCommandList(commands, *optimizer);
}

void ValueBase::OptimizeCommandList(CommandList &commands, ICommandListOptimizer &optimizer) const
{
    optimizer.optimize(commands);
}

void ValueBase::PreWorkCommandList(CommandList &)
{
}

void ValueBase::SetUpdateTimerTime(int)
{
}

void ValueBase::OverrideTimer()
{
}

void ValueBase::KillOverrideTimer()
{
}
} // namespace values
