"""The IDL reader on the shapes of text that could mislead it, and what the generators make of it."""
import unittest
import xml.etree.ElementTree as ElementTree

import idl_reader
import reference_pages
import sxs_manifest

LIBRARY = """
import "oaidl.idl";
cpp_quote("#pragma x")
[uuid(F26542D0-6021-447E-9A82-DA859119052F), version(7.0), lcid(0x409), helpstring("A, [b] (c) \\"d\\"")]
library Lib
{
    importlib("stdole2.tlb");
    typedef [uuid(83D77B93-6376-4611-B42D-FF7F7B1E9078)]
    enum vqFlags { vqA = 1, vqB = 4, vqC, vqMinus = -2147483648, vqHex = 0x10 } vqFlags;
    [uuid(9FAFC5DA-F681-45D6-A0F7-FEC808DE20D3), hidden, dual]
    interface _Thing : IDispatch
    {
        // [id(0x1)] HRESULT Commented([in] BSTR x);  a comment is not a member
        [id(0x68030002), propput] HRESULT Name([in, out] BSTR* Name);
        [id(0x68030002), propget, helpstring("Says | what")] HRESULT Name([out, retval] BSTR* Result);
        /* [id(0x2)] */ [id(0x60030003)]
        HRESULT Call(
            [in, optional, defaultvalue("")] BSTR Text,
            [in, out, optional, defaultvalue(0)] BSTR* Ref,
            [in, optional, defaultvalue(vqB)] vqFlags Flags,
            [in, optional, defaultvalue(17)] vqFlags Both,
            [in, optional, defaultvalue(65535)] VARIANT_BOOL Yes,
            [in, optional] VARIANT Missing,
            [in, out] _Thing** Other,
            [out, retval] SAFEARRAY(BSTR)* Result);
        [id(0x60030004)] HRESULT Byte([out, retval] unsigned char* Result);
        [id(0x60030005)] HRESULT Make([out, retval] _Thing** Result);
    };
    [uuid(57AE36C2-A5B6-4D55-B408-3C983B4D45D6)] coclass Thing { [default] interface _Thing; };
    [uuid(ED3F8683-9DE7-47D4-9979-756CAE8BA182), noncreatable] coclass Hidden { [default] interface _Thing; };
};
"""


class ReaderTest(unittest.TestCase):
    def setUp(self):
        self.library = idl_reader.parse(LIBRARY)
        self.members = self.library.interfaces[0].members

    def test_library_and_enumeration(self):
        library = self.library
        self.assertEqual((library.name, library.uuid, library.version, library.lcid, library.helpstring),
                         ("Lib", "F26542D0-6021-447E-9A82-DA859119052F", "7.0", 0x409, 'A, [b] (c) "d"'))
        self.assertEqual(library.enumerations[0].values,
                         [("vqA", 1), ("vqB", 4), ("vqC", 5), ("vqMinus", -2147483648), ("vqHex", 16)])
        self.assertEqual([(c.name, c.creatable) for c in library.coclasses], [("Thing", True), ("Hidden", False)])

    def test_members_in_order_without_the_commented_ones(self):
        self.assertEqual([(m.name, m.kind, m.dispid) for m in self.members],
                         [("Name", "propput", 0x68030002), ("Name", "propget", 0x68030002),
                          ("Call", "method", 0x60030003), ("Byte", "method", 0x60030004),
                          ("Make", "method", 0x60030005)])
        self.assertEqual(self.members[1].helpstring, "Says | what")

    def test_parameters(self):
        rows = [  # name, type, directions, optional, default, default as written
            ("Text", "BSTR", ("in",), True, "", '""'),
            ("Ref", "BSTR*", ("in", "out"), True, 0, "0"),
            ("Flags", "vqFlags", ("in",), True, "vqB", "vqB"),
            ("Both", "vqFlags", ("in",), True, 17, "17"),
            ("Yes", "VARIANT_BOOL", ("in",), True, 65535, "65535"),
            ("Missing", "VARIANT", ("in",), True, None, ""),
            ("Other", "_Thing**", ("in", "out"), False, None, ""),
        ]
        call = self.members[2]
        self.assertEqual([(p.name, p.type, p.directions, p.optional, p.default, p.default_text)
                          for p in call.arguments], rows)
        self.assertEqual((call.result.name, call.result.type), ("Result", "SAFEARRAY(BSTR)*"))
        self.assertIsInstance(call.params[2].default, idl_reader.Name)
        self.assertNotIsInstance(call.params[0].default, idl_reader.Name)
        self.assertEqual(self.members[3].result.type, "unsigned char*")

    def test_what_it_does_not_understand_stops_it(self):
        rows = [
            ("a struct", "typedef struct S { long a; } S;"),
            ("a member not returning HRESULT", "[uuid(9FAFC5DA-F681-45D6-A0F7-FEC808DE20D3)] "
                                               "interface _I : IDispatch { [id(1)] long M(); };"),
            ("a parameter without direction", "[uuid(9FAFC5DA-F681-45D6-A0F7-FEC808DE20D3)] "
                                              "interface _I : IDispatch { [id(1)] HRESULT M(BSTR a); };"),
            ("a member without id", "[uuid(9FAFC5DA-F681-45D6-A0F7-FEC808DE20D3)] "
                                    "interface _I : IDispatch { HRESULT M(); };"),
            ("a coclass without default", "[uuid(57AE36C2-A5B6-4D55-B408-3C983B4D45D6)] coclass C { };"),
            ("an unreadable character", "#"),
        ]
        for name, body in rows:
            with self.subTest(name), self.assertRaises(idl_reader.IdlError):
                idl_reader.parse("[uuid(F26542D0-6021-447E-9A82-DA859119052F), version(1.0)] library L {"
                                 + body + "};")


class GeneratorsTest(unittest.TestCase):
    def setUp(self):
        self.library = idl_reader.parse(LIBRARY)

    def test_manifest(self):
        namespace = "{urn:schemas-microsoft-com:asm.v1}"
        root = ElementTree.fromstring(sxs_manifest.manifest(self.library, "amd64").encode("utf-8"))
        identity = root.find(namespace + "assemblyIdentity").attrib
        self.assertEqual((identity["name"], identity["processorArchitecture"], identity["version"]),
                         ("Orbex.sxs", "amd64", "1.0.0.0"))
        classes = root.findall(f"{namespace}file/{namespace}comClass")
        self.assertEqual([(c.get("clsid"), c.get("progid"), c.get("threadingModel")) for c in classes],
                         [("{57AE36C2-A5B6-4D55-B408-3C983B4D45D6}", "Lib.Thing", "Apartment")])
        stubs = root.findall(namespace + "comInterfaceExternalProxyStub")
        self.assertEqual([(s.get("iid"), s.get("tlbid")) for s in stubs],
                         [("{9FAFC5DA-F681-45D6-A0F7-FEC808DE20D3}", "{F26542D0-6021-447E-9A82-DA859119052F}")])
        typelib = root.find(f"{namespace}file/{namespace}typelib").attrib
        self.assertEqual((typelib["version"], typelib["helpdir"]), ("7.0", ""))

    def test_reference_defaults(self):
        pages = reference_pages.Pages(self.library)
        rows = {  # parameter: default as the page shows it
            "Text": '`""`', "Ref": '"" (written as 0)', "Flags": "`vqB` (4)", "Both": "`vqHex` + `vqA` (17)",
            "Yes": "True (65535)", "Missing": "none: an omitted argument arrives as missing", "Other": "",
        }
        for param in self.library.interfaces[0].members[2].arguments:
            with self.subTest(param.name):
                self.assertEqual(pages.default_text(param), rows[param.name])

    def test_reference_page(self):
        page = reference_pages.Pages(self.library).class_page(self.library.coclasses[1])
        self.assertIn("| Created by clients | no |", page)
        self.assertIn("| Handed out by | `Hidden.Make` |", page)
        self.assertIn("| 7 | `Name` | property write | 0x68030002 |  |  |", page)
        self.assertIn("| 8 | `Name` | property read | 0x68030002 | String (`BSTR`) | Says \\| what |", page)
        self.assertIn("| `Other` | [Hidden](Hidden.md) (`_Thing*`) | in, out, by reference | no |  |", page)


if __name__ == "__main__":
    unittest.main()
