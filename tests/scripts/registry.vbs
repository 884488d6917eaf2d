' Registry work from VBScript: variables passed by reference, objects passed from variables,
' and a failure's Number, Source and Description.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Const Path = "Software\OrbexScriptTest"
Dim reg, root, key, copy, renamed, dt, value
Set reg = CreateObject("Orbex.RegLib")
Set root = reg.CurrentUser
root.DeleteSubKeyTree Path
Set key = root.CreateSubKey(Path & "\Source")
Check Not (key Is Nothing), "CreateSubKey"

key.SetValue "text", "hello"
key.SetValue "number", 42, 4
key.SetValue "expand", "%WINDIR%\x", 2
Check key.GetValue("text") = "hello", "GetValue text"
Check key.GetValue("missing", 7) = 7, "GetValue default"

'' DataType comes back into the script's variable, whatever number it held before.
value = key.GetValueEx("number", dt)
Check dt = 4 And value = 42, "GetValueEx number by reference"
dt = 99
value = key.GetValueEx("expand", dt, "", False)
Check dt = 2 And value = "%WINDIR%\x", "GetValueEx unexpanded"
Check key.GetValue("expand") <> "%WINDIR%\x", "GetValue expands by default"

' A key passed from a script variable, and given back as the result.
Set copy = root.CreateSubKey(Path & "\Copy")
Dim returned
Set returned = key.CopySubKeyEx(copy)
Check returned Is copy, "CopySubKeyEx returns its destination"
Check copy.GetValue("text") = "hello", "values copied into the destination"
Check copy.ValueCount = 3, "three values copied"

Set renamed = key.RenameSubKey("Renamed")
Check root.SubKeyExists(Path & "\Renamed"), "renamed key exists"
Check Not root.SubKeyExists(Path & "\Source"), "source is gone"
Check key.GetValue("number") = 42, "the receiver now works on the renamed key"

' A failure: Number, Source and Description as the class raises them.
On Error Resume Next
Set value = key.OpenSubKey(String(256, "k"))
Check Err.Number = -2147221401, "Err.Number of a name over 255 characters"
Check Err.Source = "OpenSubKey", "Err.Source"
Check Err.Description = "The length of the specified subkey is greater than 255 characters.", "Err.Description"
Err.Clear
On Error GoTo 0

root.DeleteSubKeyTree Path
Check Not root.SubKeyExists(Path), "tree deleted"

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
