' A file and a volume described from VBScript: a FileInfo on the script host itself, a missing
' name, and a DiskInfo on drive C: with the caller's root text left as it was.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim shell, windows, hostPath, info, disk, root, stamp
Set shell = CreateObject("WScript.Shell")
' Wine's ExpandEnvironmentStrings keeps the terminating NUL inside the text it returns.
windows = shell.ExpandEnvironmentStrings("%WINDIR%")
If InStr(windows, Chr(0)) > 0 Then windows = Left(windows, InStr(windows, Chr(0)) - 1)
hostPath = windows & "\system32\kernel32.dll"

Set info = CreateObject("Orbex.FileInfo")
Check info.Filename = "", "a new FileInfo has no name"
Check info.AttributeReadOnly = False, "a new FileInfo has no attributes"

info.Filename = hostPath
Check info.Filename = hostPath, "Filename gives back the text assigned"
Check info.FileType = 1, "FileType of a file on disk"
Check info.Size > 0 And info.Size = Int(info.Size), "Size in whole bytes"
Check TypeName(info.Size) = "Currency", "Size is a Currency"
Check info.AttributeDirectory = False, "a file is no folder"
stamp = info.LastWriteDate
Check TypeName(stamp) = "Date", "LastWriteDate is a Date"
Check stamp > DateSerial(1990, 1, 1) And stamp < Now + 1, "LastWriteDate is a real moment"
Check Round((stamp - Int(stamp)) * 86400, 6) = Int((stamp - Int(stamp)) * 86400 + 0.5), "LastWriteDate in whole seconds"
Check Len(info.Version) > 0, "a system module has a version"
Dim parts: parts = Split(info.Version, ".")
Check info.MajorVersion = CInt(parts(0)), "MajorVersion is the first part of Version"
Check info.MinorVersion = CInt(parts(1)), "MinorVersion is the second part of Version"

info.Filename = "C:\no\such\file.txt"
Check info.Size = 0, "a missing file has size 0"
Check info.AttributeHidden And info.AttributeReadOnly, "a missing file shows every attribute"
Check info.LastWriteDate = stamp, "the dates of the last file that opened stay"
Check info.Version = "", "a missing file has no version"

info.Filename = windows
Check info.AttributeDirectory, "a folder on the NT family"

Set disk = CreateObject("Orbex.DiskInfo")
Check disk.SerialNumberHex = "0000-0000", "a new DiskInfo has no serial number"
root = "C:\windows"
disk.RootName = root
Check root = "C:\windows", "the caller's text is left as it was"
Check disk.RootName = "C:\", "RootName is the parsed root"
Check disk.DriveType = 3, "drive C: is fixed"
Check disk.TotalBytes > 0, "drive C: has a size"
Check disk.TotalBytesUsed = disk.TotalBytes - disk.TotalBytesFree, "used is total minus free"
Check Len(disk.SerialNumberHex) = 9 And Mid(disk.SerialNumberHex, 5, 1) = "-", "serial number in hex"

disk.RootName = "Q:\"
Check disk.RootName = "Q:\", "a missing root is stored"
Check disk.DriveType = 3, "the figures of drive C: stay"

On Error Resume Next
disk.VolumeLabel = "NAME"
Check Err.Number <> 0, "renaming a missing volume fails"
Check Err.Source = "Quillet:DiskInfo:VolumeLabel", "Source of the failed rename"
Check Err.Description = "Could not set volume label.", "Description of the failed rename"
On Error GoTo 0

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
