"""Finds what can be changed in a source, and writes the source with all the changes in it.

A change (a mutant) is one of

  left out      a statement that is a call, an assignment, a throw; an operand of && and ||
  negated       a condition, a comparison by == or !=, a boolean that is returned or kept
  < as <= ...   a comparison, at its edge and negated
  + as - ...    arithmetic and bits of the built-in types
  N as N + 1     a number; true as false

Constant expressions are left alone: they have no time at which they could be changed. So are the
initial values of what stands outside of functions: a program has them before it has a change.
"""
import dataclasses
import pathlib
import re

from clang import cindex
from clang.cindex import CursorKind as K
from clang.cindex import TypeKind

NUMBERS_PER_FILE = 1000

COMPARISONS = {"<": ("Less", "<="), "<=": ("LessOrEqual", "<"),
               ">": ("Greater", ">="), ">=": ("GreaterOrEqual", ">")}
ARITHMETIC = {"+": ("Plus", "-"), "-": ("Minus", "+"), "*": ("Times", "+"), "/": ("Over", "*"),
              "%": ("Modulo", "+"), "&": ("And", "|"), "|": ("Or", "&")}
ASSIGNMENTS = {"+=": ("PlusIs", "-="), "-=": ("MinusIs", "+="), "*=": ("TimesIs", "/="),
               "/=": ("OverIs", "*="), "&=": ("AndIs", "|="), "|=": ("OrIs", "&=")}
FUNCTIONS = {K.FUNCTION_DECL, K.CXX_METHOD, K.CONSTRUCTOR, K.DESTRUCTOR, K.CONVERSION_FUNCTION,
             K.FUNCTION_TEMPLATE}
STATEMENTS = {K.CALL_EXPR, K.COMPOUND_ASSIGNMENT_OPERATOR, K.UNARY_OPERATOR, K.BINARY_OPERATOR,
              K.CXX_DELETE_EXPR, K.CXX_THROW_EXPR}
BODIES = {K.IF_STMT, K.FOR_STMT, K.WHILE_STMT, K.CXX_FOR_RANGE_STMT, K.CASE_STMT, K.DEFAULT_STMT,
          K.DO_STMT}
NOT_ENTERED = {K.DECL_REF_EXPR, K.STATIC_ASSERT, K.CXX_UNARY_EXPR, K.TYPE_REF, K.TEMPLATE_REF,
               K.ENUM_DECL, K.TYPEDEF_DECL, K.TYPE_ALIAS_DECL}


@dataclasses.dataclass
class Mutant:
    number: int
    file: str
    line: int
    text: str    # of the line, without blanks around it
    change: str  # what is done, in the words of the source


def blank_comments(text):
    """Returns `text` with comments and what stands in literals replaced by blanks."""
    pattern = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])*\'', re.S)

    def blank(match):
        found = match.group()
        if found.startswith("/"):
            return re.sub(r"[^\n]", " ", found)
        return found[0] + "x" * (len(found) - 2) + found[-1]

    # Separators of digits are no literals.
    return pattern.sub(blank, re.sub(r"(?<=[0-9a-fA-F])'(?=[0-9a-fA-F])", "_", text))


class Instrumenter:
    """One file: its mutants, and its text with them."""

    def __init__(self, name, path, first_number):
        self.name = name
        self.path = path
        self.text = path.read_text(encoding="latin-1")
        self.bare = blank_comments(self.text)
        self.number = first_number
        self.last_number = first_number + NUMBERS_PER_FILE - 1
        self.mutants = []
        self.before, self.after, self.instead = {}, {}, {}
        self.seen = set()
        self.said = set()  # comparisons and negations whose opposite is a change of their parent

    # --- Cursors -----------------------------------------------------------------------------

    def span(self, cursor):
        extent = cursor.extent
        return extent.start.offset, extent.end.offset

    def is_here(self, cursor):
        start = cursor.extent.start
        return start.file is not None and start.file.name == str(self.path)

    def is_whole(self, span):
        """Whether it is text of this file as it stands, and no part of a macro's."""
        found = self.bare[span[0]:span[1]]
        return span[0] < span[1] and all(
            found.count(a) == found.count(b) for a, b in ("()", "{}", "[]"))

    def char_before(self, offset):
        return self.bare[:offset].rstrip()[-1:]

    def word_before(self, offset):
        return re.search(r"\w*$", self.bare[:offset].rstrip()).group()

    def char_after(self, offset):
        return self.bare[offset:].lstrip()[:1]

    def inner(self, cursor):
        """What stands in parentheses and implicit conversions; with all the spans on the way."""
        spans = [self.span(cursor)]
        while cursor.kind in (K.UNEXPOSED_EXPR, K.PAREN_EXPR):
            children = list(cursor.get_children())
            if len(children) != 1:
                break
            cursor = children[0]
            spans.append(self.span(cursor))
        return cursor, spans

    def infix(self, cursor):
        """(left, operator, right, where the operator is) of a binary operator."""
        children = sorted(cursor.get_children(), key=lambda c: c.extent.start.offset)
        if len(children) < 2:
            return None
        left, right = children[0], children[-1]
        begin, end = self.span(left)[1], self.span(right)[0]
        operator = self.bare[begin:end].strip()
        if not operator or not re.fullmatch(r"[-+*/%&|^<>=!,]+", operator):
            return None
        at = begin + self.bare[begin:end].index(operator)
        return left, operator, right, (at, at + len(operator))

    def is_operator(self, cursor):
        return cursor.kind == K.BINARY_OPERATOR or (
            cursor.kind == K.CALL_EXPR and cursor.spelling.startswith("operator")
            and self.infix(cursor) is not None)

    def is_not(self, cursor):
        return cursor.kind == K.UNARY_OPERATOR and self.bare[self.span(cursor)[0]] == "!"

    # --- Edits -------------------------------------------------------------------------------

    def new(self, span, change):
        if self.number > self.last_number:
            raise RuntimeError(f"{self.name}: more than {NUMBERS_PER_FILE} mutants")
        line_begin = self.text.rfind("\n", 0, span[0]) + 1
        line = self.text[line_begin:self.text.find("\n", span[0])].strip()
        self.mutants.append(Mutant(self.number, self.name, self.text.count("\n", 0, span[0]) + 1,
                                   line, " ".join(change.split())))
        self.number += 1
        return self.number - 1

    def source(self, span):
        return self.text[span[0]:span[1]]

    def wrap(self, span, before, after):
        self.before.setdefault(span[0], []).append(before)
        self.after.setdefault(span[1], []).insert(0, after)

    def once(self, span, what):
        if (span, what) in self.seen or not self.is_whole(span):
            return False
        self.seen.add((span, what))
        return True

    def negate(self, span):
        if self.once(span, "negated"):
            number = self.new(span, f"negated: {self.source(span)}")
            self.wrap(span, f"(hav::mutants::On<{number}>() != static_cast<bool>(", "))")

    def leave_out(self, span):
        end = self.bare.index(";", span[1]) + 1
        if self.once(span, "left out"):
            number = self.new(span, f"left out: {self.source(span)}")
            self.wrap((span[0], end), f"{{if (!hav::mutants::On<{number}>()) {{", "}}")

    def leave_out_operand(self, cursor, operator):
        span = self.span(cursor)
        if not self.once(span, "operand"):
            return
        number = self.new(span, f"left out of {operator}: {self.source(span)}")
        instead = "!{} &&" if operator == "||" else "{} ||"
        self.wrap(span, f"({instead.format(f'hav::mutants::On<{number}>()')} static_cast<bool>(",
                  "))")

    def calls(self, span, operator, template, after=")"):
        self.wrap(span, f"hav::mutants::{template}(", after)
        self.instead[operator] = ","

    # --- Walking -----------------------------------------------------------------------------

    def declaration(self, cursor):
        """Outside of functions."""
        if cursor.kind in FUNCTIONS:
            self.function(cursor)
        elif cursor.kind == K.FIELD_DECL:
            for child in cursor.get_children():
                if child.kind.is_expression() and self.char_before(
                        child.extent.start.offset) in "={":
                    self.expression(child, cursor)
        elif cursor.kind == K.VAR_DECL:
            self.variable(cursor)
        elif cursor.kind not in NOT_ENTERED:
            for child in cursor.get_children():
                if self.is_here(child):
                    self.declaration(child)

    def function(self, cursor):
        head = self.bare[cursor.extent.start.offset:cursor.location.offset]
        if re.search(r"\bconstexpr\b", head):
            return
        for child in cursor.get_children():
            if child.kind == K.COMPOUND_STMT:
                self.statement(child, cursor, cursor.result_type.get_canonical().spelling)
            elif cursor.kind == K.CONSTRUCTOR and child.kind.is_expression():
                self.expression(child, cursor)

    def variable(self, cursor):
        head = self.bare[cursor.extent.start.offset:cursor.location.offset]
        constant = re.search(r"\bconstexpr\b", head) or cursor.semantic_parent.kind in (
            K.CLASS_DECL, K.STRUCT_DECL,  # a static member
            K.NAMESPACE, K.TRANSLATION_UNIT)
        for child in cursor.get_children():
            if not child.kind.is_expression() or child.extent.start.offset < cursor.location.offset:
                continue
            if self.char_before(child.extent.start.offset) == "[":
                continue
            if constant:
                self.lambdas(child)
                continue
            if cursor.type.get_canonical().spelling in ("bool", "const bool"):
                self.condition(child)
            self.expression(child, cursor)

    def lambdas(self, cursor):
        if cursor.kind == K.LAMBDA_EXPR:
            self.expression(cursor, cursor)
        else:
            for child in cursor.get_children():
                self.lambdas(child)

    def condition(self, cursor):
        """A boolean: negated, where nothing in it says the same."""
        inner, _ = self.inner(cursor)
        if inner.kind in (K.CXX_BOOL_LITERAL_EXPR, K.LAMBDA_EXPR) or self.is_not(inner):
            return
        if self.is_operator(inner):
            operator = self.infix(inner)
            if operator and operator[1] in ("&&", "||", "==", "!=", *COMPARISONS):
                return
        if self.is_here(cursor):
            self.negate(self.span(cursor))

    def statement(self, cursor, parent, result):
        kind = cursor.kind
        if kind == K.RETURN_STMT:
            for child in cursor.get_children():
                if result == "bool" or child.type.get_canonical().spelling == "bool":
                    self.condition(child)
        constant_if = kind == K.IF_STMT and re.match(
            r"if\s+constexpr\b", self.bare[cursor.extent.start.offset:])
        for index, child in enumerate(cursor.get_children()):
            begin, end = self.span(child)
            if constant_if and self.char_before(begin) == "(":
                continue
            if kind == K.CASE_STMT and index == 0:
                continue
            if child.kind.is_statement() and child.kind != K.DECL_STMT:
                self.statement(child, cursor, result)
                continue
            is_body = kind == K.COMPOUND_STMT or (kind in BODIES and (
                self.char_before(begin) in "):" or self.word_before(begin) in ("else", "do")))
            if is_body and child.kind.is_expression() and self.is_here(child):
                self.expression_statement(child)
            if kind in (K.IF_STMT, K.WHILE_STMT, K.FOR_STMT, K.DO_STMT) and not is_body:
                if child.kind.is_expression() and self.char_before(begin) in "(;" \
                        and self.char_after(end) in (");" if kind == K.FOR_STMT else ")") \
                        and not (kind == K.FOR_STMT and self.char_after(end) == ")"):
                    self.condition(child)
            step = kind == K.FOR_STMT and self.char_after(end) == ")" and not is_body
            self.general(child, cursor, result, step)

    def expression_statement(self, cursor):
        inner, _ = self.inner(cursor)
        while inner.kind == K.UNEXPOSED_EXPR:
            children = list(inner.get_children())
            if not children:
                break
            inner = children[-1]
        if inner.kind in STATEMENTS and self.char_after(self.span(cursor)[1]) == ";":
            self.leave_out(self.span(cursor))

    def general(self, cursor, parent, result, step=False):
        if cursor.kind in (K.VAR_DECL,):
            self.variable(cursor)
        elif cursor.kind == K.DECL_STMT:
            for child in cursor.get_children():
                self.general(child, cursor, result)
        elif cursor.kind.is_statement():
            self.statement(cursor, parent, result)
        elif cursor.kind.is_expression():
            self.expression(cursor, parent, step)
        elif cursor.kind.is_declaration():
            self.declaration(cursor)

    def expression(self, cursor, parent, step=False):
        kind = cursor.kind
        if kind in NOT_ENTERED or not self.is_here(cursor):
            return
        if kind == K.LAMBDA_EXPR:
            for child in cursor.get_children():
                if child.kind == K.COMPOUND_STMT:
                    self.statement(child, cursor, "")
            return
        if self.is_operator(cursor):
            self.operator(cursor)
        elif kind == K.COMPOUND_ASSIGNMENT_OPERATOR and not step:
            self.assignment(cursor)
        elif self.is_not(cursor) and self.span(cursor) not in self.said:
            self.negate(self.span(cursor))
        elif kind == K.CONDITIONAL_OPERATOR:
            self.condition(next(cursor.get_children()))
        elif kind == K.INTEGER_LITERAL or kind == K.FLOATING_LITERAL:
            self.literal(cursor, parent)
        elif kind == K.CXX_BOOL_LITERAL_EXPR:
            span = self.span(cursor)
            if self.once(span, "literal"):
                said = self.source(span)
                number = self.new(span, f"{said} as {'false' if said == 'true' else 'true'}")
                self.wrap(span, f"(hav::mutants::On<{number}>() != ", ")")
        for child in cursor.get_children():
            if kind == K.MEMBER_REF_EXPR and self.span(child)[0] != self.span(cursor)[0]:
                continue  # arguments of a template
            if child.kind.is_statement():
                self.statement(child, cursor, "")
            else:
                self.expression(child, cursor)

    def operator(self, cursor):
        found = self.infix(cursor)
        if not found:
            return
        left, operator, right, at = found
        span = self.span(cursor)
        if operator in ("&&", "||") and cursor.kind == K.BINARY_OPERATOR:
            for operand in (left, right):
                inner, spans = self.inner(operand)
                self.said.update(spans)
                same = self.is_operator(inner) and self.infix(inner)
                if same and same[1] == operator:
                    continue
                self.leave_out_operand(operand, operator)
        elif operator in ("==", "!="):
            if span not in self.said:
                self.negate(span)
        elif operator in COMPARISONS:
            if cursor.kind == K.BINARY_OPERATOR and self.is_built_in(left, right):
                if not self.once(span, "comparison"):
                    return
                name, other = COMPARISONS[operator]
                edge = self.new(span, f"{operator} as {other}: {self.source(span)}")
                opposite = 0 if span in self.said else self.new(
                    span, f"negated: {self.source(span)}")
                self.calls(span, at, f"{name}<{edge}, {opposite}>")
            elif span not in self.said:
                self.negate(span)
        elif operator in ARITHMETIC and cursor.kind == K.BINARY_OPERATOR:
            if not self.is_built_in(left, right) or (
                    self.is_pointer(left) and self.is_pointer(right)):
                return
            if self.once(span, "arithmetic"):
                name, other = ARITHMETIC[operator]
                number = self.new(span, f"{operator} as {other}: {self.source(span)}")
                self.calls(span, at, f"{name}<{number}>")

    def assignment(self, cursor):
        found = self.infix(cursor)
        if not found or found[1] not in ASSIGNMENTS or not self.is_built_in(found[0], found[2]):
            return
        span = self.span(cursor)
        if self.once(span, "assignment"):
            name, other = ASSIGNMENTS[found[1]]
            number = self.new(span, f"{found[1]} as {other}: {self.source(span)}")
            self.calls(span, found[3], f"{name}<{number}>")

    def literal(self, cursor, parent):
        span = self.span(cursor)
        said = self.source(span)
        if self.char_before(span[0]) == "[" and parent.kind == K.VAR_DECL:
            return
        to = parent.type.get_canonical() if parent.kind == K.UNEXPOSED_EXPR else \
            cursor.type.get_canonical()
        if to.kind in (TypeKind.POINTER, TypeKind.MEMBERPOINTER, TypeKind.NULLPTR,
                       TypeKind.DEPENDENT):
            return
        name = to.spelling.replace("const ", "")
        if not re.fullmatch(r"(unsigned |signed )?(char|short|int|long|long long)|float|double",
                            name):
            return
        if self.once(span, "literal"):
            more = f"{said} + 1"
            number = self.new(span, f"{said} as {more}")
            self.wrap(span, f"static_cast<{name}>("
                            f"hav::mutants::On<{number}>() ? {more} : ", ")")

    def is_built_in(self, *cursors):
        kinds = {TypeKind.RECORD, TypeKind.DEPENDENT, TypeKind.UNEXPOSED, TypeKind.INVALID,
                 TypeKind.NULLPTR, TypeKind.OVERLOAD}
        return all(c.type.get_canonical().kind not in kinds for c in cursors)

    def is_pointer(self, cursor):
        return cursor.type.get_canonical().kind in (TypeKind.POINTER, TypeKind.CONSTANTARRAY)

    # --- The result --------------------------------------------------------------------------

    def instrumented(self):
        out, at = [], 0
        instead = {begin: (end, text) for (begin, end), text in self.instead.items()}
        for offset in sorted({*self.before, *self.after, *instead}):
            if offset < at:
                raise RuntimeError(f"{self.name}: changes overlap at {offset}")
            out.append(self.text[at:offset])
            out += self.after.get(offset, []) + self.before.get(offset, [])
            at = offset
            if offset in instead:
                at, text = instead[offset]
                out.append(text)
        return "".join(out) + self.text[at:]


def instrument(root, names, unit_name, arguments):
    """Returns {name: (mutants, text)} for the source `unit_name` in `root` and those of `names`
    that it includes."""
    files = {str(root / name): Instrumenter(name, root / name, 1 + i * NUMBERS_PER_FILE)
             for i, name in enumerate(sorted(names))}
    unit = cindex.Index.create().parse(str(root / unit_name), args=arguments)
    for diagnostic in unit.diagnostics:
        if diagnostic.severity >= cindex.Diagnostic.Error:
            raise RuntimeError(f"{diagnostic.location.file}:{diagnostic.location.line}: "
                               f"{diagnostic.spelling}")
    found = set()
    for cursor in unit.cursor.get_children():
        file = cursor.extent.start.file
        if file is not None and file.name in files:
            found.add(file.name)
            files[file.name].declaration(cursor)
    return {files[name].name: (files[name].mutants, files[name].instrumented()) for name in found}
