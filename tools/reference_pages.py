#!/usr/bin/env python3
"""Writes docs/reference, the class reference pages, from Orbex's IDL.

usage: reference_pages.py IDL FOLDER           writes the pages, and removes any other file there
       reference_pages.py IDL FOLDER --check   exits 1, naming each page, when FOLDER differs

One page per class with its members in vtable order, a page of the enumerations, and an index.
"""
import difflib
import os
import sys

import idl_reader

AUTOMATION_NAMES = {
    "BSTR": "String", "VARIANT_BOOL": "Boolean", "long": "Long", "short": "Integer", "unsigned char": "Byte",
    "CURRENCY": "Currency", "DATE": "Date", "VARIANT": "Variant", "SAFEARRAY(BSTR)": "String()",
}
KINDS = {"method": "method", "propget": "property read", "propput": "property write",
         "propputref": "property write by reference"}
FIRST_ENTRY = 7  # after the three entries of IUnknown and the four of IDispatch


def flags_of(enumeration, value):
    """The single-bit members whose sum is value, highest first; [] when there are none such."""
    names = []
    for name, bit in sorted(enumeration.values, key=lambda item: -item[1]):
        if bit > 0 and bit & (bit - 1) == 0 and value & bit:
            names.append(name)
            value &= ~bit
    return names if value == 0 else []


def cell(text):
    return text.replace("|", "\\|")


class Pages:
    def __init__(self, library):
        self.library = library
        self.class_of = {c.interface.name: c.name for c in library.coclasses}

    def type_text(self, idl_type):
        """The Automation name of a type, linked to its page, with the IDL's spelling beside it."""
        base = idl_type.rstrip("*")
        if base in self.class_of:
            name = self.class_of[base]
            return f"[{name}]({name}.md) (`{base}*`)"
        if self.library.enumeration(base):
            return f"[{base}](enumerations.md#{base.lower()})"
        return f"{AUTOMATION_NAMES.get(base, base)} (`{base}`)"

    def default_text(self, param):
        default, base = param.default, param.type.rstrip("*")
        if default is None:
            return "none: an omitted argument arrives as missing" if param.optional else ""
        if base == "VARIANT_BOOL" and isinstance(default, int):
            return f"{'False' if default == 0 else 'True'} ({default})"
        if base == "BSTR" and default == 0:
            return '"" (written as 0)'
        enumeration = self.library.enumeration(base)
        if enumeration:
            values = dict(enumeration.values)
            if isinstance(default, idl_reader.Name) and default in values:
                return f"`{default}` ({values[default]})"
            names = [name for name, value in enumeration.values if value == default] or flags_of(enumeration, default)
            return f"{' + '.join(f'`{name}`' for name in names)} ({default})" if names else str(default)
        return f"`{param.default_text}`"

    def passing(self, param):
        """An interface is passed as one pointer; a pointer more means by reference."""
        base = param.type.rstrip("*")
        by_reference = param.type.count("*") > (1 if base in self.class_of else 0)
        direction = ", ".join(param.directions)
        return f"{direction}, by reference" if by_reference else f"{direction}, by value"

    def sources(self, coclass):
        """The members of every class that hand out an object of this one."""
        wanted = coclass.interface.name + "**"
        return [f"`{self.class_of[i.name]}.{m.name}`" for i in self.library.interfaces for m in i.members
                if m.result and m.result.type == wanted]

    def class_page(self, coclass):
        interface, library = coclass.interface, self.library
        members = interface.members
        lines = [f"# {coclass.name}", "",
                 "| | |", "|---|---|",
                 f"| Class identifier (CLSID) | `{{{coclass.uuid}}}` |",
                 f"| Default interface | `{interface.name}`, `{{{interface.uuid}}}`, "
                 f"{', '.join(interface.flags)}, derived from `{interface.base}` |"]
        if coclass.creatable:
            lines.append(f"| Created by clients | yes, as `{library.name}.{coclass.name}` or by its CLSID |")
        else:
            lines.append("| Created by clients | no |")
        sources = self.sources(coclass)
        if sources:
            lines.append(f"| Handed out by | {', '.join(sources)} |")
        lines += ["", f"The interface has {len(members)} entries after the seven of `IUnknown` and `IDispatch`: "
                      f"vtable entries {FIRST_ENTRY} to {FIRST_ENTRY + len(members) - 1}, in this order. "
                      "A read-write property is two entries, one per direction, sharing one dispatch id.", "",
                  "## Members", ""]
        with_help = any(m.helpstring for m in members)
        header = "| Entry | Member | Kind | Dispatch id | Result |" + (" Help string |" if with_help else "")
        lines += [header, "|" + "---|" * header.count(" |")]
        for index, member in enumerate(members):
            result = self.type_text(member.result.type) if member.result else ""
            row = f"| {FIRST_ENTRY + index} | `{member.name}` | {KINDS[member.kind]} | 0x{member.dispid:08X} | {result} |"
            lines.append(row + (f" {cell(member.helpstring)} |" if with_help else ""))
        with_arguments = [(index, m) for index, m in enumerate(members) if m.arguments]
        if with_arguments:
            lines += ["", "## Parameters", "",
                      "Each member's arguments in order; the result, if any, is the entry's last, "
                      "`[out, retval]` parameter. An omitted optional argument takes its default."]
        for index, member in with_arguments:
            lines += ["", f"### {member.name}, {KINDS[member.kind]} (entry {FIRST_ENTRY + index})", "",
                      "| Parameter | Type | Passed | Optional | Default |", "|---|---|---|---|---|"]
            lines += [f"| `{p.name}` | {self.type_text(p.type)} | {self.passing(p)} | "
                      f"{'yes' if p.optional else 'no'} | {self.default_text(p)} |" for p in member.arguments]
        return "\n".join(lines) + "\n"

    def enumerations_page(self):
        lines = ["# Enumerations", "",
                 f"The {len(self.library.enumerations)} enumerations of the `{self.library.name}` type library. "
                 "Each is a 32-bit signed value (`long`); its members are constants of that type.", ""]
        for enumeration in self.library.enumerations:
            users = [f"`{self.class_of.get(i.name, i.name)}.{m.name}`"
                     for i in self.library.interfaces for m in i.members
                     if any(p.type.rstrip("*") == enumeration.name for p in m.params)]
            lines += [f"## {enumeration.name}", "", f"Identifier `{{{enumeration.uuid}}}`."
                      + (f" Used by {', '.join(dict.fromkeys(users))}." if users else ""), "",
                      "| Member | Value |", "|---|---|"]
            lines += [f"| `{name}` | {value} |" for name, value in enumeration.values]
            lines.append("")
        return "\n".join(lines)

    def index_page(self):
        library = self.library
        lines = [f"# {library.name} reference", "",
                 f"Generated from `src/com/Orbex.idl` by `tools/reference_pages.py`; do not edit by hand. "
                 "The test `reference_pages` fails when these pages differ from what the IDL gives.", "",
                 "| Type library | |", "|---|---|",
                 f"| Name | `{library.name}` |",
                 f"| Identifier (LIBID) | `{{{library.uuid}}}` |",
                 f"| Version | {library.version} |",
                 f"| Locale | 0x{library.lcid:X} |",
                 f"| Help string | {library.helpstring} |", "",
                 "## Classes", "",
                 "| Class | ProgID | CLSID | Interface | IID | Entries |", "|---|---|---|---|---|---|"]
        for coclass in library.coclasses:
            progid = f"`{library.name}.{coclass.name}`" if coclass.creatable else "not creatable"
            lines.append(f"| [{coclass.name}]({coclass.name}.md) | {progid} | `{{{coclass.uuid}}}` | "
                         f"`{coclass.interface.name}` | `{{{coclass.interface.uuid}}}` | "
                         f"{len(coclass.interface.members)} |")
        lines += ["", f"And the [enumerations](enumerations.md) ({len(library.enumerations)}).", ""]
        return "\n".join(lines)

    def all(self):
        pages = {"README.md": self.index_page(), "enumerations.md": self.enumerations_page()}
        pages.update({f"{c.name}.md": self.class_page(c) for c in self.library.coclasses})
        return pages


def check(pages, folder):
    present = set(os.listdir(folder)) if os.path.isdir(folder) else set()
    differing = []
    for name in sorted(present | set(pages)):
        path = os.path.join(folder, name)
        old = open(path, encoding="utf-8").read() if name in present else ""
        new = pages.get(name, "")
        if old != new or name not in pages:
            differing.append(name)
            sys.stdout.writelines(difflib.unified_diff(old.splitlines(True), new.splitlines(True),
                                                       f"{folder}/{name}", "from the IDL", n=1))
    for name in differing:
        print(f"FAILED: {folder}/{name} is not what the IDL gives; run tools/reference_pages.py")
    return 1 if differing else 0


def main(argv):
    if len(argv) not in (3, 4) or argv[3:] not in ([], ["--check"]):
        sys.exit(__doc__)
    pages = Pages(idl_reader.read(argv[1])).all()
    if argv[3:]:
        sys.exit(check(pages, argv[2]))
    os.makedirs(argv[2], exist_ok=True)
    for stale in set(os.listdir(argv[2])) - set(pages):
        os.remove(os.path.join(argv[2], stale))
    for name, text in pages.items():
        with open(os.path.join(argv[2], name), "w", encoding="utf-8", newline="\n") as out:
            out.write(text)


if __name__ == "__main__":
    main(sys.argv)
