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

Dim sys, os, os2, mem, screen, power, guid1, guid2, anyTrue
Set sys = CreateObject("Orbex.SystemLib")

' Wine reports Windows 7 (6.1), which the library has no name for.
Set os = sys.OSInfo
Check os.VersionName = "Unknown Operating System", "VersionName under Wine: " & os.VersionName
Check os.VersionNo = "6.1", "VersionNo: " & os.VersionNo
Check os.MajorVersion = 6 And os.MinorVersion = 1, "major and minor"
Check os.PlatformID = 2, "PlatformID"
Check Left(os.ServicePack, 13) = "Service Pack ", "ServicePack: " & os.ServicePack
Check TypeName(os.ProductType) = "Byte", "ProductType is a Byte"
anyTrue = os.IsWin32s Or os.IsWin95 Or os.IsWin95OSR2 Or os.IsWin98 Or os.IsWin98SE Or os.IsWinME Or _
    os.IsWin9x Or os.IsWinNT3 Or os.IsWinNT4 Or os.IsWinNT4Workstation Or os.IsWinNT4Server Or _
    os.IsSmallBusinessServer Or os.IsSmallBusinessServer2000 Or os.IsWin2000 Or os.IsWin2000Professional Or _
    os.IsWin2000Server Or os.IsWin2000AdvancedServer Or os.IsWin2000DatacenterServer Or os.IsWinXP Or _
    os.IsWinXPHomeEdition Or os.IsWinXPProfessional Or os.IsWinDotNET Or os.IsWinDotNETServer Or _
    os.IsWinDotNETDatacenterServer Or os.IsWinDotNETEnterpriseServer
Check TypeName(anyTrue) = "Boolean", "the name tests are Booleans"
Check Not anyTrue, "no name test is True"

' Each read is a new object with the same content.
Set os2 = sys.OSInfo
Check Not (os Is os2), "two reads of OSInfo give two objects"
Check os.VersionName = os2.VersionName And os.BuildNo = os2.BuildNo, "equal content"

guid1 = sys.GetGUID
guid2 = sys.GetGUID
Check Len(guid1) = 38 And Len(guid2) = 38, "GUID texts of 38 characters"
Check guid1 <> guid2, "two different GUIDs"
Check Left(guid1, 1) = "{" And Right(guid1, 1) = "}" And Mid(guid1, 10, 1) = "-", "brace form"

Check Len(sys.ComputerName) > 0, "ComputerName"
Check Len(sys.UserName) > 0, "UserName"

Set mem = sys.MemoryInfo
Check TypeName(mem.TotalPhysical) = "Currency", "sizes are Currency"
Check mem.TotalPhysical > 0 And mem.AvailablePhysical <= mem.TotalPhysical, "physical memory"
Check mem.TotalPhysical = Int(mem.TotalPhysical), "whole byte counts"
Check mem.MemoryLoad >= 0 And mem.MemoryLoad <= 100, "MemoryLoad"

Set screen = sys.ScreenInfo
Check screen.HorizontalResolution = 1024 And screen.VerticalResolution = 768, _
    "headless screen: " & screen.HorizontalResolution & "x" & screen.VerticalResolution
Check TypeName(screen.ColorDepth) = "Integer", "figures are Integer"

Set power = CreateObject("Orbex.PowerInfo")
Check power.ACLineStatusName <> "" Or power.ACLineStatus = 255, "ACLineStatusName"
Check sys.IsShutdownAllowed = True Or sys.IsShutdownAllowed = False, "IsShutdownAllowed is a Boolean"

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
