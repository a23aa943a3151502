#pragma once

#include <QByteArray>
#include <QString>

#include <string>

namespace modeltest
{

// A form as lines "path = value", in the order in which the form has them. Readers know only the tables of the schema;
// what does not fit them becomes a line that says so. Values are words as in XML, whatever the form.

enum class Order { Table, Accessors };

/// What a form of a filled object must hold.
std::string expectedOutline(const QString &className, Order order);

std::string xmlOutline(const QString &className, const QString &document);
/// @p payload is what stands behind tag and length of the object's frame.
std::string taggedOutline(const QString &className, const QByteArray &payload);
std::string compactOutline(const QString &className, const QByteArray &bytes);

} // namespace modeltest
