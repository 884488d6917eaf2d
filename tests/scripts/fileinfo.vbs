' A file and a volume described from VBScript: a FileInfo on the script host itself and on a
' missing name, and a DiskInfo on drive C: and on a root that is not there.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim shell, windows, info, disk, stamp
Set shell = CreateObject("WScript.Shell")
' Wine's ExpandEnvironmentStrings keeps the terminating NUL inside the text it returns.
windows = shell.ExpandEnvironmentStrings("%WINDIR%")
If InStr(windows, Chr(0)) > 0 Then windows = Left(windows, InStr(windows, Chr(0)) - 1)

Set info = CreateObject("Orbex.FileInfo")
info.Filename = windows & "\system32\kernel32.dll"
stamp = info.LastWriteDate
Check TypeName(stamp) = "Date" And stamp > DateSerial(1990, 1, 1), "LastWriteDate is a real moment"
Dim parts: parts = Split(info.Version, ".")
Check info.MajorVersion = CInt(parts(0)), "MajorVersion is the first part of Version"

info.Filename = "C:\no\such\file.txt"
Check info.Size = 0 And info.AttributeHidden And info.AttributeReadOnly, "a missing file shows every attribute"
Check info.LastWriteDate = stamp, "the dates of the last file that opened stay"

Set disk = CreateObject("Orbex.DiskInfo")
disk.RootName = "C:\windows"
Check disk.RootName = "C:\" And disk.DriveType = 3, "drive C: is fixed"
disk.RootName = "Q:\"
Check disk.RootName = "Q:\" And disk.DriveType = 3, "a missing root is stored, the figures of drive C: stay"

' Renaming a volume that is not there raises the platform's code (21 under Wine).
On Error Resume Next
disk.VolumeLabel = "NAME"
Check Err.Number = 21, "Number of the failed rename"
Check Err.Source = "Quillet:DiskInfo:VolumeLabel", "Source of the failed rename"
Check Err.Description = "Could not set volume label.", "Description of the failed rename"
On Error GoTo 0

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
