#!/usr/bin/env python3
"""Writes the side-by-side assembly manifest of Orbex.dll from its IDL.

usage: sxs_manifest.py IDL OUTPUT ARCHITECTURE [VERSION]

ARCHITECTURE is the manifest's processorArchitecture (x86 or amd64); VERSION the assembly's,
1.0.0.0 unless given. A client whose application manifest depends on this assembly creates the
creatable classes by CLSID or ProgID, loads the type library and marshals the interfaces with
nothing in the registry.
"""
import sys
from xml.sax.saxutils import quoteattr

import idl_reader

ASSEMBLY_NAME = "Orbex.sxs"
MODULE = "Orbex.dll"
# The standard Automation marshaler, which works from the type library.
AUTOMATION_MARSHALER = "{00020424-0000-0000-C000-000000000046}"


def element(tag, **attributes):
    return f"<{tag} " + " ".join(f"{key}={quoteattr(value)}" for key, value in attributes.items()) + "/>"


def braced(uuid):
    return "{" + uuid.upper() + "}"


def manifest(library, architecture, version="1.0.0.0"):
    tlbid = braced(library.uuid)
    lines = [
        '<?xml version="1.0" encoding="UTF-8" standalone="yes"?>',
        f"<!-- Generated from {library.name}'s IDL by the build. -->",
        '<assembly xmlns="urn:schemas-microsoft-com:asm.v1" manifestVersion="1.0">',
        "  " + element("assemblyIdentity", type="win32", name=ASSEMBLY_NAME, version=version,
                       processorArchitecture=architecture),
        f"  <file name={quoteattr(MODULE)}>",
        "    " + element("typelib", tlbid=tlbid, version=library.version, helpdir=""),
    ]
    lines += ["    " + element("comClass", clsid=braced(coclass.uuid), progid=f"{library.name}.{coclass.name}",
                                threadingModel="Apartment", tlbid=tlbid)
              for coclass in library.coclasses if coclass.creatable]
    lines.append("  </file>")
    lines += ["  " + element("comInterfaceExternalProxyStub", name=interface.name, iid=braced(interface.uuid),
                             tlbid=tlbid, proxyStubClsid32=AUTOMATION_MARSHALER)
              for interface in library.interfaces]
    lines.append("</assembly>")
    return "\n".join(lines) + "\n"


def main(argv):
    if len(argv) not in (4, 5) or argv[3] not in ("x86", "amd64"):
        sys.exit(__doc__)
    text = manifest(idl_reader.read(argv[1]), argv[3], *argv[4:])
    with open(argv[2], "w", encoding="utf-8", newline="\r\n") as out:
        out.write(text)


if __name__ == "__main__":
    main(sys.argv)
