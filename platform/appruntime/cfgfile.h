#pragma once

#include "appruntime/appruntime_export.h"

#include <QString>

#include <memory>
#include <stdexcept>

class QSettings;

/// A configuration file cannot be read or written; the text names file and reason.
class APPRUNTIME_EXPORT CfgError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// One group of an INI file in UTF-8.
///
/// A text with a comma, semicolon, quotation mark or backslash stands in quotation marks, each backslash doubled:
/// `DefaultArchive="\\\\store\\korve"`. Texts that setText() wrote are so already.
class APPRUNTIME_EXPORT CfgFile
{
public:
    /// Throws CfgError when @p path is something else than a readable INI file. It may be missing.
    CfgFile(const QString &path, const QString &group);
    ~CfgFile();

    /// Changes reach the file with save().
    void setText(const QString &key, const QString &text);
    void setFlag(const QString &key, bool flag);
    /// Throws CfgError when the file cannot be written. Its comments are lost.
    void save();

    /// Bare commas make a list of a text: it is joined again by ", ", and traced. @p defaultText if the key is missing.
    QString text(const QString &key, const QString &defaultText) const;
    /// Understands true, false, 1, 0, yes, no in any case; anything else is traced and counts as missing.
    bool flag(const QString &key, bool defaultFlag) const;

private:
    void checkStatus(const char *failure) const;

    const QString path;
    const std::unique_ptr<QSettings> settings;
};
