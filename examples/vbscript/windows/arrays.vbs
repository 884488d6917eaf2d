' Windows only: Wine's VBScript stops at every line below that touches an array's bounds or bytes.
' Orbex's String() and Byte() results in VBScript. Run it with: cscript //nologo arrays.vbs
Option Explicit

Dim shell, reg, key, names, bytes, i, hexText

Set shell = CreateObject("WScript.Shell")
shell.RegWrite "HKCU\Software\OrbexExamples\Arrays\Child\", ""
shell.RegWrite "HKCU\Software\OrbexExamples\Arrays\Flags", 258, "REG_BINARY"

Set reg = CreateObject("Orbex.RegLib")
Set key = reg.CurrentUser.OpenSubKey("Software\OrbexExamples\Arrays")

' String(): the script engine takes its bounds, as for any array. An empty name list has the
' bounds -1 to -1 (one element, ""), so test the lower bound before counting.
names = key.GetSubKeyNames
If LBound(names) < 0 Then
    WScript.Echo "No sub-keys"
Else
    WScript.Echo UBound(names) - LBound(names) + 1 & " sub-key(s)"
End If

' Byte(): the byte-string functions LenB, MidB and AscB read it, one byte at a time.
bytes = key.GetValue("Flags")
For i = 1 To LenB(bytes)
    hexText = hexText & Right("0" & Hex(AscB(MidB(bytes, i, 1))), 2) & " "
Next
WScript.Echo "Flags: " & hexText

Set key = Nothing
reg.CurrentUser.DeleteSubKeyTree "Software\OrbexExamples\Arrays"
If reg.CurrentUser.OpenSubKey("Software\OrbexExamples").SubKeyCount = 0 Then
    reg.CurrentUser.DeleteSubKey "Software\OrbexExamples"
End If
