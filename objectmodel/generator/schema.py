"""Reads schema files into plain facts and refuses what cannot be right, naming file and line."""

import re
import shlex
from dataclasses import dataclass, field

SCALARS = ("text", "bool", "int32", "uint32", "int64", "uint64", "double", "datetime")
NUMBERS = ("int32", "uint32", "int64", "uint64", "double")
LIST_ITEMS = ("text", "int32")
OCCURRENCES = ("required", "optional", "list", "choice")
MOST_MEMBERS = 64


class SchemaError(Exception):
    def __init__(self, place, message):
        super().__init__(f"{place[0]}:{place[1]}: {message}")


@dataclass
class Enumeration:
    names: list
    place: tuple
    literals: list = field(default_factory=list)


@dataclass
class Member:
    name: str
    type: str
    occurs: str
    tag: int
    place: tuple
    attribute: bool = False
    data: bool = False
    refuse_empty: bool = False
    must_have_data: bool = False
    default: str = None
    range: tuple = None
    minimum: int = None

    @property
    def is_list(self):
        return self.occurs == "list"


@dataclass
class Class:
    name: str
    identifier: int
    place: tuple
    doc: str = ""
    choice: str = None
    version: str = None
    version_tag: int = None
    strict: bool = False
    members: list = field(default_factory=list)

    @property
    def by_accessor(self):
        """Members in the order of the accessors: attributes stand last."""
        return [m for m in self.members if not m.attribute] + [m for m in self.members if m.attribute]


@dataclass
class Schema:
    enumerations: dict = field(default_factory=dict)
    classes: dict = field(default_factory=dict)

    def is_enumeration(self, member):
        return member.type in self.enumerations

    def is_object(self, member):
        return member.type in self.classes


def load(paths):
    schema = Schema()
    for path in paths:
        with open(path, encoding="utf-8") as lines:
            _read(schema, path, lines)
    _check(schema)
    return schema


def _read(schema, path, lines):
    current = None
    for number, line in enumerate(lines, 1):
        place = (path, number)
        if not line.strip() or line.startswith("#"):
            continue
        try:
            words = shlex.split(line)
        except ValueError as error:
            raise SchemaError(place, f"cannot be split into words: {error}") from error
        if not line[0].isspace():
            current = _open(schema, words, place)
        elif isinstance(current, Enumeration):
            _add_literal(current, words, place)
        elif isinstance(current, Class):
            _add_to_class(current, line.strip(), words, place)
        else:
            raise SchemaError(place, "stands in no class or enumeration")


def _open(schema, words, place):
    if words[0] == "enum" and len(words) > 1:
        enumeration = Enumeration(words[1:], place)
        for name in enumeration.names:
            _claim(schema, name, place)
            schema.enumerations[name] = enumeration
        return enumeration
    if words[0] == "class" and len(words) > 2:
        _claim(schema, words[1], place)
        opened = Class(words[1], _hexadecimal(words[2], place), place)
        for option in words[3:]:
            _set_class_option(opened, option, place)
        schema.classes[opened.name] = opened
        return opened
    raise SchemaError(place, f"neither 'class NAME IDENTIFIER' nor 'enum NAME': {' '.join(words)}")


def _claim(schema, name, place):
    if not re.fullmatch(r"[A-Za-z]\w*", name):
        raise SchemaError(place, f"'{name}' is no name")
    if name in schema.classes or name in schema.enumerations:
        raise SchemaError(place, f"'{name}' is there already")


def _set_class_option(opened, option, place):
    key, _, value = option.partition("=")
    if key == "choice" and value:
        opened.choice = value
    elif key == "version" and value:
        opened.version = value
    elif key == "version-tag":
        opened.version_tag = _hexadecimal(value, place)
    elif option == "strict":
        opened.strict = True
    else:
        raise SchemaError(place, f"unknown option '{option}' of a class")


def _add_literal(enumeration, words, place):
    if len(words) != 1 or not words[0].isascii():
        raise SchemaError(place, "a line of an enumeration is one ASCII literal in quotes")
    if words[0] in enumeration.literals:
        raise SchemaError(place, f"literal '{words[0]}' stands twice")
    enumeration.literals.append(words[0])


def _add_to_class(current, line, words, place):
    if line.startswith('"'):
        current.doc = words[0]
        return
    if len(words) < 4:
        raise SchemaError(place, "a member is NAME TYPE OCCURS TAG [OPTION...]")
    name, kind, occurs, tag = words[:4]
    if not re.fullmatch(r"[A-Za-z]\w*", name):
        raise SchemaError(place, f"'{name}' is no name")
    if any(m.name == name for m in current.members):
        raise SchemaError(place, f"member '{name}' is there already")
    if occurs not in OCCURRENCES:
        raise SchemaError(place, f"'{occurs}' is none of {', '.join(OCCURRENCES)}")
    member = Member(name, kind, occurs, _hexadecimal(tag, place), place)
    for option in words[4:]:
        _set_option(member, option)
    if member.attribute and any(not m.attribute for m in current.members):
        raise SchemaError(place, "attributes stand before all other members")
    current.members.append(member)


def _set_option(member, option):
    key, _, value = option.partition("=")
    flag = option.replace("-", "_")
    if flag in ("attribute", "data", "refuse_empty", "must_have_data"):
        setattr(member, flag, True)
    elif key == "default" and value:
        member.default = value
    elif key == "range" and re.fullmatch(r"-?\d+\.\.-?\d+", value):
        member.range = tuple(int(bound) for bound in value.split(".."))
    elif key == "minimum" and re.fullmatch(r"-?\d+", value):
        member.minimum = int(value)
    else:
        raise SchemaError(member.place, f"unknown option '{option}'")


def _hexadecimal(text, place):
    if not re.fullmatch(r"0x[0-9a-f]{8}", text):
        raise SchemaError(place, f"'{text}' is not of the form 0x01234567")
    return int(text, 16)


def _check(schema):
    tags = {}
    for enumeration in schema.enumerations.values():
        if not 0 < len(enumeration.literals) < 128:
            raise SchemaError(enumeration.place, "an enumeration has 1 to 127 literals")
    for checked in schema.classes.values():
        _check_class(schema, checked)
        for member in checked.members:
            _check_member(schema, member)
            _check_tag(tags, member)
    for checked in schema.classes.values():
        _check_nesting(schema, checked, [])


def _check_class(schema, checked):
    alternatives = [m.name for m in checked.members if m.occurs == "choice"]
    if not checked.doc:
        raise SchemaError(checked.place, "does not say in quotes what the class is for")
    if not 0 < len(checked.members) <= MOST_MEMBERS:
        raise SchemaError(checked.place, f"a class has 1 to {MOST_MEMBERS} members")
    if (checked.version is None) != (checked.version_tag is None):
        raise SchemaError(checked.place, "version and version-tag go together")
    if checked.choice and checked.choice not in schema.enumerations:
        raise SchemaError(checked.place, f"unknown enumeration '{checked.choice}'")
    if alternatives != (schema.enumerations[checked.choice].literals if checked.choice else []):
        raise SchemaError(checked.place, "the alternatives are not the literals of the choice, in their order")
    if len({m.tag for m in checked.members}) != len(checked.members):
        raise SchemaError(checked.place, "two members have one tag")


def _check_member(schema, member):
    is_object, is_enumeration = schema.is_object(member), schema.is_enumeration(member)

    def refuse_if(condition, message):
        if condition:
            raise SchemaError(member.place, message)

    refuse_if(not (is_object or is_enumeration or member.type in SCALARS), f"unknown type '{member.type}'")
    refuse_if(member.is_list and member.type in SCALARS and member.type not in LIST_ITEMS,
              f"there are no lists of {member.type}")
    refuse_if(member.occurs == "choice" and not is_object and member.type != "text",
              "an alternative is a text or an object")
    refuse_if(member.type == "bool" and member.occurs == "required", "a bool is optional: it is never tested")
    refuse_if(member.attribute and (is_object or member.is_list), "an attribute is a single plain value")
    refuse_if(is_object and not member.is_list and member.name != member.type,
              "an object is named after its class, which is its element")
    refuse_if(is_object and member.is_list and member.name != member.type,
              "a list of objects is named after their class, which is their element")
    refuse_if(is_enumeration and member.name != member.type, "an enumeration is named after its member")
    refuse_if(member.refuse_empty and member.type != "bool", "refuse-empty is for bool")
    refuse_if(member.must_have_data and not is_object, "must-have-data is for objects")
    refuse_if((member.range or member.minimum is not None) and member.type not in ("int32", "uint32"),
              "limits are for int32 and uint32")
    refuse_if(member.range and member.range[0] > member.range[1], "the range is empty")
    refuse_if(member.default is not None and not _is_default(schema, member), f"'{member.default}' is no default here")


def _is_default(schema, member):
    if member.is_list or member.type in ("text", "datetime") or schema.is_object(member):
        return False
    if member.type == "bool":
        return member.default in ("true", "false")
    if schema.is_enumeration(member):
        return member.default in schema.enumerations[member.type].literals
    return re.fullmatch(r"-?\d+", member.default) is not None


def _check_tag(tags, member):
    """A tag belongs to the element's name and type, in all classes alike."""
    key = (member.name, member.type)
    first = tags.setdefault(key, member)
    if first.tag != member.tag:
        raise SchemaError(member.place, f"tag differs from that of {member.name} in {first.place[0]}:{first.place[1]}")


def _check_nesting(schema, checked, path):
    if checked.name in path:
        raise SchemaError(checked.place, f"contains itself: {' > '.join(path + [checked.name])}")
    for member in checked.members:
        if schema.is_object(member):
            _check_nesting(schema, schema.classes[member.type], path + [checked.name])
