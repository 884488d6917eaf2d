' INI files from VBScript: defaults passed from variables, INIFile for one call, and a failure
' that arrives with Err.Number 0, so that only its Source and Description tell.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim fso, file, ini, size, fallback, text, value
Set fso = CreateObject("Scripting.FileSystemObject")
file = fso.BuildPath(fso.GetSpecialFolder(2), "OrbexScript" & fso.GetBaseName(fso.GetTempName()) & ".ini")

Set ini = CreateObject("Orbex.INILib")
Check ini.Filename = "" And ini.BufferSize = 32767, "the settings start empty and at 32767"
size = 1024
ini.BufferSize = size
ini.Filename = file
Check ini.BufferSize = 1024 And size = 1024 And ini.Filename = file, "the settings from variables"

ini.WriteValue "App", "Count", 42
Check ini.GetNumericValue("App", "Count") = 42 And ini.GetStringValue("App", "Count") = "42", "a Long read both ways"
fallback = 7
text = "none"
Check ini.GetNumericValue("App", "Missing", fallback) = 7 And fallback = 7, "GetNumericValue default"
Check ini.GetStringValue("App", "Missing", text) = "none" And text = "none", "GetStringValue default"
Check ini.GetStringValue("App", "Count", "elsewhere", file & ".other") = "elsewhere", "INIFile for one call"
Check ini.Filename = file And Not fso.FileExists(file & ".other"), "Filename stays; a read makes no file"

ini.WriteValue "App", "Bad", -1
On Error Resume Next
value = "untouched"
value = ini.GetNumericValue("App", "Bad")
Check Err.Number = 0 And value = "untouched", "a failure with Err.Number 0 assigns nothing"
Check Err.Source = "INILib:GetNumericValue" And Err.Description = "Error retrieving INI value.", "its Source and Description"
On Error GoTo 0

If fso.FileExists(file) Then fso.DeleteFile file
If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
