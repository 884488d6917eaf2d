' Orbex from VBScript: objects handed out by FileLib and SystemLib, optional arguments, and an
' error that carries a platform code. Run it with: cscript //nologo files.vbs
Option Explicit

Const vqSFWindows = 36, vqDTFixed = 3

Dim files, windows, info, disk, sys, os

Set files = CreateObject("Orbex.FileLib")
WScript.Echo "File name: " & files.ParseFilename("C:\Data\Report.2024.txt")
WScript.Echo "Extension: " & files.ParseFilenameExt("C:\Data\Report.2024.txt")
WScript.Echo "Size: " & files.FormatSize(1536) & " or " & files.FormatSize(1536, 0)   ' DecimalPlaces: 2 or given

' FileLib hands out FileInfo and DiskInfo objects, each loaded from the name it is given.
windows = files.GetSpecialFolder(vqSFWindows)
Set info = files.FileInfo(windows)
WScript.Echo "Windows folder is a folder: " & info.AttributeDirectory
Set disk = files.DiskInfo(windows)                 ' the root is taken from the path
WScript.Echo "Its drive is fixed: " & (disk.DriveType = vqDTFixed) & ", root " & disk.RootName

' SystemLib hands out a new OSInfo, PowerInfo, MemoryInfo or ScreenInfo at every read.
Set sys = CreateObject("Orbex.SystemLib")
Set os = sys.OSInfo
WScript.Echo "Windows NT family: " & (os.PlatformID = 2) & ", screen " & _
             sys.ScreenInfo.HorizontalResolution & " pixels wide"
WScript.Echo "A GUID has " & Len(sys.GetGUID) & " characters"

' FileLib and DiskInfo raise the platform's error code (3: the path was not found).
On Error Resume Next
files.CurrentFolder = windows & "\No\Such\Folder"
If Err.Number <> 0 Then
    WScript.Echo "Error " & Err.Number & " from " & Err.Source & ": " & Err.Description
End If
Err.Clear
On Error GoTo 0

Set os = Nothing: Set sys = Nothing: Set disk = Nothing: Set info = Nothing: Set files = Nothing
WScript.Echo "Done."
