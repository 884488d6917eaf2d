Attribute VB_Name = "OrbexExample"
' Orbex from VBA (Office) or VB6, bound early through the type library. First add the reference:
' VBA: Tools > References; VB6: Project > References; tick "Orbex - Class library for the developer."
' Then run ShowOrbex (its output goes to the Immediate window).
Option Explicit

Public Sub ShowOrbex()
    Dim reg As New Orbex.RegLib                 ' As New: created at its first use
    Dim settings As Orbex.RegistryKey
    Dim names() As String
    Dim flags() As Byte
    Dim dataType As Long
    Dim value As Variant
    Dim i As Long

    Set settings = reg.CurrentUser.CreateSubKey("Software\OrbexExamples\VBA")

    ' The enumerations come with the reference; optional arguments may be left out.
    settings.SetValue "Greeting", "Hello"
    settings.SetValue "Count", 42, vqDWORD
    ReDim flags(2)
    flags(0) = 1: flags(1) = 2: flags(2) = 255
    settings.SetValue "Flags", flags, vqBinary  ' only a Byte() array is taken as binary
    settings.SetValue "Names", Split("alpha,beta", ","), vqMultiString   ' Split gives a String()

    value = settings.GetValueEx("Count", dataType)
    Debug.Print "Count = " & value & " (" & TypeName(value) & ", type " & dataType & ")"
    flags = settings.GetValue("Flags")          ' a Byte() inside the Variant
    For i = LBound(flags) To UBound(flags)
        Debug.Print "Flags(" & i & ") = " & flags(i)
    Next
    value = settings.GetValue("Names")          ' a String() inside the Variant
    Debug.Print "Names: " & Join(value, ", ")

    ' String() results go straight into a typed array. The registry's empty list has the bounds
    ' -1 to -1 (one element, ""): test the lower bound.
    names = settings.GetValueNames
    For i = LBound(names) To UBound(names)
        Debug.Print "Value: " & names(i)
    Next
    names = settings.GetSubKeyNames
    If LBound(names) < 0 Then Debug.Print "No sub-keys"

    ' Failures arrive in Err. RegistryKey numbers are negative; FileLib and DiskInfo give the
    ' platform's code; INILib gives 0, so test Err.Source rather than Err.Number there.
    On Error Resume Next
    reg.CurrentUser.DeleteSubKey "Software\OrbexExamples\NoSuchKey", True
    If Err.Number = vqInvalidArgument Then
        Debug.Print "Error " & Err.Number & " from " & Err.Source & ": " & Err.Description
    End If
    Err.Clear
    On Error GoTo 0

    Set settings = Nothing                      ' releasing a key closes it
    reg.CurrentUser.DeleteSubKeyTree "Software\OrbexExamples\VBA"
    If reg.CurrentUser.OpenSubKey("Software\OrbexExamples").SubKeyCount = 0 Then
        reg.CurrentUser.DeleteSubKey "Software\OrbexExamples"
    End If
End Sub

' Objects handed out by FileLib, and an INILib failure with Number 0.
Public Sub ShowFiles()
    Dim files As New Orbex.FileLib
    Dim info As Orbex.FileInfo
    Dim ini As New Orbex.INILib
    Dim path As String
    Dim n As Long

    Set info = files.FileInfo(files.GetSpecialFolder(vqSFWindows))
    Debug.Print "Windows folder is a folder: " & info.AttributeDirectory
    Debug.Print "Drives: " & Join(files.DriveList, " ")

    path = files.GetSpecialFolder(vqSFTemp) & "OrbexExample.vba.ini"   ' the folder ends in "\"
    ini.Filename = path
    ini.WriteValue "Window", "Left", -1
    On Error GoTo IniFailed
    n = ini.GetNumericValue("Window", "Left")
    Kill path
    Exit Sub
IniFailed:
    Debug.Print "Error " & Err.Number & " from " & Err.Source & ": " & Err.Description
    Kill path
End Sub
