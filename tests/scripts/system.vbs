' The system classes from VBScript: Wine's version record, new objects from SystemLib, GUID
' texts, Currency sizes and the screen. No session, power or keyboard action is called here.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim sys, os, os2, mem, screen, anyTrue, guid1, guid2
Set sys = CreateObject("Orbex.SystemLib")

' Wine reports Windows 7 (6.1), which the library has no name for.
Set os = sys.OSInfo
Check os.VersionName = "Unknown Operating System", "VersionName under Wine: " & os.VersionName
Check os.VersionNo = "6.1" And os.PlatformID = 2, "VersionNo and PlatformID"
Check TypeName(os.ProductType) = "Byte", "ProductType is a Byte"
anyTrue = os.IsWin32s Or os.IsWin95 Or os.IsWin95OSR2 Or os.IsWin98 Or os.IsWin98SE Or os.IsWinME Or _
    os.IsWin9x Or os.IsWinNT3 Or os.IsWinNT4 Or os.IsWinNT4Workstation Or os.IsWinNT4Server Or _
    os.IsSmallBusinessServer Or os.IsSmallBusinessServer2000 Or os.IsWin2000 Or os.IsWin2000Professional Or _
    os.IsWin2000Server Or os.IsWin2000AdvancedServer Or os.IsWin2000DatacenterServer Or os.IsWinXP Or _
    os.IsWinXPHomeEdition Or os.IsWinXPProfessional Or os.IsWinDotNET Or os.IsWinDotNETServer Or _
    os.IsWinDotNETDatacenterServer Or os.IsWinDotNETEnterpriseServer
Check TypeName(anyTrue) = "Boolean" And Not anyTrue, "no name test is True"

Set os2 = sys.OSInfo
Check Not (os Is os2), "two reads of OSInfo give two objects"
Check os.VersionName = os2.VersionName And os.BuildNo = os2.BuildNo, "with equal content"

guid1 = sys.GetGUID
guid2 = sys.GetGUID
Check Len(guid1) = 38 And Len(guid2) = 38 And guid1 <> guid2, "two GUID texts of 38 characters"
Check Left(guid1, 1) = "{" And Mid(guid1, 10, 1) = "-" And Right(guid1, 1) = "}", "brace form"
Check Len(sys.ComputerName) > 0 And Len(sys.UserName) > 0, "computer and user name"

Set mem = sys.MemoryInfo
Check TypeName(mem.TotalPhysical) = "Currency", "sizes are Currency"
Check mem.TotalPhysical > 0 And mem.TotalPhysical = Int(mem.TotalPhysical), "whole byte counts"
Check mem.AvailablePhysical <= mem.TotalPhysical, "available below total"

Set screen = sys.ScreenInfo
Check screen.HorizontalResolution = 1024 And screen.VerticalResolution = 768, "headless screen 1024x768"
Check TypeName(screen.ColorDepth) = "Integer", "figures are Integer"

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
