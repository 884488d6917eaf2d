' FileLib from VBScript: a path taken apart, drives found, folders made and removed, and a
' failure as a script sees it.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim lib
Set lib = CreateObject("Orbex.FileLib")
Check lib.ParseFilenameRoot(" \\Server\Share\Dir\File.txt ") = "\\Server\Share\", "ParseFilenameRoot of a share"

' Drives: C: is there in every form a person would write it. Wine's VBScript can hold the
' String() arrays of DriveList and CDROMList but neither index, bound nor walk them, so the C++
' client test reads those.
Check lib.DriveExists("c") And lib.DriveExists("C:\"), "DriveExists C"
Check lib.DriveReady("C:\"), "DriveReady C:\"

' A folder made level by level and removed.
Dim top, made
Randomize
top = lib.GetSpecialFolder(-1) & "OrbexScript" & Int(Rnd * 1000000000)
made = lib.CreateFolder(top & "\one\two")
Check made, "CreateFolder makes every level"
Check lib.FolderExists(top & "\one\two\"), "FolderExists with a trailing backslash"
Check Not lib.DeleteFolder(top & "\one"), "DeleteFolder keeps a folder with contents"
Check lib.DeleteFolder(top & "\one\two") And lib.DeleteFolder(top & "\one") And lib.DeleteFolder(top), _
    "DeleteFolder removes empty folders"

On Error Resume Next
made = lib.CreateFolder("relative\path")
Check Err.Number = 5, "CreateFolder without a root raises 5"
On Error GoTo 0

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
