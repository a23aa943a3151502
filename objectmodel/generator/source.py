"""Writes the source of a class: its record, the table of its members, and accessors that forward to the engine."""

import names
from header import BANNER


def source(schema, described):
    name = described.name
    parts = [BANNER, f'#include "objectmodel/{names.file_stem(name)}.h"\n\n',
             '#include "objectmodel/engine/generated.h"\n\n', "namespace KORVE_XML\n{\n\n", "namespace\n{\n\n"]
    parts += [_literals(schema, enumeration) for enumeration in names.enumerations_of(schema, described)]
    parts += [_record(schema, described), "} // namespace\n\n", _type(schema, described), _helpers(name)]
    parts += [_constructors(name), _assignments(name), _identity(described), _content(name)]
    for bit, member in enumerate(described.by_accessor):
        parts.append(_accessors(schema, described, member, bit))
    parts += [_enumeration_functions(name, e) for e in names.enumerations_of(schema, described)]
    if described.choice:
        parts.append(_choice(name, described.choice))
    if described.version:
        parts.append(_version(described))
    parts += [_common(name), "} // namespace KORVE_XML\n"]
    return "".join(parts)


def _literals(schema, enumeration):
    literals, variable = names.literals_name(enumeration), names.enumeration_variable(enumeration)
    listed = "".join(f'    "{text}",\n' for text in schema.enumerations[enumeration].literals)
    return (f"constexpr std::string_view {literals}[] = {{\n{listed}}};\n"
            f"constexpr engine::Enumeration {variable}({literals}, &engine::namesOf<{literals}>);\n\n")


def _record(schema, described):
    name = described.name
    fields = ["    QString loadedVersion;\n"] if described.version else []
    fields += [f"    {_field_type(name, schema, m)} {names.field_name(m)}{_initial(schema, name, m)};\n"
               for m in described.by_accessor]
    return (f"class {name}Record final : public engine::Record\n{{\npublic:\n"
            f"    Record *clone() const override {{ return new {name}Record(*this); }}\n\n{''.join(fields)}}};\n\n")


def _field_type(class_name, schema, member):
    item = names.item_type(member)
    if schema.is_enumeration(member):
        item = f"{class_name}::{item}"
    return f"QVector<{item}>" if member.is_list else item


def _initial(schema, class_name, member):
    if member.is_list or schema.is_object(member) or member.type in ("text", "datetime"):
        return ""
    if schema.is_enumeration(member):
        return f" = {class_name}::{member.type}({_default_number(schema, member)})"
    if member.type == "bool":
        return f" = {member.default or 'false'}"
    return f" = {member.default or '0'}"


def _default_number(schema, member):
    if schema.is_enumeration(member):
        return schema.enumerations[member.type].literals.index(member.default) if member.default else -1
    return {"true": 1, "false": 0, None: 0}.get(member.default, member.default)


def _type(schema, described):
    name = described.name
    nested = sorted({m.type for m in described.members if schema.is_object(m)})
    declared = "".join(f"template <> const TypeInfo &typeOf<{n}>();\n" for n in nested)
    members = "".join(_member(schema, described, m) for m in described.by_accessor)
    return f"""namespace engine
{{

{declared}template <> const TypeInfo &typeOf<{name}>();

template <> const TypeInfo &typeOf<{name}>()
{{
{_version_fact(described)}    static const TypeInfo type({{
        .name = {name}::GetStaticObjectName(),
        .create = &createRecord<{name}Record>,
        .handle = &Access::handle<{name}>,
        .members = {{
{members}        }},{_rare_facts(described)}
    }});
    return type;
}}

}} // namespace engine

"""


def _version_fact(described):
    if not described.version:
        return ""
    return (f'    static const VersionInfo version{{QStringLiteral("{described.version}"), '
            f"{described.version_tag:#010x}, [](Record &record) -> QString & {{ "
            f"return static_cast<{described.name}Record &>(record).loadedVersion; }}}};\n")


def _rare_facts(described):
    """What few classes have besides members."""
    facts = ""
    if described.choice:
        facts += (f'\n        .choiceName = QStringLiteral("{described.choice}"),'
                  f"\n        .choice = &{names.enumeration_variable(described.choice)},")
    if described.version:
        facts += "\n        .version = &version,"
    if described.strict:
        facts += "\n        .refusesUnknownElements = true,"
    return facts


def _member(schema, described, member):
    record = f"{described.name}Record"
    traits = " | ".join(_traits(member)) or "0"
    facts = [f'.name = QStringLiteral("{member.name}")', f".kind = Kind::{names.kind(schema, member)}",
             f".traits = {traits}", f".tag = {member.tag:#010x}",
             f".fieldOf = &fieldOf<{record}, &{record}::{names.field_name(member)}>"]
    facts += _number_facts(schema, member) + _type_facts(schema, described, member)
    if member.occurs == "choice":
        facts.append(f".alternative = {schema.enumerations[described.choice].literals.index(member.name)}")
    return "            {" + ",\n             ".join(facts) + "},\n"


def _number_facts(schema, member):
    facts = []
    default = _default_number(schema, member)
    if default != 0 and not member.is_list and not schema.is_object(member):
        facts.append(f".defaultValue = {default}")
    if member.range:
        facts += [".limit = Limit::Range", f".lowest = {member.range[0]}", f".highest = {member.range[1]}"]
    if member.minimum is not None:
        facts += [".limit = Limit::Minimum", f".lowest = {member.minimum}",
                  ".highest = std::numeric_limits<qint64>::max()"]
    return facts


def _type_facts(schema, described, member):
    facts = []
    if schema.is_enumeration(member):
        facts.append(f".enumeration = &{names.enumeration_variable(member.type)}")
    if schema.is_object(member):
        facts.append(f".object = &objectAccess<{member.type}>")
    if member.is_list:
        scope = described.name + "::" if schema.is_enumeration(member) else ""
        facts.append(f".list = &listAccess<{scope}{names.item_type(member)}>")
    return facts


def _traits(member):
    return [trait for trait, holds in (
        ("Mandatory", member.occurs == "required"), ("CountsAsData", member.data), ("Attribute", member.attribute),
        ("RefusesEmptyText", member.refuse_empty), ("MustHaveData", member.must_have_data),
        ("Alternative", member.occurs == "choice")) if holds]


def _helpers(name):
    return f"""namespace
{{

engine::Self self(const {name} &object)
{{
    return engine::selfOf(object);
}}

{name}Record &record(const {name} &object)
{{
    return static_cast<{name}Record &>(engine::recordOf(self(object)));
}}

const engine::MemberInfo &member(int bit)
{{
    return engine::typeOf<{name}>().facts.members[std::size_t(bit)];
}}

}} // namespace

"""


def _constructors(c):
    return f"""{c}::{c}()
{{
    identify();
}}

{c}::{c}(const {c} &other) : IRGObject(other.IRGObject::GetObjectType()), d(other.d)
{{
    identify();
    // Only the flag of this object: to hand it down would detach what has just been shared.
    IRGObject::SetValidate(other.IRGObject::GetValidate());
}}

{c}::{c}({c} &&other) noexcept : IRGObject(other.IRGObject::GetObjectType()), d(std::move(other.d))
{{
    identify();
    IRGObject::SetValidate(other.IRGObject::GetValidate());
}}

"""


def _assignments(c):
    return (_function(f"{c} &", c, f"operator=(const {c} &other)", "d = other.d;\n    return *this;")
            + _function(f"{c} &", c, f"operator=({c} &&other) noexcept", "d = std::move(other.d);\n    return *this;")
            + f"{c}::~{c}() = default;\n\n")


def _identity(described):
    c = described.name
    return (_function("void", c, "identify()",
                      "IRGObject::SetObjectName(GetStaticObjectName());\n    SetObjectId(GetId());")
            + _function("const QString &", c, "GetStaticObjectName()",
                        f'static const QString name = QStringLiteral("{c}");\n    return name;')
            + _function("qint64", c, "GetId()", f"return {described.identifier:#010x};"))


def _content(c):
    return (_function("bool", c, f"operator==(const {c} &other) const",
                      "return engine::equal(self(*this), self(other));")
            + _function("bool", c, "AnyData() const", "return engine::anyData(self(*this));")
            + _function("void", c, "ResetToDefault()", "engine::resetToDefault(self(*this), *this);"))


def _function(result, name, signature, body):
    space = "" if result.endswith("&") else " "
    return f"{result}{space}{name}::{signature}\n{{\n    {body}\n}}\n\n"


def _accessors(schema, described, member, bit):
    c = described.name
    whole = member.is_list or schema.is_object(member)
    return (_presence(c, member.name, bit) + ("" if whole else _default_getter(schema, c, member))
            + _validity(schema, c, member, bit) + _getters(schema, c, member, whole, bit)
            + _setters(schema, c, member, whole, bit) + _enumeration_getters(schema, c, member))


def _presence(c, m, bit):
    return (_function("bool", c, f"Is{m}Set() const", f"return engine::isSet(d, {bit});")
            + _function("void", c, f"Reset{m}()", f"engine::resetMember(self(*this), {bit});"))


def _default_getter(schema, c, member):
    constant = "const " if member.type in ("text", "datetime") else ""
    return _function(constant + _field_type(c, schema, member), c, f"GetDefault{member.name}() const",
                     f"return {_default(schema, member)};")


def _validity(schema, c, member, bit):
    # A list is asked for an item, and for all items; a bool is never asked.
    types = [names.item_type(member)] if member.is_list else []
    types += [] if member.type == "bool" else [names.value_type(member)]
    return "".join(_function("bool", c, f"IsValid{member.name}({names.parameter(schema, member, each)}) const",
                             f"return engine::isValid(member({bit}), value);") for each in types)


def _setters(schema, c, member, whole, bit):
    m, assign = member.name, "assignWhole" if whole else "assign"
    text = _function("void", c, f"Set{m}({names.parameter(schema, member, names.value_type(member))})",
                     f"engine::{assign}({{*this, record(*this)}}, member({bit}), value);")
    if member.is_list:
        appended = names.parameter(schema, member, names.item_type(member), "item")
        text += _function("void", c, f"Append{m}({appended})",
                          f"engine::append({{*this, record(*this)}}, member({bit}), item);")
    return text


def _enumeration_getters(schema, c, member):
    if member.is_list or not schema.is_enumeration(member):
        return ""
    return (_function(_field_type(c, schema, member), c, f"GetInvalid{member.name}() const",
                      f"return {member.type}(-1);")
            + _function("QString", c, f"Get{member.name}AsString() const",
                        f"return {member.type}ToName(record(*this).{names.field_name(member)});"))


def _default(schema, member):
    if member.type in ("text", "datetime"):
        return "{}"
    if schema.is_enumeration(member):
        return f"{member.type}({_default_number(schema, member)})"
    return member.default or ("false" if member.type == "bool" else "0")


def _getters(schema, c, member, whole, bit):
    field, m, value = names.field_name(member), member.name, _field_type(c, schema, member)
    if whole:
        return (_function(f"const {value} &", c, f"Get{m}() const", f"return record(*this).{field};")
                + _function(f"{value} &", c, f"Get{m}()",
                            f"record(*this).bits.set({bit});\n    return record(*this).{field};"))
    result = f"const {value} &" if schema.is_enumeration(member) else value
    return _function(result, c, f"Get{m}() const", f"return record(*this).{field};")


def _enumeration_functions(c, e):
    variable = names.enumeration_variable(e)
    return (_function("QString", c, f"{e}ToName(const {e} &value) const", f"return {variable}.toName(value);")
            + _function(f"{c}::{e}", c, f"NameTo{e}(const QString &name) const",
                        f"return {e}({variable}.toValue(QStringView(name)));")
            # contract: an "s" is added, whatever the name ends in
            + _function("QStringList", c, f"Get{e}s()", f"return {variable}.names();")
            + _function("QStringList", c, f"GetGUI{e}s()",
                        f"return engine::translated({variable}, [](const char *text) {{ return tr(text); }});"))


def _choice(c, e):
    variable = names.enumeration_variable(e)
    return (_function(f"{c}::{e}", c, f"Get{e}() const", f"return {e}(record(*this).choice);")
            + _function("bool", c, f"IsValid{e}(const {e} &value) const", f"return {variable}.contains(value);")
            + _function("void", c, f"Reset{e}()", "record(*this).choice = -1;")
            + _function("void", c, f"InitChoice(const {e} &value)", "engine::initChoice(self(*this), *this, value);"))


def _version(described):
    c = described.name
    return (_function("const QString &", c, "GetVersion() const",
                      f"return engine::typeOf<{c}>().facts.version->current;")
            + _function("QString", c, "GetInitialVersionLoaded() const", "return record(*this).loadedVersion;"))


def _common(c):
    rows = (
        ("bool", "HasData() const", "return engine::hasData(self(*this));"),
        ("void", "Reset()", "engine::reset(self(*this));"),
        ("void", "Check(bool) const", "engine::check(self(*this));"),
        ("void", "Check() const", "Check(false);"),
        ("void", "GetXml(QXmlStreamWriter &writer) const", "engine::writeXml(self(*this), writer);"),
        ("bool", "GetBinary(QDataStream &out, int id, bool writeId) const",
         "return engine::writeTagged(self(*this), out, id, writeId);"),
        ("void", "SetBinary(QDataStream &in, int length)", "engine::readTagged(self(*this), *this, in, length);"),
        ("void", "ProcessXml(QXmlStreamReader &reader)",
         "engine::readXmlAttributes(self(*this), *this, reader);\n    IRGObject::ProcessXml(reader);"),
        ("void", "ProcessXmlStartElement(QXmlStreamReader &reader)", "engine::readXmlElement(self(*this), reader);"),
        ("void", "SetValidate(bool validate) const",
         "IRGObject::SetValidate(validate);\n    engine::pushValidate(self(*this), validate);"),
        ("void", "SetLogger(std::shared_ptr<REPORTGENERATOR::Logger> logger) const",
         "IRGObject::SetLogger(logger);\n    engine::pushLogger(self(*this), logger);"),
        ("void", "GetVersionSpecificBinaryWithoutValidation(QDataStream &out) const",
         "engine::writeCompact(self(*this), out);"),
        ("void", "SetVersionSpecificBinaryWithoutValidation(QDataStream &in)",
         "engine::readCompact(self(*this), *this, in);"),
    )
    text = "".join(_function(result, c, signature, body) for result, signature, body in rows)
    return text + f"void {c}::SetObjectType(REPORTGENERATOR::ObjectTypes) {{}}\n\n"
