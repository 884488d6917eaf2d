"""Orbex from Python with pywin32 (pip install pywin32).

The interpreter must match a registered Orbex.dll: 64-bit Python needs the 64-bit build
registered, 32-bit Python the 32-bit one. Run it with: python orbex_example.py
"""
import pythoncom
import pywintypes
import win32com.client

FACILITY_CONTROL = 0x0A


def orbex_error(error):
    """Number, Source and Description of a failed call, as a script would see them."""
    if error.excepinfo is None:  # refused before the member ran (a wrong name or argument)
        return error.hresult, "", error.strerror
    _, source, description, _, _, scode = error.excepinfo
    if (scode >> 16) & 0x1FFF == FACILITY_CONTROL:
        number = scode & 0xFFFF  # run-time numbers, platform codes, and INILib's 0
    else:
        number = scode  # the registry's numbers are HRESULTs themselves
    return number, source, description


def main():
    # EnsureDispatch binds early: it generates a module from the type library once, which also
    # brings the enumerations as win32com.client.constants. Dispatch() alone binds late.
    reg = win32com.client.gencache.EnsureDispatch("Orbex.RegLib")
    c = win32com.client.constants

    settings = reg.CurrentUser.CreateSubKey(r"Software\OrbexExamples\Python")
    settings.SetValue("Greeting", "Hello")  # ValueType left out: vqString
    settings.SetValue("Count", 42, c.vqDWORD)
    settings.SetValue("Flags", b"\x01\x02\xff", c.vqBinary)  # bytes go in as Byte()
    # A list goes in as an array of Variant; vqMultiString takes only a String() array.
    names = win32com.client.VARIANT(pythoncom.VT_ARRAY | pythoncom.VT_BSTR, ["alpha", "beta"])
    settings.SetValue("Names", names, c.vqMultiString)

    # By-reference arguments come back after the result.
    count, data_type = settings.GetValueEx("Count", 0)
    print(f"Count = {count} (type {data_type})")
    print("Flags =", bytes(settings.GetValue("Flags")).hex(" "))
    print("Names =", ", ".join(settings.GetValue("Names")))  # String() arrives as a tuple
    print("Missing =", settings.GetValue("Missing", "(default)"))

    # A tuple keeps no bounds: the registry's empty list, bounds -1 to -1, arrives as ("",).
    # Use the counts to tell an empty list from one unnamed value.
    print("Values:", settings.GetValueNames() if settings.ValueCount else "none")
    print("Sub-keys:", settings.GetSubKeyNames() if settings.SubKeyCount else "none")

    # Properties that need an argument are methods here; FileLib hands out DiskInfo objects.
    files = win32com.client.gencache.EnsureDispatch("Orbex.FileLib")
    disk = files.DiskInfo("C:\\")
    print(f"C:\\ is {disk.FileSystem}, {files.FormatSize(disk.TotalBytesFree)} free")

    # A failed call raises pywintypes.com_error; Orbex's fields are in excepinfo.
    try:
        reg.CurrentUser.DeleteSubKey(r"Software\OrbexExamples\NoSuchKey", True)
    except pywintypes.com_error as error:
        number, source, description = orbex_error(error)
        if number == c.vqInvalidArgument:
            print(f"Error {number} from {source}: {description}")
    try:
        files.CurrentFolder = r"C:\No\Such\Folder"
    except pywintypes.com_error as error:
        print("Error {} from {}: {}".format(*orbex_error(error)))

    # Objects are released when the last Python reference goes; a released key is closed.
    del settings, disk
    reg.CurrentUser.DeleteSubKeyTree(r"Software\OrbexExamples\Python")
    if reg.CurrentUser.OpenSubKey(r"Software\OrbexExamples").SubKeyCount == 0:
        reg.CurrentUser.DeleteSubKey(r"Software\OrbexExamples")


if __name__ == "__main__":
    main()
