' A short tour of Orbex from VBScript. Run it with: cscript //nologo tour.vbs
Option Explicit

Dim className, obj, reg, rootName, key

WScript.Echo "Orbex: creating every class a client may create"
For Each className In Array("RegLib", "SystemLib", "OSInfo", "PowerInfo", "MemoryInfo", _
                            "ScreenInfo", "FileLib", "FileInfo", "DiskInfo", "INILib")
    Set obj = CreateObject("Orbex." & className)
    WScript.Echo "  Orbex." & className & ": " & TypeName(obj)
Next

WScript.Echo
WScript.Echo "The registry's root keys on this machine"
Set reg = CreateObject("Orbex.RegLib")
For Each rootName In Array("ClassesRoot", "CurrentUser", "LocalMachine", "Users", "CurrentConfig", _
                           "PerformanceData", "DynData")
    Set key = Eval("reg." & rootName)
    If key Is Nothing Then
        WScript.Echo "  " & rootName & ": not on this system"
    Else
        WScript.Echo "  " & key.Name & "  " & key.SubKeyCount & " sub-keys, " & key.ValueCount & " values"
    End If
Next

Set key = reg.LocalMachine("  \\otherpc ")
WScript.Echo "  a root for another machine keeps its name: " & key.MachineName
