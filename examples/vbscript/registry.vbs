' Orbex from VBScript: registry keys, typed values, optional arguments and errors.
' Run it with: cscript //nologo registry.vbs
Option Explicit

' VBScript does not read the type library's constants: declare the ones you use.
Const vqDWORD = 4, vqQWORD = 11
Const vqInvalidArgument = -2147221401

Dim reg, settings, value, dataType

' Create a class by its ProgID. RegLib hands out the root keys; every key hands out further keys.
Set reg = CreateObject("Orbex.RegLib")
Set settings = reg.CurrentUser.CreateSubKey("Software\OrbexExamples\VBScript")

settings.SetValue "Greeting", "Hello"                   ' ValueType left out: vqString
settings.SetValue "Count", 42, vqDWORD
settings.SetValue "Big", 1234567890123, vqQWORD         ' reads back as Currency
WScript.Echo "Key: " & settings.Name

value = settings.GetValueEx("Count", dataType)          ' dataType receives the stored type
WScript.Echo "Count = " & value & " (" & TypeName(value) & ", type " & dataType & ")"
WScript.Echo "Big = " & settings.GetValue("Big") & " (" & TypeName(settings.GetValue("Big")) & ")"
WScript.Echo "Missing = " & settings.GetValue("Missing", "(default)")

' Counts and single values read the same in every script host; the name lists are String()
' arrays, which a script can only pass on (see docs/clients/vbscript-jscript.md).
WScript.Echo "Values: " & settings.ValueCount & ", sub-keys: " & settings.SubKeyCount

' A failure arrives in Err. RegistryKey numbers are negative (the vqRegExceptions values).
On Error Resume Next
reg.CurrentUser.DeleteSubKey "Software\OrbexExamples\NoSuchKey", True
If Err.Number = vqInvalidArgument Then
    WScript.Echo "Error " & Err.Number & " from " & Err.Source & ": " & Err.Description
End If
Err.Clear
On Error GoTo 0

' Letting go of a key closes it; CloseKey closes it at once.
settings.CloseKey
Set settings = Nothing
reg.CurrentUser.DeleteSubKeyTree "Software\OrbexExamples\VBScript"
If reg.CurrentUser.OpenSubKey("Software\OrbexExamples").SubKeyCount = 0 Then
    reg.CurrentUser.DeleteSubKey "Software\OrbexExamples"
End If
Set reg = Nothing
WScript.Echo "Done."
