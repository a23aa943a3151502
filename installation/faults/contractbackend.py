"""Back end of omniidl: what a fault script may name, as the tables of contract.h.

Used as `omniidl -p DIR -bcontractbackend contracts.idl`; prints C++ to standard output.
"""
from omniidl import idlast, idltype, idlvisitor

HEAD = '''#include "installation/faults/contract.h"

#include "idl/korve.hh"
#include "idl/korvemanager.hh"
#include "idl/lumbalandatacom.hh"
#include "installation/contracts/bookmarks.hh"

namespace installation::faults
{
namespace
{
'''
# Interfaces that clients serve, and no service of an installation.
CLIENTS = ('IF_KRV_c_ChanMan', 'IF_ExportCallback', 'IF_RecordStateChangeCallback', 'IF_KorveStatusCallback', 'Callback')
RESULTS = {idltype.tk_ulong: 'Number', idltype.tk_boolean: 'Truth'}


class Contracts(idlvisitor.AstVisitor):
    """Collects operations and those exceptions that have a kind and a text."""

    def __init__(self):
        self.operations = []
        self.exceptions = []

    def visitAST(self, node):
        for declaration in node.declarations():
            declaration.accept(self)

    def visitModule(self, node):
        for definition in node.definitions():
            definition.accept(self)

    def visitInterface(self, node):
        for content in node.contents():
            content.accept(self)

    def visitOperation(self, node):
        if node.scopedName()[-2] in CLIENTS:
            return
        result = RESULTS.get(node.returnType().unalias().kind(), 'Other')
        has_outs = any(parameter.is_out() for parameter in node.parameters())
        row = f'{{"{node.scopedName()[0]}", "{node.identifier()}", Result::{result}, {str(has_outs).lower()}}}'
        if row not in self.operations:
            self.operations.append(row)

    def visitException(self, node):
        kinds = [member.memberType().unalias() for member in node.members()]
        if [kind.kind() for kind in kinds] == [idltype.tk_enum, idltype.tk_string]:
            self.exceptions.append((node.identifier(), '::'.join(node.scopedName()), kinds[0].decl()))


def print_exception(name, scoped_name, enumeration):
    words = ', '.join(f'"{word.identifier()}"' for word in enumeration.enumerators())
    kind_type = '::'.join(enumeration.scopedName())
    print(f'constexpr std::string_view {name}Kinds[] = {{{words}}};')
    print(f'[[noreturn]] void raise_{name}(unsigned kind, const char *text)\n{{')
    print(f'    throw {scoped_name}(static_cast<{kind_type}>(kind), text);\n}}')


def run(tree, args):
    contracts = Contracts()
    tree.accept(contracts)
    print(HEAD, end='')
    for exception in contracts.exceptions:
        print_exception(*exception)
    print('constexpr UserException exceptions[] = {')
    for name, _, _ in contracts.exceptions:
        print(f'    {{"{name}", {name}Kinds, raise_{name}}},')
    print('};\nconstexpr Operation operations[] = {')
    for row in contracts.operations:
        print(f'    {row},')
    print('};\n}\nstd::span<const Operation> allOperations() { return operations; }')
    print('std::span<const UserException> allUserExceptions() { return exceptions; }\n}')
