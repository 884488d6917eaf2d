' Paths taken apart from VBScript, and folders made, measured and removed, with FileLib's
' failures as a script sees them.
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

' Each row: the path, then its root, path, file name and extension.
Dim rows, row, i
rows = Array( _
    Array("C:\Dir\File.txt", "C:\", "C:\Dir\", "File.txt", "txt"), _
    Array("C:\Dir.old\File", "C:\", "C:\Dir.old\", "File", "old\File"), _
    Array("C:File.txt", "C:\", "C:File.txt", "C:File.txt", "txt"), _
    Array("archive.tar.gz", "", "archive.tar.gz", "archive.tar.gz", "gz"), _
    Array("\\Server\Share\Dir\File.txt", "\\Server\Share\", "\\Server\Share\Dir\", "File.txt", "txt"), _
    Array("\\Server\Share", "\\Server\Share\", "\\Server\", "Share", ""), _
    Array("//Server/Share/File.txt", "", "//Server/Share/File.txt", "//Server/Share/File.txt", "txt"), _
    Array("   C:\Dir\File.txt  ", "C:\", "C:\Dir\", "File.txt", "txt"))
For i = 0 To UBound(rows)
    row = rows(i)
    Check lib.ParseFilenameRoot(row(0)) = row(1), "ParseFilenameRoot of " & row(0)
    Check lib.ParseFilenamePath(row(0)) = row(2), "ParseFilenamePath of " & row(0)
    Check lib.ParseFilename(row(0)) = row(3), "ParseFilename of " & row(0)
    Check lib.ParseFilenameExt(row(0)) = row(4), "ParseFilenameExt of " & row(0)
Next

' Drives: C: is there in every form a person would write it. Wine's VBScript can hold the
' String() arrays of DriveList and CDROMList but neither index, bound nor walk them, so the C++
' client test reads those.
Check lib.DriveExists("c") And lib.DriveExists("C:\"), "DriveExists C"
Check lib.DriveReady("C:\"), "DriveReady C:\"

' A folder made level by level, measured and removed.
Dim temp, top, made
temp = lib.GetSpecialFolder(-1)
Check Right(temp, 1) = "\", "the temporary folder ends in a backslash"
Randomize
top = temp & "OrbexScript" & Int(Rnd * 1000000000)
made = lib.CreateFolder(top & "\one\two")
Check made, "CreateFolder makes every level"
Check lib.FolderExists(top & "\one\two\"), "FolderExists with a trailing backslash"
Check Not lib.CreateFolder(top & "\one"), "CreateFolder of a folder that is there answers False"
Check lib.GetFolderSize(top) = 0, "an empty tree has size 0"
Check TypeName(lib.GetFolderSize(top)) = "Currency", "GetFolderSize is Currency"
Check Not lib.DeleteFolder(top & "\one"), "DeleteFolder keeps a folder with contents"
Check lib.DeleteFolder(top & "\one\two") And lib.DeleteFolder(top & "\one") And lib.DeleteFolder(top), _
    "DeleteFolder removes empty folders"
Check Not lib.FolderExists(top), "the tree is gone"

Check lib.FormatSize(1536) = "1.50 KB", "FormatSize 1536"
Check lib.FormatSize(1, 0) = "1 byte", "FormatSize 1 with no decimals"

' Failures: a relative path for CreateFolder, a missing current folder.
On Error Resume Next
made = lib.CreateFolder("relative\path")
Check Err.Number = 5, "CreateFolder without a root raises 5"
Err.Clear
lib.CurrentFolder = top & "\missing"
Check Err.Number <> 0, "setting a missing current folder fails"
Check Err.Source = "Quillet:FileLib:CurrentFolder", "Err.Source of CurrentFolder"
Check Err.Description = "Could not set current folder.", "Err.Description of CurrentFolder"
Err.Clear
On Error GoTo 0

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
