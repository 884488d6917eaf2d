' RegLib's roots from VBScript: names, machine names, counts, AutoFlush and the absent roots.
Option Explicit
Dim failures: failures = 0
Sub Check(condition, what)
    If Not condition Then
        WScript.Echo "FAILED: " & what
        failures = failures + 1
    End If
End Sub

Dim reg, key, flag
Set reg = CreateObject("Orbex.RegLib")

Check reg.LocalMachine.Name = "HKEY_LOCAL_MACHINE\", "LocalMachine.Name"
Check reg.CurrentUser.Name = "HKEY_CURRENT_USER\", "CurrentUser.Name"
Check reg.ClassesRoot.Name = "HKEY_CLASSES_ROOT\", "ClassesRoot.Name"
Check reg.Users.Name = "HKEY_USERS\", "Users.Name"
Check reg.CurrentConfig.Name = "HKEY_CURRENT_CONFIG\", "CurrentConfig.Name"
Check reg.DynData Is Nothing, "DynData is Nothing on the NT family"
Check Not (reg.PerformanceData Is Nothing), "PerformanceData exists on the NT family"
Check reg.LocalMachine.SubKeyCount > 0, "LocalMachine has sub-keys"

' The optional machine name: omitted, a literal, and a variable passed by reference.
Check reg.LocalMachine.MachineName = "", "no machine name"
Check reg.LocalMachine("  \\srv ").MachineName = "\\srv", "two leading backslashes kept, blanks trimmed"
Dim machine: machine = "srv"
Check reg.LocalMachine(machine).MachineName = "\\srv", "backslashes added to a variable's name"
Check machine = "srv", "the caller's variable is unchanged"

' AutoFlush takes its Boolean by reference and gives back what was stored.
Set key = reg.CurrentUser
Check key.AutoFlush = False, "AutoFlush starts False"
flag = True
key.AutoFlush = flag
Check key.AutoFlush = True, "AutoFlush from a variable"
key.AutoFlush = False
Check key.AutoFlush = False, "AutoFlush from a literal"
key.CloseKey
key.CloseKey
Check key.Name = "HKEY_CURRENT_USER\", "a root survives CloseKey"
key.Flush

If failures = 0 Then WScript.Echo "ORBEX-SCRIPT-PASSED"
