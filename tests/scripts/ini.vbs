' INI files from VBScript: the two settings, values with defaults passed from variables, deletes,
' and a failure that arrives with Err.Number 0, so that only its Source and Description tell.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim fso, file, other, ini, size, fallback, text, value
Set fso = CreateObject("Scripting.FileSystemObject")
file = fso.BuildPath(fso.GetSpecialFolder(2), "OrbexScript" & fso.GetBaseName(fso.GetTempName()) & ".ini")
other = file & ".other"

Set ini = CreateObject("Orbex.INILib")
Check ini.Filename = "", "Filename starts empty"
Check ini.BufferSize = 32767, "BufferSize starts at 32767"
size = 1024
ini.BufferSize = size
Check ini.BufferSize = 1024 And size = 1024, "BufferSize from a variable by reference"
ini.Filename = file
Check ini.Filename = file, "Filename"

' A Long is stored as its digits and read back either way.
ini.WriteValue "App", "Count", 42
Check ini.GetNumericValue("App", "Count") = 42, "GetNumericValue of a written Long"
Check ini.GetStringValue("App", "Count") = "42", "GetStringValue of a written Long"
ini.WriteValue "App", "Name", "Orbex"
Check ini.GetStringValue("App", "Name") = "Orbex", "GetStringValue"

' Defaults from variables, passed by reference and left as they were.
fallback = 7
Check ini.GetNumericValue("App", "Missing", fallback) = 7 And fallback = 7, "GetNumericValue default"
Check ini.GetNumericValue("App", "Missing") = 0, "GetNumericValue omitted default"
text = "none"
Check ini.GetStringValue("App", "Missing", text) = "none" And text = "none", "GetStringValue default"

' INIFile serves one call; Filename stays.
Check ini.GetStringValue("App", "Name", "elsewhere", other) = "elsewhere", "INIFile overrides Filename"
Check ini.Filename = file, "Filename unchanged by INIFile"

ini.DeleteKey "App", "Name"
ini.DeleteKey "App", "Name"
Check ini.GetStringValue("App", "Name", "gone") = "gone", "DeleteKey"
Check ini.GetNumericValue("App", "Count") = 42, "DeleteKey leaves the other keys"

' A failure: a stored -1 can't be answered. Err.Number is 0, so Err.Source tells.
ini.WriteValue "App", "Bad", -1
On Error Resume Next
value = "untouched"
value = ini.GetNumericValue("App", "Bad")
Check Err.Number = 0, "Err.Number of an INILib failure"
Check Err.Source = "INILib:GetNumericValue", "Err.Source"
Check Err.Description = "Error retrieving INI value.", "Err.Description"
Check value = "untouched", "the failed call assigned nothing"
Err.Clear
On Error GoTo 0

ini.DeleteSection "App"
ini.DeleteSection "App"
Check ini.GetNumericValue("App", "Count", fallback) = 7, "DeleteSection"

If fso.FileExists(file) Then fso.DeleteFile file
Check Not fso.FileExists(other), "a read creates no file"

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
