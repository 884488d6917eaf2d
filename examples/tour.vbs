' A short tour of Orbex from VBScript. Run it with: cscript //nologo tour.vbs
Option Explicit

Dim className, obj, reg, key, work, copy, renamed, dataType

WScript.Echo "Orbex: creating every class a client may create"
For Each className In Array("RegLib", "SystemLib", "OSInfo", "PowerInfo", "MemoryInfo", _
                            "ScreenInfo", "FileLib", "FileInfo", "DiskInfo", "INILib")
    Set obj = CreateObject("Orbex." & className)
    WScript.Echo "  Orbex." & className
Next

WScript.Echo ""
WScript.Echo "The registry's root keys on this machine"
Set reg = CreateObject("Orbex.RegLib")
ShowRoot "ClassesRoot", reg.ClassesRoot
ShowRoot "CurrentUser", reg.CurrentUser
ShowRoot "LocalMachine", reg.LocalMachine
ShowRoot "Users", reg.Users
ShowRoot "CurrentConfig", reg.CurrentConfig
ShowRoot "PerformanceData", reg.PerformanceData
ShowRoot "DynData", reg.DynData

Sub ShowRoot(label, key)
    If key Is Nothing Then
        WScript.Echo "  " & label & ": not on this system"
    Else
        WScript.Echo "  " & key.Name & "  " & key.SubKeyCount & " sub-keys, " & key.ValueCount & " values"
    End If
End Sub

Set key = reg.LocalMachine("  \\otherpc ")
WScript.Echo "  a root for another machine keeps its name: " & key.MachineName

WScript.Echo ""
WScript.Echo "Registry work under HKEY_CURRENT_USER\Software\OrbexTour"
Set work = reg.CurrentUser.CreateSubKey("Software\OrbexTour\Settings")
work.SetValue "Greeting", "Hello from Orbex"           ' text, the default type
work.SetValue "Count", 42, 4                           ' a 32-bit number
work.SetValue "Big", 1234567890123, 11                 ' a 64-bit number, read back as Currency
work.SetValue "Home", "%USERPROFILE%\Orbex", 2         ' text with variables, expanded on reading
WScript.Echo "  " & work.Name & " holds " & work.ValueCount & " values"
WScript.Echo "  Greeting = " & work.GetValue("Greeting")
WScript.Echo "  Count    = " & work.GetValue("Count")
WScript.Echo "  Big      = " & work.GetValue("Big")
WScript.Echo "  Home     = " & work.GetValueEx("Home", dataType, "", False) & " (type " & dataType & "), expanded: " & work.GetValue("Home")
WScript.Echo "  Missing  = " & work.GetValue("Missing", "(default)")

Set copy = work.CopySubKey("Backup")
WScript.Echo "  copied to " & copy.Name & " with " & copy.ValueCount & " values"
Set renamed = copy.RenameSubKey("Archive")
WScript.Echo "  renamed to " & renamed.Name & "; Backup still there: " & reg.CurrentUser.SubKeyExists("Software\OrbexTour\Backup")
reg.CurrentUser.DeleteSubKeyTree "Software\OrbexTour"
WScript.Echo "  removed again: " & (Not reg.CurrentUser.SubKeyExists("Software\OrbexTour"))

WScript.Echo ""
WScript.Echo "An INI file in the temporary folder"
Dim iniFiles, iniPath, ini, iniWidth
Set iniFiles = CreateObject("Scripting.FileSystemObject")
iniPath = iniFiles.BuildPath(iniFiles.GetSpecialFolder(2), "OrbexTour.ini")
Set ini = CreateObject("Orbex.INILib")
ini.Filename = iniPath
ini.WriteValue "Window", "Width", 800
ini.WriteValue "Window", "Title", "Orbex tour"
ini.WriteSection "Recent", Array("File1=C:\notes.txt", "File2=C:\plan.txt")
WScript.Echo "  " & iniPath & " holds:"
WScript.Echo "  Window.Title  = " & ini.GetStringValue("Window", "Title")
WScript.Echo "  Window.Width  = " & ini.GetNumericValue("Window", "Width")
WScript.Echo "  Recent.File2  = " & ini.GetStringValue("Recent", "File2")
iniWidth = 640
WScript.Echo "  Window.Height = " & ini.GetNumericValue("Window", "Height", iniWidth) & " (missing: the default)"
ini.DeleteSection "Recent"
WScript.Echo "  after DeleteSection, Recent.File2 = " & ini.GetStringValue("Recent", "File2", "(gone)")
iniFiles.DeleteFile iniPath
WScript.Echo "  removed again: " & (Not iniFiles.FileExists(iniPath))

WScript.Echo ""
WScript.Echo "A system report"
Dim sysLib, sysOS, sysMemory, sysScreen
Set sysLib = CreateObject("Orbex.SystemLib")
Set sysOS = sysLib.OSInfo
WScript.Echo "  System:   " & sysOS.VersionName & ", version " & sysOS.VersionNo & ", build " & sysOS.BuildNo & _
             " " & sysOS.AdditionalInfo
Set sysMemory = sysLib.MemoryInfo                      ' sizes are Currency byte counts
WScript.Echo "  Memory:   " & Int(sysMemory.TotalPhysical / 1048576) & " MB, " & _
             Int(sysMemory.AvailablePhysical / 1048576) & " MB free, load " & sysMemory.MemoryLoad & "%"
Set sysScreen = sysLib.ScreenInfo
WScript.Echo "  Screen:   " & sysScreen.HorizontalResolution & " x " & sysScreen.VerticalResolution & ", " & _
             sysScreen.ColorDepth & " bits, " & sysScreen.VerticalRefreshRate & " Hz"
WScript.Echo "  Power:    " & sysLib.PowerInfo.ACLineStatusName & ", " & sysLib.PowerInfo.BatteryStatusName
WScript.Echo "  Computer: " & sysLib.ComputerName & ", user " & sysLib.UserName
WScript.Echo "  A new GUID: " & sysLib.GetGUID

WScript.Echo ""
WScript.Echo "Files and disks"
Dim files, windowsFolder, notepad, disk
Set files = CreateObject("Orbex.FileLib")
windowsFolder = files.GetSpecialFolder(36)                 ' vqSFWindows
WScript.Echo "  Windows folder: " & windowsFolder & " on root " & files.ParseFilenameRoot(windowsFolder)
Set notepad = files.FileInfo(windowsFolder & "\notepad.exe")
WScript.Echo "  notepad.exe: " & files.FormatSize(notepad.Size) & ", written " & notepad.LastWriteDate & _
             ", extension " & files.ParseFilenameExt(notepad.Filename)
Set disk = files.DiskInfo("C:\")
WScript.Echo "  " & disk.RootName & " " & disk.FileSystem & ", serial " & disk.SerialNumberHex & ", " & _
             files.FormatSize(disk.TotalBytesFree) & " free of " & files.FormatSize(disk.TotalBytes)
WScript.Echo "  files directly in the Windows folder: " & files.FormatSize(files.GetFolderSize(windowsFolder, False))

WScript.Echo ""
WScript.Echo "Tour complete."
