#pragma once

#include "fuzz/support/require.h"
#include "tests/support/objectmodel/objectclass.h"

#include <QByteArray>

#include <memory>

/// An input taken apart: the class to read, an empty object of it, and the bytes.
struct ObjectBytes {
    const modeltest::ObjectClass &type;
    std::unique_ptr<REPORTGENERATOR::IRGObject> object;
    QByteArray bytes;

    static constexpr std::size_t headerSize = 2;

    ObjectBytes(const uint8_t *data, std::size_t size)
        : type(modeltest::objectClasses()[data[0] % modeltest::objectClasses().size()]), object(type.make()),
          bytes(reinterpret_cast<const char *>(data + headerSize), int(size - headerSize))
    {
        object->SetValidate(data[1] & 1);
    }
};
