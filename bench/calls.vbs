WScript.Echo "#note" & vbTab & "calls" & vbTab & "stub"
