"""Reads the type library description in src/com/Orbex.idl.

It understands what that file uses and nothing more: one library with its attributes,
enumerations with values, dual interfaces with their members, and coclasses. Anything else
inside the library (a struct, a module, an unknown statement) is an error, so that a change to
the IDL that the generators would misread stops the build instead of slipping through.

    library = read(path)          # or parse(text)
    library.coclasses[0].interface.members[0].params[0].default
"""
from __future__ import annotations

import dataclasses
import re

TOKEN = re.compile(r"""
      (?P<space>\s+|//[^\n]*|/\*.*?\*/)
    | (?P<string>"(?:[^"\\]|\\.)*")
    | (?P<guid>[0-9A-Fa-f]{8}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{4}-[0-9A-Fa-f]{12}(?![\w-]))
    | (?P<number>-?(?:0[xX][0-9A-Fa-f]+|\d+(?:\.\d+)?)(?![\w.]))
    | (?P<name>[A-Za-z_]\w*)
    | (?P<punct>[\[\](){},;:=*])
""", re.VERBOSE | re.DOTALL)


class IdlError(Exception):
    pass


@dataclasses.dataclass(frozen=True)
class Token:
    kind: str
    text: str
    line: int


@dataclasses.dataclass
class Param:
    name: str
    type: str                  # as written, pointer stars included: "BSTR*", "SAFEARRAY(BSTR)*"
    directions: tuple          # ("in",), ("out",), ("in", "out")
    retval: bool = False
    optional: bool = False
    default: object = None     # None: no defaultvalue; else int or str (a text or an enum member)
    default_text: str = ""     # the default as the IDL writes it


@dataclasses.dataclass
class Member:
    name: str
    dispid: int
    kind: str                  # "method", "propget", "propput" or "propputref"
    params: list
    helpstring: str = ""

    @property
    def result(self):
        """The [retval] parameter, or None."""
        return next((p for p in self.params if p.retval), None)

    @property
    def arguments(self):
        return [p for p in self.params if not p.retval]


@dataclasses.dataclass
class Interface:
    name: str
    uuid: str
    base: str
    flags: tuple
    members: list


@dataclasses.dataclass
class Enumeration:
    name: str
    uuid: str
    values: list               # [(name, int)] in the IDL's order


@dataclasses.dataclass
class Coclass:
    name: str
    uuid: str
    creatable: bool
    interface: Interface


@dataclasses.dataclass
class Library:
    name: str
    uuid: str
    version: str
    lcid: int
    helpstring: str
    enumerations: list
    interfaces: list
    coclasses: list

    def enumeration(self, name):
        return next((e for e in self.enumerations if e.name == name), None)


def tokenize(text):
    tokens, pos, line = [], 0, 1
    while pos < len(text):
        match = TOKEN.match(text, pos)
        if not match:
            raise IdlError(f"line {line}: cannot read {text[pos:pos + 20]!r}")
        if match.lastgroup != "space":
            tokens.append(Token(match.lastgroup, match.group(), line))
        line += match.group().count("\n")
        pos = match.end()
    return tokens


def unquote(text):
    return re.sub(r"\\(.)", r"\1", text[1:-1])


class Name(str):
    """An identifier written as a value, such as an enumeration member in a defaultvalue."""


def value_of(token):
    if token.kind == "string":
        return unquote(token.text)
    if token.kind == "number" and "." not in token.text:
        return int(token.text, 0)
    return Name(token.text) if token.kind == "name" else token.text


class Parser:
    def __init__(self, tokens):
        self.tokens = tokens
        self.pos = 0

    def peek(self, offset=0):
        index = self.pos + offset
        return self.tokens[index] if index < len(self.tokens) else Token("end", "", self.tokens[-1].line)

    def next(self):
        token = self.peek()
        if token.kind == "end":
            raise IdlError("unexpected end of the IDL")
        self.pos += 1
        return token

    def expect(self, text):
        token = self.next()
        if token.text != text:
            raise IdlError(f"line {token.line}: expected {text!r}, found {token.text!r}")
        return token

    def accept(self, text):
        if self.peek().text == text:
            self.pos += 1
            return True
        return False

    def name(self):
        token = self.next()
        if token.kind != "name":
            raise IdlError(f"line {token.line}: expected a name, found {token.text!r}")
        return token.text

    def skip_call(self):
        """Skips `name(...)` and an optional `;`, as for import, importlib and cpp_quote."""
        self.expect("(")
        depth = 1
        while depth:
            text = self.next().text
            depth += {"(": 1, ")": -1}.get(text, 0)
        self.accept(";")

    def attributes(self):
        """`[a, b(x), c(y, z)]` as {name: [values]}; an absent list gives {}."""
        attributes = {}
        if not self.accept("["):
            return attributes
        while not self.accept("]"):
            key = self.name()
            values = []
            if self.accept("("):
                while not self.accept(")"):
                    values.append(value_of(self.next()))
                    self.accept(",")
            attributes[key] = values
            self.accept(",")
        return attributes

    def type_name(self):
        """A parameter's type up to its name: `BSTR*`, `unsigned char*`, `SAFEARRAY(BSTR)*`."""
        text, depth = "", 0
        while depth or not (self.peek().kind == "name" and self.peek(1).text in (",", ")")):
            token = self.next()
            depth += {"(": 1, ")": -1}.get(token.text, 0)
            joined = token.text in ("(", ")", "*") or text.endswith("(") or not text
            text += token.text if joined else " " + token.text
        return text

    def library(self):
        library = None
        while self.peek().kind != "end":
            if self.peek().text in ("import", "cpp_quote", "importlib"):
                self.next()
                if self.peek().kind == "string":
                    self.next()
                    self.accept(";")
                else:
                    self.skip_call()
                continue
            attributes = self.attributes()
            keyword = self.name()
            if keyword != "library" or library is not None:
                raise IdlError(f"line {self.peek().line}: expected the one library, found {keyword!r}")
            library = self.library_body(attributes)
        if library is None:
            raise IdlError("the IDL holds no library")
        return library

    def library_body(self, attributes):
        name = self.name()
        library = Library(name, single(attributes, "uuid", name), str(single(attributes, "version", name)),
                          attributes.get("lcid", [0])[0], attributes.get("helpstring", [""])[0], [], [], [])
        self.expect("{")
        while not self.accept("}"):
            if self.accept("importlib"):
                self.skip_call()
                continue
            if self.accept("typedef"):
                library.enumerations.append(self.enumeration())
                continue
            attributes = self.attributes()
            keyword = self.name()
            if keyword == "interface":
                library.interfaces.append(self.interface(attributes))
            elif keyword == "coclass":
                library.coclasses.append(self.coclass(attributes, library))
            else:
                raise IdlError(f"line {self.peek().line}: {keyword!r} is not read here")
        self.accept(";")
        return library

    def enumeration(self):
        attributes = self.attributes()
        if self.name() != "enum":
            raise IdlError(f"line {self.peek().line}: only enumerations may be typedefs here")
        name = self.name()
        values, next_value = [], 0
        self.expect("{")
        while not self.accept("}"):
            member = self.name()
            if self.accept("="):
                token = self.next()
                if token.kind != "number":
                    raise IdlError(f"line {token.line}: {member} needs a number")
                next_value = int(token.text, 0)
            values.append((member, next_value))
            next_value += 1
            self.accept(",")
        if self.name() != name:
            raise IdlError(f"line {self.peek().line}: typedef of {name} under another name")
        self.expect(";")
        return Enumeration(name, single(attributes, "uuid", name), values)

    def interface(self, attributes):
        name = self.name()
        self.expect(":")
        base = self.name()
        members = []
        self.expect("{")
        while not self.accept("}"):
            members.append(self.member())
        self.accept(";")
        flags = tuple(key for key in attributes if key != "uuid")
        return Interface(name, single(attributes, "uuid", name), base, flags, members)

    def member(self):
        line = self.peek().line
        attributes = self.attributes()
        if self.name() != "HRESULT":
            raise IdlError(f"line {line}: a member must return HRESULT")
        name = self.name()
        kinds = [kind for kind in ("propget", "propput", "propputref") if kind in attributes]
        if len(kinds) > 1:
            raise IdlError(f"line {line}: {name} is {' and '.join(kinds)} at once")
        params = []
        self.expect("(")
        while not self.accept(")"):
            params.append(self.param())
            self.accept(",")
        self.expect(";")
        return Member(name, single(attributes, "id", name), kinds[0] if kinds else "method", params,
                      attributes.get("helpstring", [""])[0])

    def param(self):
        attributes = self.attributes()
        type_name = self.type_name()
        name = self.name()
        directions = tuple(d for d in ("in", "out") if d in attributes)
        if not directions:
            raise IdlError(f"line {self.peek().line}: parameter {name} has no direction")
        default = attributes.get("defaultvalue")
        return Param(name, type_name, directions, "retval" in attributes, "optional" in attributes,
                     default[0] if default else None, self.default_text(default))

    @staticmethod
    def default_text(default):
        if not default:
            return ""
        value = default[0]
        if isinstance(value, str) and not isinstance(value, Name):
            return '"' + value.replace('"', '\\"') + '"'
        return str(value)

    def coclass(self, attributes, library):
        name = self.name()
        default = None
        self.expect("{")
        while not self.accept("}"):
            member_attributes = self.attributes()
            self.expect("interface")
            interface = self.name()
            self.expect(";")
            if "default" in member_attributes:
                default = interface
        self.accept(";")
        interface = next((i for i in library.interfaces if i.name == default), None)
        if interface is None:
            raise IdlError(f"coclass {name} has no default interface declared before it")
        return Coclass(name, single(attributes, "uuid", name), "noncreatable" not in attributes, interface)


def single(attributes, key, owner):
    values = attributes.get(key)
    if not values or len(values) != 1:
        raise IdlError(f"{owner} needs one {key}")
    return values[0]


def parse(text):
    return Parser(tokenize(text)).library()


def read(path):
    with open(path, encoding="utf-8") as source:
        return parse(source.read())
