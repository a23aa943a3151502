"""C++ names and types of what the schema says."""

import re

CPP_KEYWORDS = frozenset("""
alignas alignof and asm auto bool break case catch char class const continue default delete do double else
enum explicit export extern false float for friend goto if inline int long mutable namespace new not operator
or private protected public register return short signed sizeof static struct switch template this throw true
try typedef union unsigned using virtual void volatile while xor""".split())

SCALAR_TYPES = {
    "text": "QString", "bool": "bool", "int32": "qint32", "uint32": "quint32", "int64": "qint64", "uint64": "quint64",
    "double": "double", "datetime": "QDateTime",
}
KINDS = {
    "text": "Text", "bool": "Boolean", "int32": "Int32", "uint32": "UInt32", "int64": "Int64", "uint64": "UInt64",
    "double": "Double", "datetime": "DateTime",
}


def file_stem(class_name):
    return class_name.lower()


def field_name(member):
    return "m_" + member.name[0].lower() + member.name[1:]


def literals_name(enumeration):
    return enumeration[0].lower() + enumeration[1:] + "Literals"


def enumeration_variable(enumeration):
    return enumeration[0].lower() + enumeration[1:] + "Enumeration"


def item_type(member):
    return SCALAR_TYPES.get(member.type, member.type)


def value_type(member):
    return f"QVector<{item_type(member)}>" if member.is_list else item_type(member)


def kind(schema, member):
    if schema.is_object(member):
        return "Object"
    return "Enumeration" if schema.is_enumeration(member) else KINDS[member.type]


def parameter(schema, member, type_name, name="value"):
    """How a value of the type is handed in: plain values as such, all else by reference."""
    is_plain = not schema.is_object(member) and type_name not in ("QString", "QDateTime") and "<" not in type_name
    return f"{type_name} {name}" if is_plain else f"const {type_name} &{name}"


def enumerations_of(schema, described):
    """The enumerations that a class declares, each once, in the order of its members; the choice comes last."""
    names = [m.type for m in described.members if schema.is_enumeration(m)]
    if described.choice:
        names.append(described.choice)
    return list(dict.fromkeys(names))


def _sanitised(literal):
    return re.sub(r"\W", "_", literal)


def enumerators(schema, described):
    """Enumerator names by enumeration: the literals, with the enumeration before them where they would clash."""
    own = {name: [_sanitised(text) for text in schema.enumerations[name].literals]
           for name in enumerations_of(schema, described)}
    taken = set(schema.classes) | set(own) | {m.name for m in described.members} | CPP_KEYWORDS
    result = {}
    for name, words in own.items():
        others = {word for other, list_ in own.items() if other != name for word in list_}
        clashes = any(word[0].isdigit() or word in taken or word in others for word in words)
        result[name] = [f"{name}_{word}" if clashes else word for word in words]
    return result
