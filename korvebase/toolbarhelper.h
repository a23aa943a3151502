#pragma once

#include "korvebase/korvebase_export.h"

#include <QString>

namespace KorveCommon
{

/// Words the errors that the actions of a toolbar report: replay, copying, history.
///
/// Thread: any.
class KORVEBASE_EXPORT ToolbarHelper
{
public:
    /// Which numbering an error belongs to.
    enum errorIdContext : int {
        ActionErrors = 0, ///< of requests to the manager, from 100 up
        RecordErrors = 1, ///< of a record's replay, history and copies, from 1 up, and 7000
    };

    virtual ~ToolbarHelper();
    static ToolbarHelper &Instance();

    /// "(100) " and the message, in the language that the application had when the first one was asked for. Where there
    /// is none, it says so.
    QString ErrorId2Text(unsigned int id, errorIdContext context);

private:
    ToolbarHelper() = default;
};

} // namespace KorveCommon
