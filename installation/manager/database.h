#pragma once

#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <functional>

namespace installation
{

/// An open SQLite file of the manager.
///
/// Thread: the one that makes it; blocks for the disk.  Errors: throws std::runtime_error that names file and reason.
class Database
{
public:
    explicit Database(const QString &path);
    ~Database();
    Database(const Database &) = delete;

    /// Runs @p statement with @p values in the places of its question marks.
    QSqlQuery run(const QString &statement, const QVariantList &values = {}) const;
    /// What @p statement selects, 0 for nothing.
    int number(const QString &statement) const;
    /// All that @p work does becomes valid together, or not at all.
    void together(const std::function<void()> &work) const;

    /// What marks a file as ours, and the statements that make a new one.
    struct Form {
        int applicationId;
        QStringList statements;
    };
    /// Makes folder and file if they are missing. A file for which @p read throws is traced, put aside as
    /// "NAME.refused", and begun anew.
    static void prepare(const QString &path, const Form &form, const std::function<void()> &read);

private:
    void close() const;

    const QString path;
    const QString name;
};

} // namespace installation
