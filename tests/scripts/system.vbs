' The system classes from VBScript: the types a script sees, new objects from SystemLib, GUID
' texts. No session, power or keyboard action is called here.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim sys, os, mem, guid1, guid2
Set sys = CreateObject("Orbex.SystemLib")
Set os = sys.OSInfo
' Wine reports Windows 7 (6.1), which the library has no name for.
Check os.VersionName = "Unknown Operating System" And os.VersionNo = "6.1", "VersionName and VersionNo under Wine"
Check TypeName(os.IsWin9x) = "Boolean" And Not (os.IsWin9x Or os.IsWinXP), "name tests are False Booleans"
Check TypeName(os.ProductType) = "Byte", "ProductType is a Byte"
Check Not (os Is sys.OSInfo), "each read of OSInfo gives a new object"

Set mem = sys.MemoryInfo
Check TypeName(mem.TotalPhysical) = "Currency" And mem.TotalPhysical = Int(mem.TotalPhysical), "whole sizes as Currency"
Check TypeName(sys.ScreenInfo.ColorDepth) = "Integer", "screen figures are Integer"

guid1 = sys.GetGUID
guid2 = sys.GetGUID
Check Len(guid1) = 38 And guid1 <> guid2 And Left(guid1, 1) = "{" And Mid(guid1, 10, 1) = "-", "two GUID texts"

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
