' calls.vbs ROUNDS: 100,000 late-bound calls from VBScript to cheap members of Orbex and its peers,
' beside an empty Function; each round runs every contender once, the order rotating by round.
' Prints "case<TAB>contender<TAB>round<TAB>seconds"; '#' lines are notes, the last is "#done".
' Wine's cscript prints nothing when a script dies, so failures are caught and printed as FAILED.
' Wine's VBScript looks a Function's name up among all globals on every call: the script keeps none.
Option Explicit

Function f(x) : End Function
Function g() : End Function

' One contender's 100,000 calls, timed; the last result is left in `last`.
Function Run(key, ByVal o, pollCost, last)
    Dim i, r, t0 : t0 = Edge()
    Select Case key
    Case "f": For i = 1 To 100000 : r = f("C:\dir\name.txt") : Next
    Case "ext": For i = 1 To 100000 : r = o.ParseFilenameExt("C:\dir\name.txt") : Next
    Case "fso": For i = 1 To 100000 : r = o.GetExtensionName("C:\dir\name.txt") : Next
    Case "g": For i = 1 To 100000 : r = g() : Next
    Case "version": For i = 1 To 100000 : r = o.VersionName : Next
    Case "user": For i = 1 To 100000 : r = o.UserName : Next
    End Select
    Run = Finish(t0, pollCost) : last = r
End Function

' Timer is a Single under Wine: it steps by 1/256 s or 1/128 s, depending on the hour. A timing
' starts on a step and ends by counting the polls until the next step, each worth pollCost.
Function Elapsed(t0, t1)  ' across midnight too
    Elapsed = CDbl(t1) - CDbl(t0) : If Elapsed < 0 Then Elapsed = Elapsed + 86400
End Function
Function Edge()  ' waits for the next step
    Dim t, e : t = Timer
    Do : e = Timer : Loop While e = t
    Edge = e
End Function

Function Calibrate()
    Dim t0, t, e, n, k : t0 = Edge() : t = t0 : n = 0
    For k = 1 To 32
        Do : e = Timer : n = n + 1 : Loop While e = t
        t = e
    Next
    Calibrate = Elapsed(t0, t) / n
    WScript.Echo "#clock" & vbTab & "Timer step " & (Elapsed(t0, t) / 32) & " s, one poll " & Calibrate & " s"
End Function
Function Finish(t0, pollCost)
    Dim t, e, n : t = Timer : n = 0
    Do : e = Timer : n = n + 1 : Loop While e = t
    Finish = Elapsed(t0, e) - n * pollCost
End Function
Function Decimals(seconds)
    Dim micro : micro = CLng(seconds * 1000000)
    Decimals = (micro \ 1000000) & "." & Right("00000" & (micro Mod 1000000), 6)
End Function
Sub Fail(text)
    WScript.Echo "FAILED: " & text : WScript.Quit 1
End Sub
Function Create(progId)  ' Nothing when the class is missing
    On Error Resume Next
    Set Create = CreateObject(progId) : If Err.Number <> 0 Then Set Create = Nothing
End Function

Sub Main()
    Dim rounds, fileLib, fso, osInfo, network, cases, round, j, list, k, c, seconds, last, clock
    Const PATHS = "100,000 late-bound calls from VBScript: path extension"
    Const PROPERTY = "100,000 late-bound calls from VBScript: a cheap property"
    rounds = 3 : If WScript.Arguments.Count > 0 Then rounds = CInt(WScript.Arguments(0))
    Set fileLib = Create("Orbex.FileLib") : Set osInfo = Create("Orbex.OSInfo")
    Set fso = Create("Scripting.FileSystemObject") : Set network = Create("WScript.Network")
    If fileLib Is Nothing Or osInfo Is Nothing Then Fail "Orbex.FileLib or Orbex.OSInfo cannot be created"
    If fso Is Nothing Then Fail "Scripting.FileSystemObject cannot be created"
    ' Each contender: name, loop, object, the result its last call must return.
    cases = Array(Array(PATHS, Array(Array("floor: empty Function", "f", Nothing, Empty), _
        Array("Orbex FileLib.ParseFilenameExt", "ext", fileLib, "txt"), _
        Array("Scripting.FileSystemObject.GetExtensionName", "fso", fso, "txt"))), _
        Array(PROPERTY, Array(Array("floor: empty Function", "g", Nothing, Empty), _
        Array("Orbex OSInfo.VersionName", "version", osInfo, osInfo.VersionName))))
    If network Is Nothing Then
        WScript.Echo "#note" & vbTab & PROPERTY & vbTab & "Wine has no WScript.Network"
    Else
        list = cases(1)(1) : ReDim Preserve list(2)
        list(2) = Array("WScript.Network.UserName", "user", network, network.UserName)
        cases(1) = Array(PROPERTY, list)
    End If
    clock = Calibrate()
    For round = 0 To rounds - 1
        For j = 0 To UBound(cases)
            list = cases(j)(1)
            For k = 0 To UBound(list)
                c = list((k + round) Mod (UBound(list) + 1)) : last = Null
                On Error Resume Next
                seconds = Run(c(1), c(2), clock, last)
                If Err.Number <> 0 Then Fail c(0) & ": error " & Err.Number & " " & Err.Description
                On Error GoTo 0
                If IsEmpty(c(3)) Then
                    If Not IsEmpty(last) Then Fail c(0) & ": the floor returned a value"
                ElseIf VarType(last) <> vbString Or last <> c(3) Or c(3) = "" Then
                    Fail c(0) & ": got """ & last & """, expected """ & c(3) & """"
                End If
                WScript.Echo cases(j)(0) & vbTab & c(0) & vbTab & round & vbTab & Decimals(seconds)
            Next
        Next
    Next
    WScript.Echo "#done"
End Sub

Main
