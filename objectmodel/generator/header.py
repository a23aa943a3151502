"""Writes the header of a class."""

import names

BANNER = "// Made from objectmodel/schema when the library is built; changes here are lost.\n"


def header(schema, described):
    parts = [BANNER, "#pragma once\n\n", _includes(schema, described), "\nnamespace KORVE_XML\n{\n\n",
             "namespace engine\n{\nclass Record;\nstruct Access;\n}\n\n",
             f"/// {described.doc}\n",
             f"class OBJECTMODEL_EXPORT {described.name} : public REPORTGENERATOR::IRGObject\n{{\n"]
    enumerations = names.enumerators(schema, described)
    if enumerations:
        parts.append(f"    Q_DECLARE_TR_FUNCTIONS(KORVE_XML::{described.name})\n\n")
    parts.append("public:\n")
    parts += [_enumeration(name, words) for name, words in enumerations.items()]
    parts.append(_construction(described))
    for member in described.by_accessor:
        parts.append(_accessors(schema, member))
    parts += [_enumeration_functions(name) for name in enumerations]
    if described.choice:
        parts.append(_choice(described.choice))
    parts += [_common(described), _hidden()]
    parts.append("};\n\n} // namespace KORVE_XML\n\n")
    parts.append(f"Q_DECLARE_TYPEINFO(KORVE_XML::{described.name}, Q_MOVABLE_TYPE);\n")
    return "".join(parts)


def _includes(schema, described):
    nested = sorted({m.type for m in described.members if schema.is_object(m)})
    lines = ['#include "objectmodel/objectmodel_export.h"\n']
    lines += [f'#include "objectmodel/{names.file_stem(name)}.h"\n' for name in nested]
    lines.append('\n#include "objectbase/irgobject.h"\n\n')
    if names.enumerations_of(schema, described):
        lines.append("#include <QCoreApplication>\n")
    if any(m.type == "datetime" for m in described.members):
        lines.append("#include <QDateTime>\n")
    lines += [f"#include <{name}>\n" for name in ("QExplicitlySharedDataPointer", "QString", "QStringList", "QVector")]
    return "".join(lines)


def _enumeration(name, words):
    listed = "".join(f"        {word} = {number},\n" for number, word in enumerate(words))
    return f"    enum {name} : signed char {{\n{listed}    }};\n\n"


def _construction(described):
    name = described.name
    return f"""    {name}();
    {name}(const {name} &other);
    {name}({name} &&other) noexcept;
    {name} &operator=(const {name} &other);
    {name} &operator=({name} &&other) noexcept;
    ~{name}() override;

    static const QString &GetStaticObjectName();
    static qint64 GetId();

    bool operator==(const {name} &other) const;
    bool operator!=(const {name} &other) const {{ return !(*this == other); }}
    bool IsInitialized() const {{ return d; }}
    bool AnyData() const;
    void ResetToDefault();

"""


def _accessors(schema, member):
    m, value, item = member.name, names.value_type(member), names.item_type(member)
    whole = member.is_list or schema.is_object(member)
    lines = [f"bool Is{m}Set() const;", f"void Reset{m}();"]
    if not whole:
        constant = "const " if value in ("QString", "QDateTime") else ""
        lines.append(f"{constant}{value} GetDefault{m}() const;")
    if member.is_list:
        lines.append(f"bool IsValid{m}({names.parameter(schema, member, item)}) const;")
    if member.type != "bool":
        lines.append(f"bool IsValid{m}({names.parameter(schema, member, value)}) const;")
    lines += _getters(schema, member, value, whole)
    lines.append(f"void Set{m}({names.parameter(schema, member, value)});")
    if member.is_list:
        lines.append(f"void Append{m}({names.parameter(schema, member, item, 'item')});")
    if schema.is_enumeration(member) and not member.is_list:
        lines += [f"{value} GetInvalid{m}() const;", f"QString Get{m}AsString() const;"]
    return "".join(f"    {line}\n" for line in lines) + "\n"


def _getters(schema, member, value, whole):
    m = member.name
    if whole:
        return [f"const {value} &Get{m}() const;", f"{value} &Get{m}();"]
    if schema.is_enumeration(member):
        return [f"const {value} &Get{m}() const;"]
    return [f"{value} Get{m}() const;"]


def _enumeration_functions(name):
    return f"""    QString {name}ToName(const {name} &value) const;
    {name} NameTo{name}(const QString &name) const;
    static QStringList Get{name}s();
    static QStringList GetGUI{name}s();

"""


def _choice(name):
    return f"""    {name} Get{name}() const;
    bool IsValid{name}(const {name} &value) const;
    void Reset{name}();
    void InitChoice(const {name} &value);

"""


def _common(described):
    version = ""
    if described.version:
        version = "    const QString &GetVersion() const override;\n    QString GetInitialVersionLoaded() const;\n\n"
    return f"""{version}    bool HasData() const override;
    void Reset() override;
    void Check(bool argument) const override;
    void Check() const override;
    void GetXml(QXmlStreamWriter &writer) const override;
    bool GetBinary(QDataStream &out, int id, bool writeId) const override;
    void SetBinary(QDataStream &in, int length) override;
    void ProcessXml(QXmlStreamReader &reader) override;
    void SetValidate(bool validate) const override;
    void SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const override;
    void SetObjectType(REPORTGENERATOR::ObjectTypes type) override;
    void GetVersionSpecificBinaryWithoutValidation(QDataStream &out) const;
    void SetVersionSpecificBinaryWithoutValidation(QDataStream &in);

"""


def _hidden():
    return """protected:
    void ProcessXmlStartElement(QXmlStreamReader &reader) override;

private:
    friend struct engine::Access;
    void identify();

    mutable QExplicitlySharedDataPointer<engine::Record> d;
"""
